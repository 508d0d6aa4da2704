/// Pictures as codecs hold them, and a way to see them while they pass.
#pragma once

#include "zyr_common/application/zyr_application_data.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace zyr::host {

/// Three planes of 8-bit samples of a 4:2:0 picture: Y, U, V. The chroma planes of odd sizes are rounded up.
class PlanePicture {
public:
    static constexpr int NUM_OF_PLANES = 3;

    /// Gives the picture a size. Contents are undefined afterwards.
    void resize(uint32_t p_width, uint32_t p_height);
    /// Forgets the picture; isEmpty() is true then.
    void clear() { m_width = m_height = 0; }
    bool isEmpty() const { return m_width == 0; }

    uint8_t* getPlane(int p_plane) { return m_samples.data() + m_starts[p_plane]; }
    const uint8_t* getPlane(int p_plane) const { return m_samples.data() + m_starts[p_plane]; }
    uint32_t getPitch(int p_plane) const { return m_pitches[p_plane]; }
    uint32_t getWidth(int p_plane = 0) const { return p_plane == 0 ? m_width : (m_width + 1) / 2; }
    uint32_t getHeight(int p_plane = 0) const { return p_plane == 0 ? m_height : (m_height + 1) / 2; }

private:
    std::vector<uint8_t> m_samples;
    size_t m_starts[NUM_OF_PLANES] = {};
    uint32_t m_pitches[NUM_OF_PLANES] = {};
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};

/// Planes in somebody else's memory.
struct PlaneView {
    const uint8_t* m_planes[PlanePicture::NUM_OF_PLANES];
    uint32_t m_pitches[PlanePicture::NUM_OF_PLANES];
    uint32_t m_width; ///< Of the luma plane, rounded up to even by codecs.
    uint32_t m_height;

    /// Copies the part that a picture of this size shows. Leaves `p_picture` empty when the view is smaller.
    void copyTo(PlanePicture& p_picture, uint32_t p_width, uint32_t p_height) const;
};

/// Stands in front of the picture module's two conversions, so that the host sees the very planes that an encoder gets
/// and a decoder gives, without converting anything itself. One per process, made after the picture module is up.
class PlaneTap {
public:
    explicit PlaneTap(ApplicationData& p_data);
    /// Puts the picture module's functions back.
    ~PlaneTap();
    PlaneTap(const PlaneTap&) = delete;
    PlaneTap& operator=(const PlaneTap&) = delete;

    /// Runs `p_work` and hands the 4:2:0 planes of each conversion that it makes on this thread to `p_listener`.
    static void listen(const std::function<void(const PlaneView&)>& p_listener, const std::function<void()>& p_work);

private:
    ApplicationData& m_data;
};

} // namespace zyr::host
