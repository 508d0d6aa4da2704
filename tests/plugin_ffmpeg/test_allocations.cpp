// What the plug-in's own code allocates while a stream runs.

#include "plugin_ffmpeg/zyr_plugin_host.h"

#include <dlfcn.h>
#include <link.h>

using namespace zyr;
using namespace zyr_test;

namespace {

/// The addresses of the plug-in's code.
uintptr_t firstAddress = 0;
uintptr_t lastAddress = 0;
thread_local int numOfAllocations = 0;

void count(void* p_caller) {
    const uintptr_t caller = reinterpret_cast<uintptr_t>(p_caller);
    numOfAllocations += caller >= firstAddress && caller < lastAddress ? 1 : 0;
}

int findPlugin(dl_phdr_info* p_info, size_t, void*) {
    if (strstr(p_info->dlpi_name, "zyr_ffmpeg.so") == nullptr) {
        return 0;
    }
    for (int i = 0; i < p_info->dlpi_phnum; i++) {
        const ElfW(Phdr)& segment = p_info->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            firstAddress = p_info->dlpi_addr + segment.p_vaddr;
            lastAddress = firstAddress + segment.p_memsz;
        }
    }
    return 1;
}

} // namespace

// The C library's own heap under other names, so that the heap functions of the whole process pass through here.
extern "C" {
void* __libc_malloc(size_t p_size);
void* __libc_calloc(size_t p_count, size_t p_size);
void* __libc_realloc(void* p_block, size_t p_size);
void* __libc_memalign(size_t p_alignment, size_t p_size);

#define EXPORTED __attribute__((visibility("default")))

EXPORTED void* malloc(size_t p_size) {
    count(__builtin_return_address(0));
    return __libc_malloc(p_size);
}
EXPORTED void* calloc(size_t p_count, size_t p_size) {
    count(__builtin_return_address(0));
    return __libc_calloc(p_count, p_size);
}
EXPORTED void* realloc(void* p_block, size_t p_size) {
    count(__builtin_return_address(0));
    return __libc_realloc(p_block, p_size);
}
EXPORTED int posix_memalign(void** p_block, size_t p_alignment, size_t p_size) {
    count(__builtin_return_address(0));
    *p_block = __libc_memalign(p_alignment, p_size);
    return *p_block != nullptr ? 0 : ENOMEM;
}
}

class Allocations : public PluginTest {
protected:
    void SetUp() override {
        PluginTest::SetUp();
        dl_iterate_phdr(findPlugin, nullptr);
        ASSERT_NE(0u, firstAddress);
        hostData().setLogLevel(ZYR_LOG_LEVEL_INFO);
    }
    void TearDown() override { hostData().setLogLevel(ZYR_LOG_LEVEL_TRACE); }
};

TEST_F(Allocations, AreSeenWhereTheyAreMade) {
    numOfAllocations = 0;
    Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
    EXPECT_LT(0, numOfAllocations);
}

TEST_F(Allocations, AreNoneForEachFrameOfARunningStream) {
    for (const char* name : {"vp9", "mpeg1video"}) {
        const bool isVp9 = name[0] == 'v';
        const FrameCodecInfo info =
            makeCodecInfo(name, isVp9 ? "libvpx-vp9" : name,
                          isVp9 ? "crf=32,deadline=realtime,cpu-used=8,lag-in-frames=0" : "strict=unofficial", "",
                          ZYR_COLOR_SPACE_BT_601);
        const FrameCodecInfo decoderInfo = makeCodecInfo(name, name, "", "", ZYR_COLOR_SPACE_BT_601);
        EncodingStream encoding(info);
        DecodingStream decoding(decoderInfo);
        for (int i = 0; i < 10; i++) {
            Held<IUnpackedFrameData> source = makeFrame(320, 240, i);
            numOfAllocations = 0;
            Held<IPackedFrameData> packed(encoding.context->encode(source.get()));
            const int encodings = numOfAllocations;
            numOfAllocations = 0;
            Held<IUnpackedFrameData> result(decoding.context->decode(packed.get()));
            const int decodings = numOfAllocations;
            ASSERT_TRUE(result);
            if (i >= 2) {
                EXPECT_EQ(0, encodings) << name << ", frame " << i;
                EXPECT_EQ(0, decodings) << name << ", frame " << i;
            }
        }
    }
}
