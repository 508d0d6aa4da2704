/// A host with the core and the picture module, as tests see them.
#pragma once

#include "picture/zyr_picture.h"
#include "support/zyr_ignore_leaks.h"
#include "support/zyr_logged_application.h"
#include "zyr_common/object/zyr_factories.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace zyr {

/// Gives the test's reference back.
struct ObjectRelease {
    void operator()(IObject* p_object) const { p_object->release(); }
};
template <class Interface> using Held = std::unique_ptr<Interface, ObjectRelease>;

/// The modules are loaded anew for each test, since they keep their pointer to the application data, and closed behind
/// it.
class PictureModuleTest : public testing::Test {
protected:
    using Prepare = void (*)(ApplicationData*);

    PictureModuleTest() {
        const IgnoreLeaks ignoreLeaks; // The modules' texts and allocators that are never destroyed.
        m_core = load(ZYR_CORE_MODULE);
        m_picture = load(ZYR_PICTURE_MODULE);
        m_prepareCore = reinterpret_cast<Prepare>(dlsym(m_core, "zyr_core_prepare"));
        m_preparePicture = reinterpret_cast<Prepare>(dlsym(m_picture, "zyr_picture_prepare"));
    }
    ~PictureModuleTest() override {
        delete m_application;
        dlclose(m_picture);
        dlclose(m_core);
    }

    ApplicationData* getData() const { return m_application->getData(); }

    template <class Interface> static Held<Interface> make() {
        return Held<Interface>(zyr_createInterfaceObject<Interface>());
    }

    static Held<IImage> makeImage(uint32_t p_width, uint32_t p_height, uint32_t p_format) {
        Held<IImage> image = make<IImage>();
        EXPECT_TRUE(image->init(p_width, p_height, 0, static_cast<PixelFormatEnum>(p_format), ZYR_COLOR_SPACE_RGB,
                                ZYR_PIXEL_FORMAT_NONE, 0));
        return image;
    }

    void* m_core;
    void* m_picture;
    Prepare m_prepareCore;
    Prepare m_preparePicture;
    LoggedApplication* m_application = new LoggedApplication;

private:
    static void* load(const char* p_path) {
        void* handle = dlopen(p_path, RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            ADD_FAILURE() << dlerror();
            abort();
        }
        return handle;
    }
};

/// The same with the modules up.
class PictureUpTest : public PictureModuleTest {
protected:
    void SetUp() override {
        const IgnoreLeaks ignoreLeaks;
        ASSERT_TRUE(getData()->commonInitialize());
        m_prepareCore(getData());
        ASSERT_TRUE(getData()->coreInitialize());
        m_preparePicture(getData());
        ASSERT_TRUE(getData()->pictureInitialize());
    }
};

/// The first pixel of a row.
inline uint8_t* getRow(const IImage& p_image, uint32_t p_y) {
    return static_cast<uint8_t*>(p_image.getData()) + size_t{p_y} * p_image.getPitch();
}

/// Fills a picture with numbers that differ from pixel to pixel and channel to channel.
inline void fillWithNumbers(const IImage& p_image) {
    const uint32_t size = p_image.getBitsPerPixel() / 8;
    for (uint32_t y = 0; y < p_image.getHeight(); ++y) {
        for (uint32_t i = 0; i < p_image.getWidth() * size; ++i) {
            getRow(p_image, y)[i] = static_cast<uint8_t>(17 * y + 7 * i + 3);
        }
    }
}

inline std::vector<uint8_t> getPixel(const IImage& p_image, uint32_t p_x, uint32_t p_y) {
    const uint32_t size = p_image.getBitsPerPixel() / 8;
    const uint8_t* pixel = getRow(p_image, p_y) + p_x * size;
    return std::vector<uint8_t>(pixel, pixel + size);
}

} // namespace zyr
