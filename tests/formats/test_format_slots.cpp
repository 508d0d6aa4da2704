#include "support/zyr_slot_spy.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(DataFormatInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WDataFormatInfo* facade = spy.makeFacade<WDataFormatInfo>();
    IDataFormatInfo* info = facade;
    spy.expectForwarded(info, &IDataFormatInfo::getFormatName, 43);
    spy.expectForwarded(info, &IDataFormatInfo::setFormatName, 44);
    spy.expectForwarded(info, &IDataFormatInfo::getDataFormatInfoReserved, 45);
    facade->release();
}

TEST(NativeFormatInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WNativeFormatInfo* facade = spy.makeFacade<WNativeFormatInfo>();
    INativeFormatInfo* info = facade;
    spy.expectForwarded<IDataFormatInfo>(info, &IDataFormatInfo::getFormatName, 43);
    spy.expectForwarded<IDataFormatInfo>(info, &IDataFormatInfo::getDataFormatInfoReserved, 45);
    spy.expectForwarded(info, &INativeFormatInfo::getAccessType, 46);
    spy.expectForwarded(info, &INativeFormatInfo::setAccessType, 47);
    spy.expectForwarded(info, &INativeFormatInfo::getFilePath, 48);
    spy.expectForwarded(info, &INativeFormatInfo::setFilePath, 49);
    spy.expectForwarded(info, &INativeFormatInfo::isReadOnly, 50);
    spy.expectForwarded(info, &INativeFormatInfo::setReadOnly, 51);
    spy.expectForwarded(info, &INativeFormatInfo::getOriginalFile, 52);
    spy.expectForwarded(info, &INativeFormatInfo::getMutableOriginalFile, 53);
    spy.expectForwarded(info, &INativeFormatInfo::setOriginalFile, 54);
    spy.expectForwarded(info, &INativeFormatInfo::getNativeFormatInfoReserved, 55);
    facade->release();
}

TEST(CompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WCompressionInfo* facade = spy.makeFacade<WCompressionInfo>();
    ICompressionInfo* info = facade;
    spy.expectForwarded(info, &ICompressionInfo::getDecompressSize, 46);
    spy.expectForwarded(info, &ICompressionInfo::setDecompressSize, 47);
    spy.expectForwarded(info, &ICompressionInfo::getCompressionInfoReserved, 48);
    facade->release();
}

TEST(Lz4CompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WLz4CompressionInfo* facade = spy.makeFacade<WLz4CompressionInfo>();
    ILz4CompressionInfo* info = facade;
    spy.expectForwarded<ICompressionInfo>(info, &ICompressionInfo::getDecompressSize, 46);
    spy.expectForwarded(info, &ILz4CompressionInfo::getAcceleration, 49);
    spy.expectForwarded(info, &ILz4CompressionInfo::setAcceleration, 50);
    spy.expectForwarded(info, &ILz4CompressionInfo::getLz4CompressionInfoReserved, 51);
    facade->release();
}

TEST(ZipCompressionInfoFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WZipCompressionInfo* facade = spy.makeFacade<WZipCompressionInfo>();
    IZipCompressionInfo* info = facade;
    spy.expectForwarded(info, &IZipCompressionInfo::getLevel, 49);
    spy.expectForwarded(info, &IZipCompressionInfo::setLevel, 50);
    spy.expectForwarded(info, &IZipCompressionInfo::getZipCompressionInfoReserved, 51);
    facade->release();
}

TEST(DeferredFileObjectFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WDeferredFileObject* facade = spy.makeFacade<WDeferredFileObject>();
    IDeferredFileObject* object = facade;
    spy.expectForwarded(object, &IDeferredFileObject::getFilePath, 43);
    spy.expectForwarded(object, &IDeferredFileObject::setFilePath, 44);
    spy.expectForwarded(object, &IDeferredFileObject::isReadOnly, 45);
    spy.expectForwarded(object, &IDeferredFileObject::setReadOnly, 46);
    spy.expectForwarded(object, &IDeferredFileObject::getDeferredFileObjectReserved, 47);
    facade->release();
}

TEST(CompressedObjectFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WCompressedObject* facade = spy.makeFacade<WCompressedObject>();
    ICompressedObject* object = facade;
    spy.expectForwarded(object, &ICompressedObject::getCompressedData, 43);
    spy.expectForwarded(object, &ICompressedObject::getMutableCompressedData, 44);
    spy.expectForwarded(object, &ICompressedObject::setCompressedData, 45);
    spy.expectForwarded(object, &ICompressedObject::getCompressedObjectReserved, 46);
    facade->release();
}

} // namespace zyr
