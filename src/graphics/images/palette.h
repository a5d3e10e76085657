#pragma once
/// The colours of a picture as a table of at most 256.

#include <cstdint>
#include <optional>
#include <vector>

#include "graphics/images/image.h"

/// A palette picture: one index a pixel.
struct PaletteImage {
    int width = 0, height = 0;
    std::vector<Rgb> colors;          ///< at most 256
    int transparent = 0;              ///< slot of the background colour, 0 when it does not occur
    std::vector<std::uint8_t> pixels; ///< width * height
};
/// Slots in the order in which the colours first occur, rows from the top. Of more than 256 the most frequent
/// ones (and the background) have a slot, and every other is shown in the nearest of these. Empty (width 0)
/// when the record holds no whole picture.
PaletteImage IMG_palette(const ImageRecord &record);
/// The same, but nothing where the colours are more than the slots.
[[nodiscard]] std::optional<PaletteImage> IMG_exact_palette(const ImageRecord &record);
