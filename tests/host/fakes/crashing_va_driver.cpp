// A VA driver that ends the process as soon as it is opened.

#include <cstdlib>

extern "C" __attribute__((visibility("default"))) int __vaDriverInit_1_0(void*) {
    abort();
}
