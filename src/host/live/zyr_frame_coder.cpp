#include "host/live/zyr_frame_coder.h"

#include "host/live/zyr_vp9_packets.h"
#include "zyr_common/geometry/zyr_rect.h"
#include "zyr_common/object/zyr_factories.h"

#include <cstring>

namespace zyr::host {

namespace {

/// Key frames are the largest frames there are: viewers that join or fail together share one.
constexpr uint64_t BETWEEN_KEYS = 1'000'000;
constexpr uint32_t BLOCK = RegionChoice::BLOCK;

const uint8_t* getMarks(const IDiffmap* p_diffmap) {
    return p_diffmap != nullptr ? static_cast<const uint8_t*>(p_diffmap->getData()) : nullptr;
}

void drawArea(IDiffmap& p_diffmap, const PictureArea& p_area, uint8_t p_mark) {
    if (!p_area.isEmpty()) {
        p_diffmap.drawSingleRect(Rect<int>(int(p_area.m_x), int(p_area.m_y), int(p_area.m_width), int(p_area.m_height)),
                                 p_mark);
    }
}

void copyArea(const IImage& p_image, const PictureArea& p_area, FramePicture& p_picture) {
    p_picture.resize(p_area.m_width, p_area.m_height);
    const uint64_t pitch = p_image.getPitch();
    const auto* const first =
        static_cast<const uint8_t*>(p_image.getData()) + p_area.m_y * pitch + uint64_t{p_area.m_x} * 4;
    for (uint32_t y = 0; y < p_area.m_height; y++) {
        memcpy(p_picture.getPixels() + size_t{y} * p_picture.m_pitch, first + y * pitch, size_t{p_area.m_width} * 4);
    }
}

} // namespace

void FrameCoder::setAllowed(uint8_t p_codecs) {
    m_allowed = p_codecs & m_codecs.getCodecs();
    if ((m_allowed & codecBit(LiveCodec::VP9)) == 0) {
        m_choice.clear();
    }
}

/// A region that has to wait for its context goes by blocks until then, or keeps its last place.
void FrameCoder::followRegion() {
    const PictureArea& wanted = m_choice.getRegion();
    if (wanted.isEmpty() || wanted == m_videoArea || m_spare.isReady(wanted.m_width, wanted.m_height)) {
        m_region = wanted;
    }
}

void FrameCoder::prepareSpare() {
    const PictureArea area =
        m_allowed == codecBit(LiveCodec::VP9) ? m_choice.getPicture() : PictureArea(m_choice.getRegion());
    if (m_hasSpare && !area.isEmpty()) {
        m_spare.prepare(area.m_width, area.m_height);
    }
}

/// What of the picture goes by VP9 now.
PictureArea FrameCoder::findVideo(const PictureArea& p_whole, bool p_atRest, uint64_t p_time) const {
    if (m_allowed == codecBit(LiveCodec::VP9)) {
        return p_whole;
    }
    const bool isVideo = !p_atRest && (m_allowed & codecBit(LiveCodec::VP9)) != 0 && m_choice.isMoving(p_time);
    return isVideo ? m_region : PictureArea();
}

uint8_t FrameCoder::getUsed(bool p_atRest, uint64_t p_time) const {
    if (m_allowed == codecBit(LiveCodec::VP9)) {
        return m_allowed;
    }
    const PictureArea whole = m_choice.getPicture();
    const PictureArea video = findVideo(whole, p_atRest, p_time);
    const uint8_t all = codecBit(LiveCodec::BLOCKS) | codecBit(LiveCodec::VP9);
    return video.isEmpty() ? codecBit(LiveCodec::BLOCKS) : video == whole ? codecBit(LiveCodec::VP9) : all;
}

bool FrameCoder::isKeyDue(LiveCodec p_codec, uint8_t p_missing, uint64_t p_time) const {
    const uint64_t last = m_sides[size_t(p_codec)].m_keyTime;
    return (p_missing & codecBit(p_codec)) != 0 && (last == 0 || p_time - last >= BETWEEN_KEYS);
}

bool FrameCoder::isKeyDue(uint8_t p_missing, bool p_atRest, uint64_t p_time) const {
    const uint8_t missing = p_missing & getUsed(p_atRest, p_time);
    return isKeyDue(LiveCodec::BLOCKS, missing, p_time) || isKeyDue(LiveCodec::VP9, missing, p_time);
}

/// Takes the region out of the picture, and sees what has changed in it.
void FrameCoder::watchRegion(const IUnpackedFrameData& p_frame, uint64_t p_time) {
    const PictureArea region = m_region;
    if (region.isEmpty()) {
        m_seenArea = region;
        return;
    }
    const bool isKnown = region == m_seenArea;
    m_seenArea = region;
    const size_t last = m_present;
    m_present = 1 - m_present;
    copyArea(*p_frame.getSystemMemory(0, 1), region, m_seen[m_present]);
    if (isKnown && region == m_choice.getRegion()) {
        const auto changes = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
        const IImage* const image = m_seen[m_present].getFrame().getSystemMemory(0, 1);
        if (image->extractDiffmap(changes.get(), m_seen[last].getFrame().getSystemMemory(0, 1), BLOCK, BLOCK)) {
            m_choice.noteRegion(getMarks(changes.get()), p_time);
        }
    }
}

/// Marks what blocks have to look at: what may have changed, without the video.
Ref<IDiffmap> FrameCoder::findStale(const PictureArea& p_whole, const PictureArea& p_video) const {
    auto stale = Ref<IDiffmap>::adopt(zyr_createInterfaceObject<IDiffmap>());
    stale->init(p_whole.m_width, p_whole.m_height, BLOCK, BLOCK, 0);
    drawArea(*stale, m_stale, 1);
    drawArea(*stale, p_video, 0);
    return stale;
}

/// Encodes with the spare, which becomes VP9's context. False when there is none.
bool FrameCoder::runSpare(CodedPart& p_part, IUnpackedFrameData& p_frame) {
    PreparedEncoder::Spare spare = m_spare.take(p_frame.getWidth(), p_frame.getHeight());
    if (!spare.m_context) {
        return false;
    }
    p_part.m_packet = Ref<IPackedFrameData>::adopt(spare.m_context->encode(&p_frame));
    if (!p_part.m_packet ||
        !putBehindHiddenKey(spare.m_key, *p_part.m_packet->getPackedFrameDataReserved()->getPackedDataMutable())) {
        return false;
    }
    std::swap(m_sides[size_t(LiveCodec::VP9)].m_context, spare.m_context);
    m_spare.discard(std::move(spare.m_context));
    return true;
}

bool FrameCoder::run(CodedPart& p_part, IUnpackedFrameData& p_frame, bool p_afresh, uint64_t p_time) {
    Side& side = m_sides[size_t(p_part.m_codec)];
    const bool isAfresh = !side.m_context || p_afresh;
    if (!isAfresh || p_part.m_codec != LiveCodec::VP9 || !runSpare(p_part, p_frame)) {
        if (isAfresh) {
            side.m_context = m_codecs.createEncoder(p_part.m_codec);
        }
        p_part.m_packet = Ref<IPackedFrameData>::adopt(side.m_context->encode(&p_frame));
    }
    if (!p_part.m_packet) {
        side.m_context.clear();
        return false;
    }
    const Array<uint8_t>& bytes = *p_part.m_packet->getPackedData();
    p_part.m_key = LiveCodecs::isKey(p_part.m_codec, bytes.getData(), bytes.getSize());
    side.m_keyTime = p_part.m_key ? p_time : side.m_keyTime;
    return true;
}

void FrameCoder::addBlocks(IUnpackedFrameData& p_frame, const PictureArea& p_video, uint8_t p_missing, uint64_t p_time,
                           std::vector<CodedPart>& p_parts) {
    CodedPart part;
    part.m_codec = LiveCodec::BLOCKS;
    part.m_exact = p_video.isEmpty();
    part.m_area = m_choice.getPicture();
    const Ref<IDiffmap> stale = findStale(part.m_area, p_video);
    p_frame.getUnpackedFrameDataReserved()->setDiffmap(stale.get());
    const bool isCoded = run(part, p_frame, isKeyDue(part.m_codec, p_missing, p_time), p_time);
    // Other lanes encode the same picture, and each of them in its own way.
    p_frame.getUnpackedFrameDataReserved()->setDiffmap(nullptr);
    if (!isCoded) {
        return;
    }
    m_stale = p_video;
    const uint8_t* const marks = getMarks(part.m_packet->getDiffmap(0));
    if (!part.m_key && marks != nullptr && (m_allowed & codecBit(LiveCodec::VP9)) != 0) {
        const IImage& image = *p_frame.getSystemMemory(0, 1);
        m_choice.noteBlocks({static_cast<const uint8_t*>(image.getData()), image.getPitch()}, marks,
                            part.m_packet->getPackedData()->getSize(), p_time);
    }
    p_parts.push_back(std::move(part));
}

void FrameCoder::addVideo(IUnpackedFrameData& p_frame, const PictureArea& p_area, uint8_t p_missing, uint64_t p_time,
                          std::vector<CodedPart>& p_parts) {
    CodedPart part;
    part.m_codec = LiveCodec::VP9;
    part.m_area = p_area;
    const bool isAfresh = p_area != m_videoArea || isKeyDue(part.m_codec, p_missing, p_time);
    m_videoArea = p_area;
    if (run(part, p_frame, isAfresh, p_time)) {
        p_parts.push_back(std::move(part));
    }
}

std::vector<CodedPart> FrameCoder::encode(IUnpackedFrameData& p_frame, const PictureArea& p_changed, uint8_t p_missing,
                                          bool p_atRest, uint64_t p_time) {
    m_choice.resize(p_frame.getWidth(), p_frame.getHeight());
    const PictureArea whole = m_choice.getPicture();
    m_stale.include(p_changed);
    followRegion();
    watchRegion(p_frame, p_time);
    const PictureArea video = findVideo(whole, p_atRest, p_time);
    std::vector<CodedPart> parts;
    if (video != whole) {
        addBlocks(p_frame, video, p_missing, p_time, parts);
    }
    if (!video.isEmpty()) {
        addVideo(video == whole ? p_frame : m_seen[m_present].getFrame(), video, p_missing, p_time, parts);
    }
    m_choice.update(p_time);
    prepareSpare();
    return parts;
}

} // namespace zyr::host
