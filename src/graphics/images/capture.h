#pragma once
/// Pictures of the current drawable, and pictures laid over it.

#include <string_view>

#include "graphics/images/image.h"

/// 1 on success, 0 when there is no display or drawable.
int gget_image(ImageRecord &record);
/// Capture and write.
[[nodiscard]] int GIF_dump(std::string_view path);
[[nodiscard]] int PNG_dump(std::string_view path);
[[nodiscard]] int XWD_dump(std::string_view path);
/// `label`, `title` and `domain` tell what the package format carries along.
int IMG_dump(std::string_view path, std::string_view label, std::string_view title,
             const ImageDomain &domain);
/// Reads an image and lays it over the current drawable at pixel (x, y), negative: from the far edge of the
/// viewport; a colour is transparent. `transparent`: its red, green and blue, or null.
[[nodiscard]] int goverlay_image_file(std::string_view path, const Rgb *transparent, int x, int y);
