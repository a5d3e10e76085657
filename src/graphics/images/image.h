#pragma once
/// The image record that every image file is written from and read into.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graphics/core/types.h"
#include "lib/system/calendar.h"

/// The map domain of a picture, as the package format carries it; proj kMissing: none. Values and meaning are
/// those of the plot domain record.
struct ImageDomain {
    int proj = kMissing;
    float plat = kMissingF, plon = kMissingF, p3 = kMissingF, p4 = kMissingF, p5 = kMissingF;
    float clat = kMissingF, clon = kMissingF, dx = kMissingF, dy = kMissingF;
    int nx = kMissing, ny = kMissing;
};

struct ImageRecord {
    std::string label; ///< date/time label of the package format
    DateRecord date;   ///< decoded from it
    std::string title;
    int width = 0, height = 0;
    int depth = 0, bits_per_pixel = 0, bytes_per_line = 0;
    int byte_order = 1;  ///< 0 least significant byte first
    bool mapped = false; ///< pixels are indices into `colors`
    std::uint32_t red_mask = 0, green_mask = 0, blue_mask = 0;
    std::vector<Rgb> colors;
    long background = -1; ///< pixel value of the background or of what is transparent, -1 when unknown
    ImageDomain domain;
    std::vector<std::uint8_t> data; ///< height * bytes_per_line
    /// Instead of `data`: pixels that belong to a display, which stay as they are until something is drawn.
    std::span<const std::uint8_t> lent;
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return lent.empty() ? data : lent; }
};

/// Largest picture that is written or read (pixels in one direction, and in all).
inline constexpr int kMaxImageSide = 32767;
inline constexpr std::size_t kMaxImagePixels = 100U << 20;

/// An empty record. Both leave nothing of what the record held.
void IMG_init(ImageRecord &record);
void IMG_free(ImageRecord &record);
