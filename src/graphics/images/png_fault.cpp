#include "graphics/images/png_fault.h"

#include <cstdio>
#include <cstdlib>

#include "lib/report/message.h"

void png_on_error(png_structp png, png_const_charp text) {
    auto *fault = static_cast<PngFault *>(png_get_error_ptr(png));
    std::snprintf(fault->text.data(), fault->text.size(), "%s", text);
    png_longjmp(png, 1);
}

void png_on_warning(png_structp /*png*/, png_const_charp text) {
    MESS_print(kDebug, "PNG: %s\n", text);
}

png_voidp png_take(png_structp png, png_alloc_size_t size) {
    void *const memory = std::malloc(size);
    if (memory == nullptr) static_cast<PngFault *>(png_get_mem_ptr(png))->no_memory = true;
    return memory;
}

void png_give_back(png_structp /*png*/, png_voidp memory) {
    std::free(memory);
}
