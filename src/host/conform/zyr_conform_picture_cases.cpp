#include "host/conform/zyr_conform_slots.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/platform/zyr_version.h"

#include <cstdlib>
#include <cstring>

namespace zyr::host {

namespace {

constexpr PixelFormatEnum RGBA = PixelFormatEnum(500);
constexpr PixelFormatEnum BGRA = PixelFormatEnum(504);
/// Colours are kept at half the size and in eight bits.
constexpr int LARGEST_DIFFERENCE = 10;

struct PictureInterface {
    const char* m_typeName;
    const GUID_t& (*m_guid)();
    bool (*m_isInterface)(const IObject&);
};

#define ZYR_TYPED(Name) {#Name, &zyr_getInterfaceGUID<I##Name>, &isInterface<I##Name>},
const PictureInterface INTERFACES[] = {
    ZYR_TYPED(Diffmap) ZYR_TYPED(Palette) ZYR_TYPED(JpegFormatInfo) ZYR_TYPED(Image) ZYR_TYPED(ReadbackContext)
        ZYR_TYPED(SharedTexture) ZYR_TYPED(UnpackedFrameData) ZYR_TYPED(PackedFrameData) ZYR_TYPED(FrameDecoder)
            ZYR_TYPED(FrameDecoderContext) ZYR_TYPED(FrameEncoder) ZYR_TYPED(FrameEncoderContext)};
#undef ZYR_TYPED

template <class Interface> Ref<Interface> create() {
    Ref<Interface> object = Ref<Interface>::adopt(zyr_createInterfaceObject<Interface>());
    require(bool(object), std::string("it has no implementation of ") + InterfaceTraits<Interface>::c_typeName);
    return object;
}

void checkPicturePrepare(const ConformSubject& p_subject) {
    checkPrepare(p_subject, "zyr_picture_prepare", &ApplicationData::m_pictureInitializer);
}

void checkPictureStart(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    const size_t before = data.m_objectAllocatorsByGUID.getSize();
    require(data.pictureInitialize() && data.m_objectAllocatorsByGUID.getSize() == before,
            "asking for the module a second time registers classes");
}

void checkPictureVersion(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    const size_t before = data.m_objectAllocatorsByGUID.getSize();
    data.m_frameworkVersion = zyr_encodeVersion64(zyr_getMajorVersion64(data.m_frameworkVersion),
                                                  zyr_getMinorVersion64(data.m_frameworkVersion) + 1, 0);
    require(!data.m_pictureInitializer(&data, 1), "its initializer accepts a host of the next minor version");
    require(data.m_objectAllocatorsByGUID.getSize() == before, "it registers classes although it refuses the host");
}

void checkInterfaces(const ConformSubject& p_subject) {
    startComponent(p_subject);
    for (const PictureInterface& entry : INTERFACES) {
        const std::string name = entry.m_typeName;
        const Ref<IObject> object =
            Ref<IObject>::adopt(zyr_createObjectFromGUIDAndTypeName(entry.m_guid(), String::getConstEmpty()));
        require(bool(object), name + " is not created by its GUID");
        require(entry.m_isInterface(*object),
                "the GUID of " + name + " gives an object of " + toText(object->getClassName()));
        checkObjectSlots(*object, name);
        const Ref<IObject> named = Ref<IObject>::adopt(zyr_createObjectFromName(object->getClassName()));
        require(named && named->getClassGUID() == object->getClassGUID(), name + " is not created by its name");
    }
}

/// There and back, in I420.
void checkConversion(uint32_t p_width, uint32_t p_height, ColorSpaceEnum p_space) {
    constexpr PixelPlanesModelEnum I420 = PixelPlanesModelEnum(2);
    const size_t pixels = size_t{p_width} * p_height;
    std::vector<uint8_t> source(pixels * 4, 255);
    std::vector<uint8_t> result(pixels * 4);
    std::vector<uint8_t> planes[3] = {std::vector<uint8_t>(pixels), std::vector<uint8_t>(pixels / 4),
                                      std::vector<uint8_t>(pixels / 4)};
    for (size_t i = 0; i < pixels; i++) {
        // Blocks of four pixels are of one colour.
        const size_t x = i % p_width / 2;
        const size_t y = i / p_width / 2;
        source[i * 4] = uint8_t(40 + x * 9 % 160);
        source[i * 4 + 1] = uint8_t(60 + y * 7 % 120);
        source[i * 4 + 2] = uint8_t(80 + (x + y) * 5 % 100);
    }
    require(zyr_picture_convertRGBToYUV(p_width, p_height, source.data(), 4, p_width * 4, 1, planes[0].data(),
                                        planes[1].data(), planes[2].data(), 1, 1, 1, p_width, p_width / 2, p_width / 2,
                                        I420, p_space),
            "the first entry refuses colour space " + std::to_string(p_space));
    zyr_picture_convertYUVToRGB(p_width, p_height, planes[0].data(), planes[1].data(), planes[2].data(), 1, 1, 1,
                                p_width, p_width / 2, p_width / 2, result.data(), 4, p_width * 4, 0, I420, p_space);
    for (size_t i = 0; i < pixels; i++) {
        for (size_t c = 0; c < 3; c++) {
            const int difference = abs(source[i * 4 + c] - result[i * 4 + 2 - c]);
            require(difference <= LARGEST_DIFFERENCE, "colour space " + std::to_string(p_space) +
                                                          " comes back with a difference of " +
                                                          std::to_string(difference));
        }
    }
}

void checkConversions(const ConformSubject& p_subject) {
    HostApplicationData& data = startComponent(p_subject);
    require(data.m_picture->m_convertRGBToYUV != nullptr && data.m_picture->m_convertYUVToRGB != nullptr,
            "an entry of the table is empty");
    for (const uint32_t space : {2, 3, 4, 5}) {
        checkConversion(64, 48, ColorSpaceEnum(space));
        checkConversion(2, 2, ColorSpaceEnum(space));
    }
}

void checkImages(const ConformSubject& p_subject) {
    startComponent(p_subject);
    for (const uint32_t width : {1u, 2u, 641u, 4096u}) {
        for (const uint32_t height : {1u, 481u}) {
            const Ref<IImage> image = create<IImage>();
            const std::string size = std::to_string(width) + "x" + std::to_string(height);
            require(image->init(width, height, 0, RGBA, ColorSpaceEnum(1), PixelFormatEnum(0), 0),
                    "a picture of " + size + " is refused");
            require(image->getWidth() == width && image->getHeight() == height && image->getFormat() == RGBA &&
                        image->getBitsPerPixel() == 32 && image->getPitch() >= width * 4,
                    "a picture of " + size + " describes itself as another one");
            // Conversions work on the even size.
            const size_t evenWidth = (width + 1) & ~1u;
            const size_t evenHeight = (height + 1) & ~1u;
            require(image->getData() != nullptr && image->getPitch() >= evenWidth * 4,
                    "a picture of " + size + " has no room for its even size");
            memset(image->getData(), 77, image->getPitch() * (evenHeight - 1) + evenWidth * 4);
        }
    }
}

void checkUnpackedFrames(const ConformSubject& p_subject) {
    startComponent(p_subject);
    const Ref<IUnpackedFrameData> frame = create<IUnpackedFrameData>();
    const Ref<IImage> image = create<IImage>();
    const Ref<IDiffmap> diffmap = create<IDiffmap>();
    image->init(8, 6, 0, BGRA, ColorSpaceEnum(1), PixelFormatEnum(0), 0);
    IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
    fill->setWidth(8);
    fill->setHeight(6);
    fill->setVideoFrameID(uint64_t{1} << 40);
    fill->setSystemMemory(image.get());
    fill->setGPUMemory(nullptr);
    fill->setDiffmap(diffmap.get());
    require(frame->getWidth() == 8 && frame->getHeight() == 6 && frame->getVideoFrameID() == uint64_t{1} << 40 &&
                frame->getSystemMemory(0, 1) == image.get() && frame->getGPUMemory(0) == nullptr &&
                frame->getDiffmap(0) == diffmap.get(),
            "a frame gives back something else than it was given");
    require(image->getRefCount() == 1 && diffmap->getRefCount() == 1,
            "a frame has to hold one reference to its picture and to its map of changes");
    fill->setSystemMemory(nullptr);
    fill->setDiffmap(nullptr);
    require(image->getRefCount() == 0 && diffmap->getRefCount() == 0, "a frame does not let go of what it held");
}

void checkPackedFrames(const ConformSubject& p_subject) {
    startComponent(p_subject);
    const Ref<IPackedFrameData> frame = create<IPackedFrameData>();
    IPackedFrameDataReserved* fill = frame->getPackedFrameDataReserved();
    fill->setWidth(641);
    fill->setHeight(481);
    fill->setVideoFrameID(uint64_t{1} << 40);
    require(frame->getPackedData() != nullptr && frame->getPackedData()->getSize() == 0, "a new packet has bytes");
    fill->getPackedDataMutable()->pushBack(42);
    require(frame->getWidth() == 641 && frame->getHeight() == 481 && frame->getVideoFrameID() == uint64_t{1} << 40 &&
                frame->getPackedData() == fill->getPackedDataMutable() && frame->getPackedData()->getSize() == 1,
            "a packet gives back something else than it was given");
}

void checkAdapters(const ConformSubject& p_subject) {
    startComponent(p_subject);
    const Ref<IFrameEncoder> encoder = create<IFrameEncoder>();
    encoder->setAdapterID(uint64_t{5} << 40);
    require(encoder->getAdapterID() == uint64_t{5} << 40, "an encoder forgets its adapter");
}

} // namespace

std::vector<ConformCase> listPictureCases() {
    return {
        {"prepare",
         "zyr_picture_prepare leaves the initializer in the application data and touches nothing else.",
         {},
         checkPicturePrepare},
        {"initialize", "The module starts and is there for everybody who asks again.", {"prepare"}, checkPictureStart},
        {"initialize-version",
         "A host of another minor version is refused and nothing is registered.",
         {"initialize"},
         checkPictureVersion},
        {"interfaces",
         "Twelve interfaces have an implementation by GUID and by name, which answers every operation that objects "
         "have "
         "and the last one of its own.",
         {"initialize"},
         checkInterfaces},
        {"table-conversions",
         "Both entries of the table convert, in every YUV colour space, and colours come back as they were.",
         {"initialize"},
         checkConversions},
        {"images",
         "A picture of any size describes itself and has memory for its even size.",
         {"interfaces"},
         checkImages},
        {"unpacked-frames",
         "A raw frame gives back what it was given, and holds a reference of its own.",
         {"interfaces"},
         checkUnpackedFrames},
        {"packed-frames",
         "A coded frame gives back what it was given; its bytes are those that were filled in.",
         {"interfaces"},
         checkPackedFrames},
        {"adapter", "An encoder keeps the adapter that it is told.", {"interfaces"}, checkAdapters},
    };
}

} // namespace zyr::host
