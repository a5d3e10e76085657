#pragma once
/// Inside of the image room: the package format. Four lines, then pixels in rows of exactly `width` bytes.

#include <cstddef>
#include <string>
#include <string_view>

#include "graphics/images/image.h"

inline constexpr std::string_view kVyxMagic = "VYXIMG";
inline constexpr char kVyxCompressed = 'Z';
/// Pixels of one compressed piece, each of which is a zlib stream of its own.
inline constexpr std::size_t kVyxPiece = 10000;

/// "width height", or the domain with its grid size, without a line end. Only projections that the line has a
/// word for are written.
std::string vyx_size_line(const ImageDomain &domain, int width, int height);
/// The reverse. False when the line is neither.
[[nodiscard]] bool vyx_read_size_line(std::string_view line, ImageDomain &domain, int &width, int &height);
