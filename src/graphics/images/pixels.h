#pragma once
/// Inside of the image room: how pixels lie in a record, and what colour they are.

#include <cstdint>
#include <span>

#include "graphics/images/image.h"

/// The red, green and blue field of a pixel value.
struct MaskField {
    int position = 0, width = 0; ///< bits

    explicit MaskField(std::uint32_t mask);
    /// The field of `value` in 8 bits: all bits set is 255, whatever the width.
    [[nodiscard]] std::uint8_t byte(std::uint32_t value) const;
    /// The bits of a byte in the field, others 0; 255 is all bits set.
    [[nodiscard]] std::uint32_t field(std::uint8_t byte) const;
};

/// What turns the pixel values of a record into colours: the colour table, the masks, or (neither) grey.
class PixelColors {
public:
    explicit PixelColors(const ImageRecord &record);
    [[nodiscard]] Rgb color(std::uint32_t value) const;

private:
    const ImageRecord &record_;
    MaskField red_, green_, blue_;
};

/// True when sizes are in range and the pixels are all there in a layout that can be read.
[[nodiscard]] bool is_complete(const ImageRecord &record);
/// Values of the first values.size() pixels of a row of a complete record.
void read_row(const ImageRecord &record, int row, std::span<std::uint32_t> values);

/// True when width and height are positive and within the limits.
[[nodiscard]] bool is_possible_size(std::int64_t width, std::int64_t height);

/// 0 to 255; 0 for not a number.
std::uint8_t color_byte(float component);
Rgb color_of_bytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

/// Makes `record` an 8-bit picture (rows of exactly `width` bytes) or a 32-bit true-colour picture, all 0.
void make_byte_picture(ImageRecord &record, int width, int height);
void make_color_picture(ImageRecord &record, int width, int height);
