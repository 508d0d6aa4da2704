/// The level that all readers share.
#pragma once

#include "zyr_common/documents/zyr_reader.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// A copy has the same input. A reader has no fields in a stream.
template <class Interface> class ReaderLevel : public UnstoredLevel<ObjectLevel<Interface>, IReader> {
public:
    Array<unsigned char>* getInputData() const override { return m_input.get(); }
    void setInputData(Array<unsigned char>* p_data) override { m_input = Ref<Array<unsigned char>>::share(p_data); }
    ILevelReserved* getReaderReserved() const override { return &m_readerReserved; }

    void init_This() {}
    void release_This() { m_input.clear(); }
    void copy_This(const IReader* p_src) { this->setInputData(p_src->getInputData()); }

private:
    Ref<Array<unsigned char>> m_input;
    mutable LevelReserved<ReaderLevel> m_readerReserved{this};
};

using Reader = Implementation<ReaderLevel<IReader>>;

} // namespace zyr
