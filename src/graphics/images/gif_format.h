#pragma once
/// Inside of the image room: what the GIF writers and the reader share. Blocks and codes: GIF89a
/// specification.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graphics/core/types.h"
#include "graphics/images/image.h"

/// A rectangle of a picture, in pixels from the upper left corner.
struct GifRect {
    int left = 0, top = 0, width = 0, height = 0;
};

enum GifByte : std::uint8_t {
    kGifExtension = 0x21,
    kGifGraphicControl = 0xF9,
    kGifApplication = 0xFF,
    kGifImage = 0x2C,
    kGifTrailer = 0x3B,
};
enum GifFlag : std::uint8_t {
    kGifHasTable = 0x80,    ///< of the screen and of an image
    kGifInterlaced = 0x40,  ///< of an image
    kGifTransparent = 0x01, ///< of a graphic control
};
inline constexpr int kGifMaxBits = 12; ///< longest code
inline constexpr int kGifMaxCodes = 1 << kGifMaxBits;

/// The rows in the order in which an interlaced image holds them.
std::vector<int> gif_interlaced_rows(int height);

/// Bits of a colour index for `colors` colours: 1 to 8.
int gif_index_bits(std::size_t colors);

// Pieces of a file, appended to `out`
/// Signature, screen size and the colour table, filled up with black to a power of two.
void gif_put_header(std::string &out, int width, int height, std::span<const Rgb> colors);
/// `disposal` 1 leaves the image, `transparent` -1 for none, `delay` in hundredths of a second.
void gif_put_control(std::string &out, int disposal, int delay, int transparent);
/// An image with its compressed pixels, which stand in the order of the file, and where they are given its
/// own colours.
void gif_put_image(std::string &out, const GifRect &rect, bool interlaced, int index_bits,
                   std::span<const std::uint8_t> pixels, std::span<const Rgb> own_colors = {});
void gif_put_u16(std::string &out, int value);

/// Compresses pixels below 2^code_size into `out`, as data sub-blocks without the terminator.
void gif_compress(std::string &out, int code_size, std::span<const std::uint8_t> pixels);

enum class GifResult { complete, truncated, damaged };
/// Fills all of `pixels` from the joined sub-blocks `codes`; `code_size` 1 to 8.
GifResult gif_decompress(std::span<const std::byte> codes, int code_size, std::span<std::uint8_t> pixels);
