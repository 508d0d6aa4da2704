// A VA driver without hardware: surfaces lie in plain memory, VP9 is done by libvpx and H.264 as raw macroblocks.
//
// ZYR_TEST_VA_FAIL holds the operations that shall fail, separated by commas, and is read at each call. The words are
// the names of the operations ("EndPicture", "CreateImage", ...), "VP9" and "H264" for missing profiles, "Encoding" and
// "Decoding" for missing entry points and "EmptyPacket" for coded buffers without bytes.

#include "support/va_driver/zyr_h264_pcm.h"
#include "support/va_driver/zyr_vp9_codec.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <va/va.h>
#include <va/va_backend.h>
#include <va/va_enc_h264.h>
#include <va/va_enc_vp9.h>

namespace zyr_test {

namespace {

constexpr int LARGEST_SIZE = 8192;
constexpr VAProfile H264_PROFILES[] = {VAProfileH264ConstrainedBaseline, VAProfileH264Main, VAProfileH264High};

bool isDemanded(const char* p_failure) {
    const char* list = getenv("ZYR_TEST_VA_FAIL");
    if (list == nullptr) {
        return false;
    }
    std::string wrapped = std::string(",") + list + ",";
    return wrapped.find(std::string(",") + p_failure + ",") != std::string::npos;
}

struct Buffer {
    VABufferType m_type;
    size_t m_size = 0;
    std::vector<uint8_t> m_bytes;
    std::shared_ptr<Nv12Picture> m_picture; ///< set for the buffer of an image, which shares the picture's bytes
    VACodedBufferSegment m_segment = {};
};

struct Config {
    VAProfile m_profile;
    VAEntrypoint m_entrypoint;
};

struct Context {
    Config m_config;
    uint32_t m_width;
    uint32_t m_height;
    VASurfaceID m_target = VA_INVALID_SURFACE;
    std::vector<VABufferID> m_buffers; ///< given since BeginPicture
    Vp9Codec m_vp9;
    uint32_t m_pictureCount = 0;
};

struct Driver {
    std::mutex m_mutex;
    unsigned m_lastID = 0;
    std::map<VAConfigID, Config> m_configs;
    std::map<VAContextID, std::unique_ptr<Context>> m_contexts;
    std::map<VASurfaceID, std::shared_ptr<Nv12Picture>> m_surfaces;
    std::map<VABufferID, std::unique_ptr<Buffer>> m_buffers;
    std::map<VAImageID, VABufferID> m_images;
};

Driver& driverOf(VADriverContextP p_context) {
    return *static_cast<Driver*>(p_context->pDriverData);
}

/// The value of a key, or an empty pointer.
template <typename Map> auto find(Map& p_map, unsigned p_id) {
    auto found = p_map.find(p_id);
    return found == p_map.end() ? nullptr : &found->second;
}

VAImageFormat nv12Format() {
    VAImageFormat format = {};
    format.fourcc = VA_FOURCC_NV12;
    format.byte_order = VA_LSB_FIRST;
    format.bits_per_pixel = 12;
    return format;
}

// Profiles and configurations

VAStatus queryConfigProfiles(VADriverContextP, VAProfile* p_profiles, int* p_count) {
    *p_count = 0;
    if (!isDemanded("VP9")) {
        p_profiles[(*p_count)++] = VAProfileVP9Profile0;
    }
    if (!isDemanded("H264")) {
        for (VAProfile profile : H264_PROFILES) {
            p_profiles[(*p_count)++] = profile;
        }
    }
    return VA_STATUS_SUCCESS;
}

VAStatus queryConfigEntrypoints(VADriverContextP, VAProfile, VAEntrypoint* p_entrypoints, int* p_count) {
    *p_count = 0;
    if (!isDemanded("Decoding")) {
        p_entrypoints[(*p_count)++] = VAEntrypointVLD;
    }
    if (!isDemanded("Encoding")) {
        p_entrypoints[(*p_count)++] = VAEntrypointEncSlice;
    }
    return VA_STATUS_SUCCESS;
}

VAStatus getConfigAttributes(VADriverContextP, VAProfile, VAEntrypoint, VAConfigAttrib* p_attributes, int p_count) {
    for (int i = 0; i < p_count; i++) {
        switch (p_attributes[i].type) {
        case VAConfigAttribRTFormat:
            p_attributes[i].value = VA_RT_FORMAT_YUV420;
            break;
        case VAConfigAttribRateControl:
            p_attributes[i].value = VA_RC_CQP;
            break;
        case VAConfigAttribEncMaxRefFrames:
            p_attributes[i].value = 1;
            break;
        default:
            p_attributes[i].value = VA_ATTRIB_NOT_SUPPORTED;
        }
    }
    return VA_STATUS_SUCCESS;
}

VAStatus createConfig(VADriverContextP p_context, VAProfile p_profile, VAEntrypoint p_entrypoint, VAConfigAttrib*, int,
                      VAConfigID* p_config) {
    if (isDemanded("CreateConfig")) {
        return VA_STATUS_ERROR_ALLOCATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    *p_config = ++driver.m_lastID;
    driver.m_configs[*p_config] = {p_profile, p_entrypoint};
    return VA_STATUS_SUCCESS;
}

VAStatus destroyConfig(VADriverContextP p_context, VAConfigID p_config) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    return driver.m_configs.erase(p_config) == 1 ? VA_STATUS_SUCCESS : VA_STATUS_ERROR_INVALID_CONFIG;
}

VAStatus queryConfigAttributes(VADriverContextP p_context, VAConfigID p_config, VAProfile* p_profile,
                               VAEntrypoint* p_entrypoint, VAConfigAttrib*, int* p_count) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    const Config* config = find(driver.m_configs, p_config);
    if (config == nullptr) {
        return VA_STATUS_ERROR_INVALID_CONFIG;
    }
    *p_profile = config->m_profile;
    *p_entrypoint = config->m_entrypoint;
    *p_count = 0;
    return VA_STATUS_SUCCESS;
}

VAStatus querySurfaceAttributes(VADriverContextP, VAConfigID, VASurfaceAttrib* p_attributes, unsigned* p_count) {
    const std::pair<VASurfaceAttribType, int> values[] = {{VASurfaceAttribPixelFormat, VA_FOURCC_NV12},
                                                          {VASurfaceAttribMinWidth, 1},
                                                          {VASurfaceAttribMinHeight, 1},
                                                          {VASurfaceAttribMaxWidth, LARGEST_SIZE},
                                                          {VASurfaceAttribMaxHeight, LARGEST_SIZE},
                                                          {VASurfaceAttribMemoryType, VA_SURFACE_ATTRIB_MEM_TYPE_VA}};
    constexpr unsigned count = sizeof(values) / sizeof(values[0]);
    bool isTooSmall = p_attributes != nullptr && *p_count < count;
    *p_count = count;
    if (p_attributes == nullptr) {
        return VA_STATUS_SUCCESS;
    }
    if (isTooSmall) {
        return VA_STATUS_ERROR_MAX_NUM_EXCEEDED;
    }
    for (unsigned i = 0; i < count; i++) {
        p_attributes[i] = {};
        p_attributes[i].type = values[i].first;
        p_attributes[i].flags = VA_SURFACE_ATTRIB_GETTABLE | VA_SURFACE_ATTRIB_SETTABLE;
        p_attributes[i].value.type = VAGenericValueTypeInteger;
        p_attributes[i].value.value.i = values[i].second;
    }
    return VA_STATUS_SUCCESS;
}

// Surfaces

VAStatus createSurfaces2(VADriverContextP p_context, unsigned p_format, unsigned p_width, unsigned p_height,
                         VASurfaceID* p_surfaces, unsigned p_count, VASurfaceAttrib*, unsigned) {
    if (isDemanded("CreateSurfaces")) {
        return VA_STATUS_ERROR_ALLOCATION_FAILED;
    }
    if (p_format != VA_RT_FORMAT_YUV420) {
        return VA_STATUS_ERROR_UNSUPPORTED_RT_FORMAT;
    }
    if (p_width == 0 || p_height == 0 || p_width > LARGEST_SIZE || p_height > LARGEST_SIZE) {
        return VA_STATUS_ERROR_RESOLUTION_NOT_SUPPORTED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    for (unsigned i = 0; i < p_count; i++) {
        p_surfaces[i] = ++driver.m_lastID;
        driver.m_surfaces[p_surfaces[i]] = std::make_shared<Nv12Picture>(p_width, p_height);
    }
    return VA_STATUS_SUCCESS;
}

VAStatus createSurfaces(VADriverContextP p_context, int p_width, int p_height, int p_format, int p_count,
                        VASurfaceID* p_surfaces) {
    return createSurfaces2(p_context, static_cast<unsigned>(p_format), static_cast<unsigned>(p_width),
                           static_cast<unsigned>(p_height), p_surfaces, static_cast<unsigned>(p_count), nullptr, 0);
}

VAStatus destroySurfaces(VADriverContextP p_context, VASurfaceID* p_surfaces, int p_count) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    for (int i = 0; i < p_count; i++) {
        if (driver.m_surfaces.erase(p_surfaces[i]) == 0) {
            return VA_STATUS_ERROR_INVALID_SURFACE;
        }
    }
    return VA_STATUS_SUCCESS;
}

VAStatus syncSurface(VADriverContextP, VASurfaceID) {
    return isDemanded("SyncSurface") ? VA_STATUS_ERROR_HW_BUSY : VA_STATUS_SUCCESS;
}

VAStatus querySurfaceStatus(VADriverContextP, VASurfaceID, VASurfaceStatus* p_status) {
    *p_status = VASurfaceReady;
    return VA_STATUS_SUCCESS;
}

// Buffers

VAStatus createBuffer(VADriverContextP p_context, VAContextID, VABufferType p_type, unsigned p_size, unsigned p_count,
                      void* p_data, VABufferID* p_buffer) {
    if (isDemanded("CreateBuffer")) {
        return VA_STATUS_ERROR_ALLOCATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto buffer = std::make_unique<Buffer>();
    buffer->m_type = p_type;
    buffer->m_size = static_cast<size_t>(p_size) * p_count;
    if (p_type != VAEncCodedBufferType) {
        buffer->m_bytes.resize(buffer->m_size);
    }
    if (p_data != nullptr) {
        memcpy(buffer->m_bytes.data(), p_data, buffer->m_bytes.size());
    }
    *p_buffer = ++driver.m_lastID;
    driver.m_buffers[*p_buffer] = std::move(buffer);
    return VA_STATUS_SUCCESS;
}

VAStatus mapBuffer(VADriverContextP p_context, VABufferID p_buffer, void** p_address) {
    if (isDemanded("MapBuffer")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto buffer = find(driver.m_buffers, p_buffer);
    if (buffer == nullptr) {
        return VA_STATUS_ERROR_INVALID_BUFFER;
    }
    Buffer& found = **buffer;
    if (found.m_type == VAEncCodedBufferType) {
        *p_address = &found.m_segment;
    } else {
        *p_address = found.m_picture ? found.m_picture->m_bytes.data() : found.m_bytes.data();
    }
    return VA_STATUS_SUCCESS;
}

VAStatus unmapBuffer(VADriverContextP, VABufferID) {
    return VA_STATUS_SUCCESS;
}

VAStatus destroyBuffer(VADriverContextP p_context, VABufferID p_buffer) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    return driver.m_buffers.erase(p_buffer) == 1 ? VA_STATUS_SUCCESS : VA_STATUS_ERROR_INVALID_BUFFER;
}

// Images

VAStatus queryImageFormats(VADriverContextP, VAImageFormat* p_formats, int* p_count) {
    p_formats[0] = nv12Format();
    *p_count = 1;
    return VA_STATUS_SUCCESS;
}

void addImage(Driver& p_driver, const std::shared_ptr<Nv12Picture>& p_picture, VAImage* p_image) {
    auto buffer = std::make_unique<Buffer>();
    buffer->m_type = VAImageBufferType;
    buffer->m_size = p_picture->m_bytes.size();
    buffer->m_picture = p_picture;
    *p_image = {};
    p_image->image_id = ++p_driver.m_lastID;
    p_image->format = nv12Format();
    p_image->buf = ++p_driver.m_lastID;
    p_image->width = static_cast<uint16_t>(p_picture->m_width);
    p_image->height = static_cast<uint16_t>(p_picture->m_height);
    p_image->data_size = static_cast<uint32_t>(p_picture->m_bytes.size());
    p_image->num_planes = 2;
    p_image->pitches[0] = p_image->pitches[1] = p_picture->m_pitch;
    p_image->offsets[1] = p_picture->m_pitch * p_picture->m_rows;
    p_driver.m_buffers[p_image->buf] = std::move(buffer);
    p_driver.m_images[p_image->image_id] = p_image->buf;
}

VAStatus createImage(VADriverContextP p_context, VAImageFormat*, int p_width, int p_height, VAImage* p_image) {
    if (isDemanded("CreateImage")) {
        return VA_STATUS_ERROR_ALLOCATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    addImage(driver, std::make_shared<Nv12Picture>(static_cast<uint32_t>(p_width), static_cast<uint32_t>(p_height)),
             p_image);
    return VA_STATUS_SUCCESS;
}

VAStatus deriveImage(VADriverContextP p_context, VASurfaceID p_surface, VAImage* p_image) {
    if (isDemanded("DeriveImage")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto surface = find(driver.m_surfaces, p_surface);
    if (surface == nullptr) {
        return VA_STATUS_ERROR_INVALID_SURFACE;
    }
    addImage(driver, *surface, p_image);
    return VA_STATUS_SUCCESS;
}

VAStatus destroyImage(VADriverContextP p_context, VAImageID p_image) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto buffer = find(driver.m_images, p_image);
    if (buffer == nullptr) {
        return VA_STATUS_ERROR_INVALID_IMAGE;
    }
    driver.m_buffers.erase(*buffer);
    driver.m_images.erase(p_image);
    return VA_STATUS_SUCCESS;
}

VAStatus copyImage(VADriverContextP p_context, VASurfaceID p_surface, VAImageID p_image, bool p_intoImage) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto surface = find(driver.m_surfaces, p_surface);
    auto buffer = find(driver.m_images, p_image);
    if (surface == nullptr || buffer == nullptr) {
        return VA_STATUS_ERROR_INVALID_PARAMETER;
    }
    Nv12Picture* from = surface->get();
    Nv12Picture* to = driver.m_buffers[*buffer]->m_picture.get();
    if (!p_intoImage) {
        std::swap(from, to);
    }
    size_t pitch = std::min(from->m_pitch, to->m_pitch);
    uint32_t rows = std::min(from->m_rows, to->m_rows);
    for (uint32_t y = 0; y < rows; y++) {
        memcpy(to->luma(y), from->luma(y), pitch);
    }
    for (uint32_t y = 0; y < rows / 2; y++) {
        memcpy(to->chroma(y), from->chroma(y), pitch);
    }
    return VA_STATUS_SUCCESS;
}

VAStatus getImage(VADriverContextP p_context, VASurfaceID p_surface, int, int, unsigned, unsigned, VAImageID p_image) {
    return isDemanded("GetImage") ? VA_STATUS_ERROR_OPERATION_FAILED : copyImage(p_context, p_surface, p_image, true);
}

VAStatus putImage(VADriverContextP p_context, VASurfaceID p_surface, VAImageID p_image, int, int, unsigned, unsigned,
                  int, int, unsigned, unsigned) {
    return isDemanded("PutImage") ? VA_STATUS_ERROR_OPERATION_FAILED : copyImage(p_context, p_surface, p_image, false);
}

// Coding

VAStatus createContext(VADriverContextP p_context, VAConfigID p_config, int p_width, int p_height, int, VASurfaceID*,
                       int, VAContextID* p_created) {
    if (isDemanded("CreateContext")) {
        return VA_STATUS_ERROR_ALLOCATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    const Config* config = find(driver.m_configs, p_config);
    if (config == nullptr) {
        return VA_STATUS_ERROR_INVALID_CONFIG;
    }
    auto context = std::make_unique<Context>();
    context->m_config = *config;
    context->m_width = static_cast<uint32_t>(p_width);
    context->m_height = static_cast<uint32_t>(p_height);
    *p_created = ++driver.m_lastID;
    driver.m_contexts[*p_created] = std::move(context);
    return VA_STATUS_SUCCESS;
}

VAStatus destroyContext(VADriverContextP p_context, VAContextID p_id) {
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    return driver.m_contexts.erase(p_id) == 1 ? VA_STATUS_SUCCESS : VA_STATUS_ERROR_INVALID_CONTEXT;
}

VAStatus beginPicture(VADriverContextP p_context, VAContextID p_id, VASurfaceID p_target) {
    if (isDemanded("BeginPicture")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto context = find(driver.m_contexts, p_id);
    if (context == nullptr) {
        return VA_STATUS_ERROR_INVALID_CONTEXT;
    }
    (*context)->m_target = p_target;
    (*context)->m_buffers.clear();
    return VA_STATUS_SUCCESS;
}

VAStatus renderPicture(VADriverContextP p_context, VAContextID p_id, VABufferID* p_buffers, int p_count) {
    if (isDemanded("RenderPicture")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto context = find(driver.m_contexts, p_id);
    if (context == nullptr) {
        return VA_STATUS_ERROR_INVALID_CONTEXT;
    }
    (*context)->m_buffers.insert((*context)->m_buffers.end(), p_buffers, p_buffers + p_count);
    return VA_STATUS_SUCCESS;
}

/// The last buffer of a type that was given for the picture, as the structure that it holds.
template <typename Parameters> Parameters* findParameters(Driver& p_driver, Context& p_context, VABufferType p_type) {
    Parameters* found = nullptr;
    for (VABufferID id : p_context.m_buffers) {
        auto buffer = find(p_driver.m_buffers, id);
        if (buffer != nullptr && (*buffer)->m_type == p_type && (*buffer)->m_bytes.size() >= sizeof(Parameters)) {
            found = reinterpret_cast<Parameters*>((*buffer)->m_bytes.data());
        }
    }
    return found;
}

Buffer* findBuffer(Driver& p_driver, Context& p_context, VABufferType p_type) {
    for (VABufferID id : p_context.m_buffers) {
        auto buffer = find(p_driver.m_buffers, id);
        if (buffer != nullptr && (*buffer)->m_type == p_type) {
            return buffer->get();
        }
    }
    return nullptr;
}

bool encodePicture(Driver& p_driver, Context& p_context, Nv12Picture& p_source) {
    VABufferID codedBuffer = VA_INVALID_ID;
    std::vector<uint8_t> bytes;
    if (p_context.m_config.m_profile == VAProfileVP9Profile0) {
        auto parameters =
            findParameters<VAEncPictureParameterBufferVP9>(p_driver, p_context, VAEncPictureParameterBufferType);
        if (parameters == nullptr) {
            return false;
        }
        codedBuffer = parameters->coded_buf;
        if (!p_context.m_vp9.encode(p_source, parameters->frame_width_src, parameters->frame_height_src,
                                    parameters->pic_flags.bits.frame_type == 0, bytes)) {
            return false;
        }
    } else {
        auto parameters =
            findParameters<VAEncPictureParameterBufferH264>(p_driver, p_context, VAEncPictureParameterBufferType);
        if (parameters == nullptr) {
            return false;
        }
        codedBuffer = parameters->coded_buf;
        bytes = writeH264Pcm(p_source, p_source.m_width, p_source.m_height, p_context.m_pictureCount++);
    }
    auto buffer = find(p_driver.m_buffers, codedBuffer);
    if (buffer == nullptr || (*buffer)->m_type != VAEncCodedBufferType || bytes.size() > (*buffer)->m_size) {
        return false;
    }
    if (isDemanded("EmptyPacket")) {
        bytes.clear();
    }
    (*buffer)->m_bytes = std::move(bytes);
    (*buffer)->m_segment = {};
    (*buffer)->m_segment.size = static_cast<uint32_t>((*buffer)->m_bytes.size());
    (*buffer)->m_segment.buf = (*buffer)->m_bytes.data();
    return true;
}

bool decodePicture(Driver& p_driver, Context& p_context, Nv12Picture& p_target) {
    Buffer* data = findBuffer(p_driver, p_context, VASliceDataBufferType);
    if (data == nullptr) {
        return false;
    }
    if (p_context.m_config.m_profile == VAProfileVP9Profile0) {
        return p_context.m_vp9.decode(data->m_bytes.data(), data->m_bytes.size(), p_target);
    }
    auto picture = findParameters<VAPictureParameterBufferH264>(p_driver, p_context, VAPictureParameterBufferType);
    auto slice = findParameters<VASliceParameterBufferH264>(p_driver, p_context, VASliceParameterBufferType);
    if (picture == nullptr || slice == nullptr || slice->slice_data_offset > data->m_bytes.size()) {
        return false;
    }
    return readH264Pcm(data->m_bytes.data() + slice->slice_data_offset, data->m_bytes.size() - slice->slice_data_offset,
                       slice->slice_data_bit_offset, picture->picture_width_in_mbs_minus1 + 1u,
                       picture->picture_height_in_mbs_minus1 + 1u, p_target);
}

VAStatus endPicture(VADriverContextP p_context, VAContextID p_id) {
    if (isDemanded("EndPicture")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    Driver& driver = driverOf(p_context);
    std::lock_guard lock(driver.m_mutex);
    auto context = find(driver.m_contexts, p_id);
    if (context == nullptr) {
        return VA_STATUS_ERROR_INVALID_CONTEXT;
    }
    auto surface = find(driver.m_surfaces, (*context)->m_target);
    if (surface == nullptr) {
        return VA_STATUS_ERROR_INVALID_SURFACE;
    }
    if ((*context)->m_config.m_entrypoint == VAEntrypointVLD) {
        return decodePicture(driver, **context, **surface) ? VA_STATUS_SUCCESS : VA_STATUS_ERROR_DECODING_ERROR;
    }
    return encodePicture(driver, **context, **surface) ? VA_STATUS_SUCCESS : VA_STATUS_ERROR_ENCODING_ERROR;
}

VAStatus terminate(VADriverContextP p_context) {
    delete &driverOf(p_context);
    p_context->pDriverData = nullptr;
    return VA_STATUS_SUCCESS;
}

/// Stands in the places of the table that libva wants filled and FFmpeg never calls.
template <typename... Arguments> VAStatus refuse(VADriverContextP, Arguments...) {
    return VA_STATUS_ERROR_UNIMPLEMENTED;
}

} // namespace

} // namespace zyr_test

extern "C" __attribute__((visibility("default"))) VAStatus __vaDriverInit_1_0(VADriverContextP p_context) {
    using namespace zyr_test;
    if (isDemanded("Initialize")) {
        return VA_STATUS_ERROR_OPERATION_FAILED;
    }
    p_context->pDriverData = new Driver;
    p_context->version_major = VA_MAJOR_VERSION;
    p_context->version_minor = VA_MINOR_VERSION;
    p_context->max_profiles = 4;
    p_context->max_entrypoints = 2;
    p_context->max_attributes = 1;
    p_context->max_image_formats = 1;
    p_context->max_subpic_formats = 1;
    p_context->str_vendor = "Test driver in plain memory";
    VADriverVTable& table = *p_context->vtable;
    table.vaTerminate = terminate;
    table.vaQueryConfigProfiles = queryConfigProfiles;
    table.vaQueryConfigEntrypoints = queryConfigEntrypoints;
    table.vaGetConfigAttributes = getConfigAttributes;
    table.vaCreateConfig = createConfig;
    table.vaDestroyConfig = destroyConfig;
    table.vaQueryConfigAttributes = queryConfigAttributes;
    table.vaCreateSurfaces = createSurfaces;
    table.vaCreateSurfaces2 = createSurfaces2;
    table.vaDestroySurfaces = destroySurfaces;
    table.vaQuerySurfaceAttributes = querySurfaceAttributes;
    table.vaCreateContext = createContext;
    table.vaDestroyContext = destroyContext;
    table.vaCreateBuffer = createBuffer;
    table.vaBufferSetNumElements = refuse;
    table.vaMapBuffer = mapBuffer;
    table.vaUnmapBuffer = unmapBuffer;
    table.vaDestroyBuffer = destroyBuffer;
    table.vaBeginPicture = beginPicture;
    table.vaRenderPicture = renderPicture;
    table.vaEndPicture = endPicture;
    table.vaSyncSurface = syncSurface;
    table.vaQuerySurfaceStatus = querySurfaceStatus;
    table.vaPutSurface = refuse;
    table.vaQueryImageFormats = queryImageFormats;
    table.vaCreateImage = createImage;
    table.vaDeriveImage = deriveImage;
    table.vaDestroyImage = destroyImage;
    table.vaSetImagePalette = refuse;
    table.vaGetImage = getImage;
    table.vaPutImage = putImage;
    table.vaQuerySubpictureFormats = refuse;
    table.vaCreateSubpicture = refuse;
    table.vaDestroySubpicture = refuse;
    table.vaSetSubpictureImage = refuse;
    table.vaSetSubpictureChromakey = refuse;
    table.vaSetSubpictureGlobalAlpha = refuse;
    table.vaAssociateSubpicture = refuse;
    table.vaDeassociateSubpicture = refuse;
    table.vaQueryDisplayAttributes = refuse;
    table.vaGetDisplayAttributes = refuse;
    table.vaSetDisplayAttributes = refuse;
    return VA_STATUS_SUCCESS;
}
