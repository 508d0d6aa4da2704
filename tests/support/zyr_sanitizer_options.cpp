// What the leak sanitizer has to know in programs that use VAAPI or hold application data.

#define EXPORTED extern "C" __attribute__((visibility("default")))

/// FFmpeg is built without frame pointers, so only the slow way gives whole stacks for the suppression below.
EXPORTED const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:malloc_context_size=12";
}

/// Packed records hold pointers at any address.
EXPORTED const char* __lsan_default_options() {
    return "use_unaligned=1:print_suppressions=0";
}

/// FFmpeg's VAAPI encoders leave the last picture and its descriptor behind when they are closed.
EXPORTED const char* __lsan_default_suppressions() {
    return "leak:avcodec_send_frame\n";
}
