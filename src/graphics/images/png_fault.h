#pragma once
/// Inside of the image room: errors of the PNG library, which come by a jump. Between the setjmp and the
/// library no frame owns anything with a destructor.

#include <array>
#include <new>

#include <png.h>

/// What went wrong; set before the jump.
struct PngFault {
    std::array<char, 128> text{};
    bool no_memory = false;

    /// Lack of memory is no fault of a picture.
    void throw_without_memory() const {
        if (no_memory) throw std::bad_alloc();
    }
};

/// Handlers for png_create_..._struct, with a PngFault as their pointer.
[[noreturn]] void png_on_error(png_structp png, png_const_charp text);
void png_on_warning(png_structp png, png_const_charp text);
/// Memory for png_create_..._struct_2, with the PngFault as its pointer too.
png_voidp png_take(png_structp png, png_alloc_size_t size);
void png_give_back(png_structp png, png_voidp memory);
