/// How a picture is or was stored in a JPEG file. Made by the picture module. Not thread safe.
#pragma once

#include "zyr_common/formats/zyr_format_info.h"

namespace zyr {

/// The settings of one file. Nothing is coded by setting them: whoever saves the picture reads them.
class IJpegFormatInfo : public INativeFormatInfo {
public:
    /// 0 to 100; higher means better.
    virtual uint8_t getQuality() const = 0;
    virtual void setQuality(uint8_t p_quality) = 0;
    /// The file holds the whole picture several times, coarse first.
    virtual bool_t isProgressive() const = 0;
    /// Off at first.
    virtual void setProgressive(bool_t p_progressive) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getJpegFormatInfoReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(JpegFormatInfo, INativeFormatInfo, "fe267a96-07a2-462b-acf1-14c62da4026b")

/// Forwards each operation to the JpegFormatInfo of its module; what extends that class derives from this.
template <class Interface> class JpegFormatInfoFacade : public NativeFormatInfoFacade<Interface> {
public:
    uint8_t getQuality() const override { return this->m_interfaceObject->getQuality(); }
    void setQuality(uint8_t p_quality) override { this->m_interfaceObject->setQuality(p_quality); }
    bool_t isProgressive() const override { return this->m_interfaceObject->isProgressive(); }
    void setProgressive(bool_t p_progressive) override { this->m_interfaceObject->setProgressive(p_progressive); }
    ILevelReserved* getJpegFormatInfoReserved() const override {
        return this->m_interfaceObject->getJpegFormatInfoReserved();
    }
};

using WJpegFormatInfo = JpegFormatInfoFacade<IJpegFormatInfo>;

} // namespace zyr
