#pragma once
/// The cells of an image, kept with their data levels to find the one that was drawn over a point.

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "graphics/core/types.h"

/// A radial, or a row of boxes. Points count as those of the CellFrame that the image is drawn in.
struct CellStrip {
    enum class Kind { radial, row };
    Kind kind = Kind::radial;
    float side_a = 0, side_b = 0; ///< azimuths of the edges, degrees; upper and lower edge of a row
    float first = 0, step = 0;    ///< where the first cell begins, and the length of each
    std::size_t skip = 0;         ///< cells before this one are not drawn
    std::size_t look = 0;         ///< which meaning the levels have, in the words of who made the image
    std::vector<std::uint16_t> levels;
};

/// The largest national mosaics have 15 million cells; a damaged file may speak of more than memory holds.
inline constexpr std::size_t kMostKeptCells = 64U << 20;

struct FoundCell {
    std::size_t look = 0;
    unsigned level = 0;
    bool drawn = false;
};

class CellImage {
public:
    /// In the order in which they are drawn. What is more than kMostKeptCells is not kept.
    void add(CellStrip strip);
    /// False when something was not kept.
    [[nodiscard]] bool is_whole() const { return cells_ <= kMostKeptCells; }
    /// The cell seen at a point: where cells overlap, the last one drawn of those that `draws` says are
    /// drawn; where none is, the one whose middle line is nearest. Nothing beyond the image.
    [[nodiscard]] std::optional<FoundCell> at(const Point &point,
                                              const std::function<bool(const FoundCell &)> &draws) const;

private:
    std::vector<CellStrip> strips_;
    std::size_t cells_ = 0;
};
