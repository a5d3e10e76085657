#pragma once
/// Inside of the image room: errors of the PNG library, which come by a jump. Between the setjmp and the
/// library no frame owns anything with a destructor.

#include <array>

#include <png.h>

/// What went wrong; set before the jump.
struct PngFault {
    std::array<char, 128> text{};
};

/// Handlers for png_create_..._struct, with a PngFault as their pointer.
[[noreturn]] void png_on_error(png_structp png, png_const_charp text);
void png_on_warning(png_structp png, png_const_charp text);
