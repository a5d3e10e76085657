#pragma once
/// Image files of every format.
/// Sources: image_file, png_read, png_write, png_fault, gif_read, gif_write, gif_compress, gif_format,
/// xwd_read, xwd_write, xwd_format, vyximg, vyximg_size.

#include <string_view>

#include "graphics/images/image.h"

// Writers of a record; 1 on success, 0 after a message. A file whose writing failed (full disk) is not there,
// or the old one still is. The XWD writer's messages go to standard error.
[[nodiscard]] int GIF_write(std::string_view path, const ImageRecord &record);
[[nodiscard]] int PNG_write(std::string_view path, const ImageRecord &record);
[[nodiscard]] int XWD_write(std::string_view path, const ImageRecord &record);
/// A domain whose grid size is not that of the picture is written with its spacing changed to fit. `compress`
/// 1 compresses pictures of 8 bits without a colour table; the others are stored as brightness, plain.
[[nodiscard]] int IMG_write(std::string_view path, const ImageRecord &record, int compress);
/// Rows in four passes; off at the start.
void GIF_interlace(int flag);
/// The background's colour is transparent; off at the start.
void GIF_transparent(int flag);

// Readers; 1 on success, 0 after a message with the record empty. IMG_read recognises the format by its first
// bytes and skips a first line that begins with "** ". Palette and grey pictures come with 8 bits a pixel and
// a colour table, others with 32 bits, the most significant byte first; window dumps keep their layout; the
// package format has 8 bits and no table. `flag` is accepted from callers that pass it and changes nothing.
[[nodiscard]] int IMG_read(std::string_view path, ImageRecord &record, int flag);
[[nodiscard]] int gread_image_file(std::string_view path, ImageRecord &record);
