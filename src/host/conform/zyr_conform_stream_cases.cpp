#include "host/conform/zyr_conform_road.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_factories.h"

#include <functional>
#include <random>

namespace zyr::host {

namespace {

constexpr uint32_t WIDTH = 96;
constexpr uint32_t HEIGHT = 64;
/// Sides up to here have to work. A codec may refuse more.
constexpr uint32_t LARGEST_PROMISED = 2048;

struct Size {
    uint32_t m_width;
    uint32_t m_height;
};

void withEachRoad(const ConformSubject& p_subject, const std::function<void(ConformRoad&)>& p_work) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    for (Match* match : market.listPairs()) {
        ConformRoad road(market, *match);
        p_work(road);
    }
}

void checkContexts(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        const auto check = [&](bool p_holds, const char* p_reason) {
            if (!p_holds) {
                p_road.fail(p_reason);
            }
        };
        PluginBench& bench = p_road.getBench();
        IFrameEncoderContext& encoder = p_road.getEncoderContext();
        IFrameDecoderContext& decoder = p_road.getDecoderContext();
        check(encoder.getEncoder() == &p_road.getEncoder(), "the encoder context does not hold its encoder");
        check(decoder.getDecoder() == &p_road.getDecoder(), "the decoder context does not hold its decoder");
        check(p_road.getEncoder().getRefCount() != 0 && p_road.getDecoder().getRefCount() != 0,
              "a context holds its codec without a reference");
        const auto initialize = [&](auto& p_context, auto& p_codec) {
            return bench.call(p_context, "initialize", [&] { return p_context.initialize(&p_codec); });
        };
        const auto deinitialize = [&](auto& p_context) {
            return bench.call(p_context, "deinitialize", [&] { return p_context.deinitialize(); });
        };
        check(!initialize(encoder, p_road.getEncoder()) && !initialize(decoder, p_road.getDecoder()),
              "a context that holds a codec takes another one");
        check(deinitialize(encoder) && deinitialize(decoder), "a context does not give its codec back");
        check(encoder.getEncoder() == nullptr && decoder.getDecoder() == nullptr,
              "a context tells a codec that it gave back");
        check(p_road.getEncoder().getRefCount() == 0 && p_road.getDecoder().getRefCount() == 0,
              "a context keeps its reference to a codec that it gave back");
        check(!deinitialize(encoder) && !deinitialize(decoder), "a context gives its codec back twice");
        const Ref<IFrameEncoder> otherEncoder = Ref<IFrameEncoder>::adopt(zyr_createInterfaceObject<IFrameEncoder>());
        const Ref<IFrameDecoder> otherDecoder = Ref<IFrameDecoder>::adopt(zyr_createInterfaceObject<IFrameDecoder>());
        check(!initialize(encoder, *otherEncoder) && !initialize(decoder, *otherDecoder),
              "a context takes a codec that is not of its module");
        check(initialize(encoder, p_road.getEncoder()) && initialize(decoder, p_road.getDecoder()),
              "a context takes no codec behind deinitialize");
        p_road.send(WIDTH, HEIGHT, 1);
    });
}

void checkPackets(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        uint64_t last = 0;
        for (unsigned i = 1; i <= 30; i++) {
            const Ref<IUnpackedFrameData> picture = makePicture(WIDTH, HEIGHT, i);
            const Ref<IPackedFrameData> packet = p_road.encode(*picture);
            const uint64_t number = packet->getVideoFrameID();
            if (i != 1 && number != last + 1) {
                p_road.fail("packet " + std::to_string(number) + " follows packet " + std::to_string(last));
            }
            last = number;
        }
    });
}

void checkPictures(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        for (unsigned i = 1; i <= 30; i++) {
            const Ref<IUnpackedFrameData> picture = makePicture(WIDTH, HEIGHT, i);
            const Ref<IPackedFrameData> packet = p_road.encode(*picture);
            const Ref<IDiffmap> diffmap = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
            if (packet->getDiffmap(0) == nullptr) {
                packet->getPackedFrameDataReserved()->setDiffmap(diffmap.get());
            }
            const Ref<IUnpackedFrameData> decoded = p_road.decode(*packet);
            p_road.compare(*picture, *decoded);
            if (decoded->getVideoFrameID() != packet->getVideoFrameID() ||
                decoded->getDiffmap(0) != packet->getDiffmap(0)) {
                p_road.fail("a picture without the number and the map of changes of its packet");
            }
        }
    });
}

/// A picture of a size that may be refused: with a line in the log, and without harm to what follows.
void sendIfPossible(ConformRoad& p_road, Size p_size) {
    const Ref<IUnpackedFrameData> picture = makePicture(p_size.m_width, p_size.m_height, 1);
    p_road.getBench().takeWarning();
    const Ref<IPackedFrameData> packet = p_road.tryEncode(picture.get());
    const std::string size = std::to_string(p_size.m_width) + "x" + std::to_string(p_size.m_height);
    if (!packet || packet->getPackedData()->getSize() == 0) {
        if (p_road.getBench().takeWarning().empty()) {
            p_road.fail("a picture of " + size + " is refused without a word");
        }
        return;
    }
    p_road.checkPacket(*packet, p_size.m_width, p_size.m_height);
    p_road.compare(*picture, *p_road.decode(*packet));
}

void checkSizes(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        for (const Size size : {Size{1, 1},
                                {2, 1},
                                {1, 2},
                                {2, 2},
                                {3, 5},
                                {15, 17},
                                {16, 16},
                                {33, 1},
                                {1, 65},
                                {64, 64},
                                {641, 481},
                                {1280, 720},
                                {LARGEST_PROMISED, 3},
                                {5, LARGEST_PROMISED},
                                {1920, 1080}}) {
            p_road.reopen();
            p_road.send(size.m_width, size.m_height, 1);
            p_road.send(size.m_width, size.m_height, 2);
        }
        for (const Size size : {Size{4096, 16}, {16, 4096}, {4095, 2161}, {4096, 4096}}) {
            p_road.reopen();
            sendIfPossible(p_road, size);
        }
        p_road.send(WIDTH, HEIGHT, 1);
    });
}

void checkSizeChanges(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        unsigned number = 0;
        for (unsigned round = 0; round < 3; round++) {
            for (const Size size :
                 {Size{64, 48}, {63, 47}, {64, 47}, {640, 360}, {2, 2}, {1, 1}, {65, 49}, {320, 200}, {48, 64}}) {
                p_road.send(size.m_width, size.m_height, ++number);
                p_road.send(size.m_width, size.m_height, ++number);
            }
        }
    });
}

void checkQualities(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        IFrameEncoderContext& context = p_road.getEncoderContext();
        for (unsigned quality = 0; quality <= 255; quality += quality < 100 ? 10 : 31) {
            p_road.getBench().call(context, "setQuality", [&] { return context.setQuality(uint8_t(quality)); });
            const Ref<IUnpackedFrameData> picture = makePicture(WIDTH, HEIGHT, quality);
            const Ref<IPackedFrameData> packet = p_road.encode(*picture);
            p_road.decode(*packet);
        }
    });
}

/// A packet of a stream that begins anew, as a decoder wants it behind damage.
void expectRecovery(ConformRoad& p_road, const std::string& p_behind) {
    ConformRoad& road = p_road;
    const auto fresh = Ref<IFrameEncoderContext>::adopt(road.getEncoder().createFrameEncoderContext());
    const Ref<IUnpackedFrameData> picture = makePicture(WIDTH, HEIGHT, 7);
    const auto packet = Ref<IPackedFrameData>::adopt(fresh->encode(picture.get()));
    if (!packet || !road.tryDecode(packet.get())) {
        road.fail("no picture for the key frame behind " + p_behind + road.getBench().takeWarning());
    }
}

Ref<IPackedFrameData> copyPacket(const IPackedFrameData& p_packet) {
    Ref<IPackedFrameData> copy = createPackedFrame();
    IPackedFrameDataReserved* fill = copy->getPackedFrameDataReserved();
    fill->setWidth(p_packet.getWidth());
    fill->setHeight(p_packet.getHeight());
    fill->setVideoFrameID(p_packet.getVideoFrameID());
    fill->setPackedData(*p_packet.getPackedData());
    return copy;
}

/// Null, or a picture that can be used.
void tryBadPacket(ConformRoad& p_road, IPackedFrameData& p_packet) {
    const Ref<IUnpackedFrameData> picture = p_road.tryDecode(&p_packet);
    if (picture) {
        p_road.checkPicture(*picture, p_packet.getWidth(), p_packet.getHeight());
    }
}

void checkEmptyPackets(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        const Ref<IPackedFrameData> empty = createPackedFrame();
        empty->getPackedFrameDataReserved()->setWidth(WIDTH);
        empty->getPackedFrameDataReserved()->setHeight(HEIGHT);
        for (unsigned i = 0; i < 3; i++) {
            if (p_road.tryDecode(empty.get())) {
                p_road.fail("a picture out of a packet without bytes");
            }
            expectRecovery(p_road, "an empty packet");
        }
        const Ref<IPackedFrameData> nothing = createPackedFrame();
        if (p_road.tryDecode(nothing.get())) {
            p_road.fail("a picture out of a packet of 0x0");
        }
        expectRecovery(p_road, "a packet of 0x0");
    });
}

void checkDamagedPackets(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        std::mt19937 dice(20);
        for (unsigned i = 1; i <= 40; i++) {
            const Ref<IUnpackedFrameData> picture = makePicture(WIDTH, HEIGHT, i);
            const Ref<IPackedFrameData> packet = p_road.encode(*picture);
            const Ref<IPackedFrameData> bad = copyPacket(*packet);
            Array<uint8_t>& bytes = *bad->getPackedData();
            std::string what = "a damaged packet";
            if (i % 5 == 0) {
                bytes.resize(bytes.getSize() / 2);
                what = "half a packet";
            } else if (i % 5 == 1) {
                bytes.resize(1);
                what = "a packet of one byte";
            } else if (i % 5 == 2) {
                bad->getPackedFrameDataReserved()->setWidth(WIDTH * 2);
                bad->getPackedFrameDataReserved()->setHeight(HEIGHT / 2);
                what = "a packet that claims another size";
            } else {
                for (unsigned flip = 0; flip < 1 + i; flip++) {
                    bytes.getData()[dice() % bytes.getSize()] = uint8_t(dice());
                }
            }
            tryBadPacket(p_road, *bad);
            expectRecovery(p_road, what);
        }
    });
}

void checkOddFrames(const ConformSubject& p_subject) {
    constexpr PixelFormatEnum GREY = PixelFormatEnum(53);
    constexpr PixelFormatEnum RGB = PixelFormatEnum(450);
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        const Ref<IUnpackedFrameData> frame =
            Ref<IUnpackedFrameData>::adopt(zyr_createInterfaceObject<IUnpackedFrameData>());
        frame->getUnpackedFrameDataReserved()->setWidth(WIDTH);
        frame->getUnpackedFrameDataReserved()->setHeight(HEIGHT);
        if (p_road.tryEncode(frame.get())) {
            p_road.fail("a packet for a frame without a picture");
        }
        for (const PixelFormatEnum format : {PixelFormatEnum(0), GREY, RGB}) {
            const Ref<IImage> image = Ref<IImage>::adopt(zyr_createInterfaceObject<IImage>());
            if (format != PixelFormatEnum(0)) {
                image->init(WIDTH, HEIGHT, 0, format, ColorSpaceEnum(1), PixelFormatEnum(0), 0);
            }
            frame->getUnpackedFrameDataReserved()->setSystemMemory(image.get());
            const Ref<IPackedFrameData> packet = p_road.tryEncode(frame.get());
            if (packet && format == PixelFormatEnum(0)) {
                p_road.fail("a packet for a picture of 0x0");
            }
            if (packet) {
                p_road.checkPacket(*packet, WIDTH, HEIGHT);
            }
        }
        p_road.reopen();
        p_road.send(WIDTH, HEIGHT, 1);
    });
}

void checkNullFrames(const ConformSubject& p_subject) {
    withEachRoad(p_subject, [](ConformRoad& p_road) {
        if (p_road.tryEncode(nullptr)) {
            p_road.fail("a packet for a frame that is NULL");
        }
        if (p_road.tryDecode(nullptr)) {
            p_road.fail("a picture for a packet that is NULL");
        }
        p_road.send(WIDTH, HEIGHT, 1);
    });
}

} // namespace

std::vector<ConformCase> listStreamCases() {
    return {
        {"contexts",
         "A context holds one codec of its own module, with a reference, from initialize to deinitialize, each of "
         "which "
         "fails in the wrong state.",
         {"negotiation"},
         checkContexts},
        {"packet-per-frame",
         "Each frame gives one packet at once, with bytes, the true size and the next number: nothing is kept back.",
         {"contexts"},
         checkPackets,
         60},
        {"picture-per-packet",
         "Each packet gives one picture in R, G, B, A of the true size, with the number and the map of changes of its "
         "packet; it looks like what was encoded, and equals it where no loss was agreed.",
         {"packet-per-frame"},
         checkPictures,
         60},
        {"sizes",
         "Every size from 1x1 to 2048 works, odd ones included; a larger one, up to 4096x4096, works or is refused "
         "with "
         "a line in the log and without harm to the next.",
         {"picture-per-packet"},
         checkSizes,
         120},
        {"size-changes",
         "The size may change with any frame; the stream goes on.",
         {"picture-per-packet"},
         checkSizeChanges,
         120},
        {"qualities",
         "Any quality from 0 to 255 is survived, and takes effect without a break of the stream.",
         {"picture-per-packet"},
         checkQualities,
         60},
        {"empty-packets",
         "A packet without bytes or size gives no picture; the next key frame is decoded.",
         {"picture-per-packet"},
         checkEmptyPackets,
         60},
        {"damaged-packets",
         "Packets come from outside: whatever they hold gives no picture or a whole one, and the next key frame is "
         "decoded.",
         {"picture-per-packet"},
         checkDamagedPackets,
         60},
        {"odd-frames",
         "A frame without a picture gives no packet; one in another pixel format gives none or a whole one; neither "
         "reads behind its memory.",
         {"picture-per-packet"},
         checkOddFrames},
        {"null-frames",
         "NULL in place of a frame or packet gives NULL, and the stream goes on.",
         {"picture-per-packet"},
         checkNullFrames},
    };
}

} // namespace zyr::host
