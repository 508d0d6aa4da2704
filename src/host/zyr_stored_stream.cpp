#include "host/zyr_stored_stream.h"

#include "host/zyr_input_file.h"
#include "host/zyr_interruption.h"
#include "host/zyr_output_file.h"
#include "zyr_common/digest/zyr_xxhash.h"

#include <libyuv.h>

#include <algorithm>
#include <cstring>

namespace zyr::host {

namespace {

constexpr char MAGIC[] = "ZYRSTRM1";
constexpr size_t MAGIC_SIZE = sizeof(MAGIC) - 1;
constexpr uint32_t END_MARK = 0xFFFFFFFFu;
constexpr uint32_t LONGEST_HEADER = 65536;
constexpr uint32_t LARGEST_SIDE = 16384;
constexpr uint32_t KEY_FLAG = 1;
constexpr uint32_t CONSTANT_RATE_FLAG = 1;

/// What stands before each packet's bytes.
struct PacketHead {
    uint32_t m_size;
    uint32_t m_flags;
    int64_t m_timestamp;
    int64_t m_duration;
    uint32_t m_width;
    uint32_t m_height;
    uint64_t m_hash; ///< XXH64 of the packet's bytes.
};
static_assert(sizeof(PacketHead) == 40);

struct Trailer {
    uint32_t m_mark;
    uint32_t m_zero;
    uint64_t m_count;
};
static_assert(sizeof(Trailer) == 16);

class StoredStreamWriter : public PacketFile {
public:
    explicit StoredStreamWriter(const std::string& p_path) : m_output(p_path) {}

    ~StoredStreamWriter() override {
        try {
            close();
        } catch (const RunError&) {
            // The run has already failed for a reason of its own, which is the one to report.
        }
    }

    void begin(const PacketStream& p_stream) override {
        const FrameCodecInfo& info = *p_stream.m_info;
        std::string head;
        addText(head, toText(info.codecName));
        addText(head, toText(info.codecImplementation));
        addText(head, toText(info.hardwareDeviceName));
        addNumber(head, uint32_t(firstOf(info.planesModels)));
        addNumber(head, uint32_t(firstOf(info.colorSpaces)));
        for (const uint32_t number :
             {p_stream.m_width, p_stream.m_height, uint32_t(p_stream.m_rate.m_numerator),
              uint32_t(p_stream.m_rate.m_denominator), uint32_t(p_stream.m_timeBase.m_numerator),
              uint32_t(p_stream.m_timeBase.m_denominator), p_stream.m_constantRate ? CONSTANT_RATE_FLAG : 0}) {
            addNumber(head, number);
        }
        const uint32_t size = uint32_t(head.size());
        m_output.write(MAGIC, MAGIC_SIZE);
        m_output.write(&size, sizeof(size));
        m_output.write(head.data(), head.size());
        m_begun = true;
    }

    void write(const CodedPacket& p_packet) override {
        const PacketHead head{uint32_t(p_packet.m_size),
                              p_packet.m_key ? KEY_FLAG : 0,
                              p_packet.m_timestamp,
                              p_packet.m_duration,
                              p_packet.m_width,
                              p_packet.m_height,
                              zyr_xxHash64(p_packet.m_data, p_packet.m_size, 0)};
        m_output.write(&head, sizeof(head));
        m_output.write(p_packet.m_data, p_packet.m_size);
        m_count++;
    }

    void close() override {
        if (m_begun) {
            m_begun = false;
            const Trailer trailer{END_MARK, 0, m_count};
            m_output.write(&trailer, sizeof(trailer));
        }
        m_output.close();
    }

private:
    static void addNumber(std::string& p_head, uint32_t p_number) {
        p_head.append(reinterpret_cast<const char*>(&p_number), sizeof(p_number));
    }
    static void addText(std::string& p_head, const std::string& p_text) {
        addNumber(p_head, uint32_t(p_text.size()));
        p_head += p_text;
    }

    OutputFile m_output;
    uint64_t m_count = 0;
    bool m_begun = false;
};

/// Takes the head of a stored stream apart; every read is checked against its end.
class HeadReader {
public:
    explicit HeadReader(const std::string& p_head) : m_head(p_head) {}

    uint32_t takeNumber() {
        uint32_t number = 0;
        if (m_position + sizeof(number) > m_head.size()) {
            m_good = false;
            return 0;
        }
        memcpy(&number, m_head.data() + m_position, sizeof(number));
        m_position += sizeof(number);
        return number;
    }

    std::string takeText() {
        const uint32_t size = takeNumber();
        if (size > m_head.size() - m_position) {
            m_good = false;
            return {};
        }
        m_position += size;
        return m_head.substr(m_position - size, size);
    }

    Fraction takeFraction() {
        const uint32_t numerator = takeNumber();
        const uint32_t denominator = takeNumber();
        m_good = m_good && numerator > 0 && denominator > 0 && numerator <= INT32_MAX && denominator <= INT32_MAX;
        return Fraction{int(numerator), int(denominator)};
    }

    bool isGood() const { return m_good; }

private:
    const std::string& m_head;
    size_t m_position = 0;
    bool m_good = true;
};

class StoredStreamSource : public VideoSource {
public:
    StoredStreamSource(std::unique_ptr<InputFile> p_file, Framework& p_framework, const Market& p_market)
        : m_file(std::move(p_file)) {
        readHead();
        openDecoder(p_framework, p_market);
    }

    bool read(PictureBuffer& p_picture) override;

    Fraction getRate() const override { return m_rate; }
    bool hasConstantRate() const override { return m_constantRate; }
    Fraction getTimeBase() const override { return m_timeBase; }
    uint64_t getExpectedCount() const override { return 0; }
    std::string describe() const override {
        return m_file->getPath() + " (" + m_codec + ", " + std::to_string(m_width) + "x" + std::to_string(m_height) +
               ")";
    }
    uint64_t getUnreadableCount() const override { return m_unreadable; }
    std::vector<std::string> getComplaints() const override;

private:
    void readHead();
    void openDecoder(Framework& p_framework, const Market& p_market);
    bool readPacket(PacketHead& p_head);
    bool decode(const PacketHead& p_head, PictureBuffer& p_picture);

    std::unique_ptr<InputFile> m_file;
    std::vector<Ref<IFrameDecoder>> m_decoders;
    Ref<IFrameDecoderContext> m_context;
    std::vector<uint8_t> m_bytes;
    std::string m_codec;
    std::string m_implementation;
    std::string m_hardware;
    uint32_t m_planesModel = 0;
    uint32_t m_colorSpace = 0;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    Fraction m_rate;
    Fraction m_timeBase;
    bool m_constantRate = true;
    bool m_ended = false;
    bool m_complete = false;
    uint64_t m_packets = 0;
    uint64_t m_unreadable = 0;
};

void StoredStreamSource::readHead() {
    char magic[MAGIC_SIZE];
    uint32_t size = 0;
    std::string head;
    if (m_file->readAll(magic, MAGIC_SIZE) && m_file->readAll(&size, sizeof(size)) && size <= LONGEST_HEADER) {
        head.resize(size);
        if (!m_file->readAll(head.data(), size)) {
            head.clear();
        }
    }
    HeadReader reader(head);
    m_codec = reader.takeText();
    m_implementation = reader.takeText();
    m_hardware = reader.takeText();
    m_planesModel = reader.takeNumber();
    m_colorSpace = reader.takeNumber();
    m_width = reader.takeNumber();
    m_height = reader.takeNumber();
    m_rate = reader.takeFraction();
    m_timeBase = reader.takeFraction();
    m_constantRate = (reader.takeNumber() & CONSTANT_RATE_FLAG) != 0;
    if (!reader.isGood()) {
        throw RunError("cannot read '" + m_file->getPath() + "': the head of the stored stream is damaged");
    }
}

void StoredStreamSource::openDecoder(Framework& p_framework, const Market& p_market) {
    const Wish* chosen = nullptr;
    for (const Wish& wish : p_market.m_wishes) {
        if (toText(wish.m_request->codecName) != m_codec) {
            continue;
        }
        const bool same = toText(wish.m_request->codecImplementation) == m_implementation &&
                          toText(wish.m_request->hardwareDeviceName) == m_hardware;
        if (chosen == nullptr || same) {
            chosen = &wish;
        }
        if (same) {
            break;
        }
    }
    if (chosen == nullptr) {
        throw RunError("'" + m_file->getPath() + "' holds " + m_codec + ", which no decoder here knows");
    }
    // A decoder holds one agreed record, so the source's is an object apart from the run's.
    m_decoders = p_framework.createDecoders();
    IFrameDecoder& decoder = *m_decoders[chosen->m_decoder];
    FrameCodecInfo info;
    info.codecName = chosen->m_request->codecName;
    info.codecImplementation = chosen->m_request->codecImplementation;
    info.codecOptions = chosen->m_request->codecOptions;
    info.hardwareDeviceName = chosen->m_request->hardwareDeviceName;
    info.planesModels.pushBack(PixelPlanesModelEnum(m_planesModel), nullptr);
    info.colorSpaces.pushBack(ColorSpaceEnum(m_colorSpace), nullptr);
    if (!decoder.initialize(info)) {
        throw RunError("the decoder refused the stored stream '" + m_file->getPath() + "' (see the log)");
    }
    m_context = Ref<IFrameDecoderContext>::adopt(decoder.createFrameDecoderContext());
}

bool StoredStreamSource::readPacket(PacketHead& p_head) {
    if (!m_file->readAll(&p_head, sizeof(Trailer))) {
        return false;
    }
    if (p_head.m_size == END_MARK) {
        Trailer trailer;
        memcpy(&trailer, &p_head, sizeof(trailer));
        m_complete = trailer.m_count == m_packets;
        return false;
    }
    if (!m_file->readAll(reinterpret_cast<char*>(&p_head) + sizeof(Trailer), sizeof(p_head) - sizeof(Trailer))) {
        return false;
    }
    // The size is not to be trusted: memory grows with what is really there.
    constexpr size_t PIECE = 1 << 20;
    m_bytes.clear();
    while (m_bytes.size() < p_head.m_size) {
        const size_t start = m_bytes.size();
        m_bytes.resize(std::min<size_t>(p_head.m_size, start + PIECE));
        if (!m_file->readAll(m_bytes.data() + start, m_bytes.size() - start)) {
            return false;
        }
    }
    m_packets++;
    return true;
}

bool StoredStreamSource::decode(const PacketHead& p_head, PictureBuffer& p_picture) {
    if (zyr_xxHash64(m_bytes.data(), m_bytes.size(), 0) != p_head.m_hash || p_head.m_width == 0 ||
        p_head.m_height == 0 || p_head.m_width > LARGEST_SIDE || p_head.m_height > LARGEST_SIDE) {
        return false;
    }
    const Ref<IPackedFrameData> packet = createPackedFrame();
    IPackedFrameDataReserved* fill = packet->getPackedFrameDataReserved();
    fill->setWidth(p_head.m_width);
    fill->setHeight(p_head.m_height);
    fill->setVideoFrameID(m_packets);
    fill->getPackedDataMutable()->pushBackRange(m_bytes.data(), m_bytes.size());
    const auto frame = Ref<IUnpackedFrameData>::adopt(m_context->decode(packet.get()));
    const IImage* image = frame ? frame->getSystemMemory(0, 1) : nullptr;
    if (image == nullptr || image->getWidth() != p_head.m_width || image->getHeight() != p_head.m_height) {
        return false;
    }
    p_picture.resize(p_head.m_width, p_head.m_height);
    p_picture.m_timestamp = p_head.m_timestamp;
    p_picture.m_duration = p_head.m_duration;
    return libyuv::ABGRToARGB(static_cast<const uint8_t*>(image->getData()), int(image->getPitch()),
                              p_picture.getPixels(), int(p_picture.m_pitch), int(p_head.m_width),
                              int(p_head.m_height)) == 0;
}

bool StoredStreamSource::read(PictureBuffer& p_picture) {
    PacketHead head{};
    while (getInterruption() == 0) {
        if (!readPacket(head)) {
            m_ended = getInterruption() == 0;
            return false;
        }
        if (decode(head, p_picture)) {
            return true;
        }
        m_unreadable++;
    }
    return false;
}

std::vector<std::string> StoredStreamSource::getComplaints() const {
    std::vector<std::string> complaints;
    if (m_unreadable > 0) {
        complaints.push_back("the source is damaged: " + std::to_string(m_unreadable) + " of " +
                             std::to_string(m_packets) + " packets could not be decoded");
    }
    if (m_ended && !m_complete) {
        complaints.push_back("the source ended early: " + std::to_string(m_packets) + " packets and no end");
    }
    return complaints;
}

} // namespace

std::unique_ptr<PacketFile> createStoredStream(const std::string& p_path) {
    return std::make_unique<StoredStreamWriter>(p_path);
}

bool isStoredStream(InputFile& p_file) {
    return p_file.startsWith(MAGIC, MAGIC_SIZE);
}

std::unique_ptr<VideoSource> openStoredStream(std::unique_ptr<InputFile> p_file, Framework& p_framework,
                                              const Market& p_market) {
    return std::make_unique<StoredStreamSource>(std::move(p_file), p_framework, p_market);
}

} // namespace zyr::host
