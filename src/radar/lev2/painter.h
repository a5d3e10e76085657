#pragma once
/// Inside the Level II driver: gates of radials to filled cells.

#include <cstdint>
#include <optional>
#include <vector>

#include "radar/common/cells.h"
#include "radar/lev2/volume.h"

/// What the levels of gates look like. Made anew only when the scaling changes.
class Lev2Levels {
public:
    /// One ink index for each gate: the raw levels themselves, or of 16-bit levels the index of their ink.
    /// Valid until the next call.
    std::span<const std::uint8_t> of(const Lev2Gates &gates);
    [[nodiscard]] const LevelInk &ink() const { return ink_; }
    /// True when `ink` is another than before the last call of `of`.
    [[nodiscard]] bool changed() const { return changed_; }

    /// Smallest measured and largest value seen so far; 100 and -100 without any.
    [[nodiscard]] float smallest() const { return smallest_; }
    [[nodiscard]] float largest() const { return largest_; }

private:
    void make_table(const Lev2Gates &gates, std::size_t levels);
    void note_range(const Lev2Gates &gates, unsigned low, unsigned high);
    std::span<const std::uint8_t> bytes_of(const Lev2Gates &gates);
    std::span<const std::uint8_t> words_of(const Lev2Gates &gates);

    LevelInk ink_;
    std::vector<std::uint8_t> index_; ///< ink of each 16-bit level
    std::vector<std::uint8_t> row_;   ///< ink of each 16-bit gate of a radial
    float scale_ = 0, offset_ = 0;    ///< the table is for; no scale is 0
    int word_bits_ = 0;
    bool changed_ = false;
    float smallest_ = 100, largest_ = -100;
};

/// Where the gates of a radial are drawn, plane units from the radar.
struct Lev2Strip {
    float azimuth_a = 0, azimuth_b = 0; ///< of its edges, degrees
    float first = 0, step = 0;          ///< where the first gate begins, and the length of each
    std::size_t skip = 0;               ///< gates before this one are not drawn
    std::size_t gates = 0;              ///< that are near enough to be drawn
};
/// `width` in degrees; `first_km` is where the first gate begins; nothing nearer than `clutter_km` is drawn.
Lev2Strip LEV2_strip(float azimuth, float width, float first_km, float clutter_km, const Lev2Gates &gates);

/// Draws radials around a radar.
class Lev2Painter {
public:
    /// `width` is that of a radial in degrees; nothing nearer than `clutter_km` is drawn. Cells go to `sink`,
    /// or are filled when it is null.
    Lev2Painter(const CellFrame &frame, float clutter_km, const CellSink *sink)
        : cells_(frame), clutter_km_(clutter_km), sink_(sink) {}

    /// `first_km` is where the first gate begins.
    void draw(float azimuth, float width, float first_km, const Lev2Gates &gates);
    [[nodiscard]] const Lev2Levels &levels() const { return levels_; }

private:
    RadialCells cells_;
    Lev2Levels levels_;
    std::optional<CellFiller> filler_; ///< over the ink of `levels_`
    float clutter_km_;
    const CellSink *sink_;
};
