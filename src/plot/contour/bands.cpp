#include "plot/contour/bands.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kNoBand = -1;
constexpr std::size_t kCorners = 4;
constexpr int kMostJoined = 64; ///< cells of one outline

int band_of(float value, std::span<const float> thresholds) {
    if (!Field::is_given(value)) return kNoBand;
    constexpr std::size_t kFew = 16; // counting them is quicker than a search
    if (thresholds.size() > kFew)
        return static_cast<int>(std::ranges::upper_bound(thresholds, value) - thresholds.begin());
    int band = 0;
    for (const float threshold : thresholds) band += value >= threshold ? 1 : 0;
    return band;
}

/// Outlines of one band in a row, one behind the other.
struct RowOutlines {
    std::vector<GridPoint> points;
    std::vector<std::size_t> ends;
};

/// The outline that grows from cell to cell: its upper and lower edge from left to right.
struct Strip {
    int begin = 0, end = kNoBand; ///< columns; `end` is the grid line at which it may go on
    std::vector<GridPoint> upper, lower;
};

/// The points of a side that bound a band there, from its first corner on: none, or the interval's ends.
struct Interval {
    std::array<GridPoint, 2> ends{};
    bool empty = true;
    void add(const GridPoint &point) {
        if (empty) ends[0] = point;
        ends[1] = point;
        empty = false;
    }
};

class RowWalk {
public:
    RowWalk(const Field &field, std::span<const float> thresholds)
        : field_(field), thresholds_(thresholds), strips_(thresholds.size() + 1),
          outlines_(thresholds.size() + 1) {}

    /// The cell's part in a band; cells come from left to right.
    void add(int i, int j, int band) {
        const CellValues cell = cell_of(field_, i, j);
        const std::array corners{vertex_at(field_, i, j), vertex_at(field_, i + 1, j),
                                 vertex_at(field_, i + 1, j + 1), vertex_at(field_, i, j + 1)};
        if (!cell.is_twisted()) {
            join(corners, i, band);
            return;
        }
        end_strip(band);
        const Vertex middle = middle_of(cell, i, j);
        for (std::size_t side = 0; side < kCorners; ++side)
            add_triangle({corners[side], corners[(side + 1) % kCorners], middle}, band);
    }

    /// A cell that lies in the band as a whole.
    void add_whole(int i, int j, int band) {
        Strip &strip = strips_[static_cast<std::size_t>(band)];
        const auto x = static_cast<float>(i), y = static_cast<float>(j);
        if (strip.end != i || i - strip.begin >= kMostJoined) {
            end_strip(band);
            strip.begin = i;
            strip.upper.push_back({x, y});
            strip.lower.push_back({x, y + 1});
        }
        strip.upper.push_back({x + 1, y});
        strip.lower.push_back({x + 1, y + 1});
        strip.end = i + 1;
    }

    void hand_over(BandSink &sink) {
        for (std::size_t band = 0; band < strips_.size(); ++band) {
            end_strip(static_cast<int>(band));
            RowOutlines &row = outlines_[band];
            std::size_t begin = 0;
            for (const std::size_t end : row.ends) {
                sink.take(static_cast<int>(band), std::span(row.points).subspan(begin, end - begin));
                begin = end;
            }
            row.points.clear();
            row.ends.clear();
        }
    }

private:
    [[nodiscard]] bool is_in(const Vertex &vertex, int band) const {
        const auto upper = static_cast<std::size_t>(band);
        return (band == 0 || vertex.value >= thresholds_[upper - 1]) &&
               (upper == thresholds_.size() || vertex.value < thresholds_[upper]);
    }

    /// The crossings of the band's thresholds with a side, in their order along it.
    template <typename Take> void crossings(const Vertex &a, const Vertex &b, int band, Take take) const {
        const auto cross = [&](std::size_t threshold) {
            const float at = thresholds_[threshold];
            if ((a.value >= at) != (b.value >= at)) take(vertex_crossing(a, b, at));
        };
        const auto upper = static_cast<std::size_t>(band);
        const bool rising = b.value > a.value;
        if (rising && band > 0) cross(upper - 1);
        if (upper < thresholds_.size()) cross(upper);
        if (!rising && band > 0) cross(upper - 1);
    }

    [[nodiscard]] Interval interval(const Vertex &a, const Vertex &b, int band) const {
        Interval points;
        if (is_in(a, band)) points.add(a.point);
        crossings(a, b, band, [&points](const GridPoint &point) { points.add(point); });
        if (is_in(b, band)) points.add(b.point);
        return points;
    }

    /// Goes on with the strip of the band, or begins one. `corners` from the upper left one in the order of
    /// the outline.
    void join(const std::array<Vertex, kCorners> &corners, int i, int band) {
        const auto &[a, b, c, d] = corners;
        Strip &strip = strips_[static_cast<std::size_t>(band)];
        if (strip.end != i || i - strip.begin >= kMostJoined) {
            end_strip(band);
            strip.begin = i;
            const Interval left = interval(a, d, band);
            if (!left.empty) {
                strip.upper.push_back(left.ends[0]);
                strip.lower.push_back(left.ends[1]);
            }
        }
        crossings(a, b, band, [&strip](const GridPoint &point) { strip.upper.push_back(point); });
        crossings(d, c, band, [&strip](const GridPoint &point) { strip.lower.push_back(point); });
        const Interval right = interval(b, c, band);
        strip.end = i + 1;
        if (right.empty) {
            end_strip(band);
            return;
        }
        strip.upper.push_back(right.ends[0]);
        strip.lower.push_back(right.ends[1]);
    }

    void end_strip(int band) {
        Strip &strip = strips_[static_cast<std::size_t>(band)];
        std::reverse(strip.lower.begin(), strip.lower.end());
        strip.upper.insert(strip.upper.end(), strip.lower.begin(), strip.lower.end());
        add_outline(strip.upper, band);
        strip.upper.clear();
        strip.lower.clear();
        strip.end = kNoBand;
    }

    /// The part of a triangle that lies in the band.
    void add_triangle(const std::array<Vertex, 3> &vertices, int band) {
        triangle_.clear();
        for (std::size_t k = 0; k < vertices.size(); ++k) {
            const Vertex &a = vertices[k], &b = vertices[(k + 1) % vertices.size()];
            if (is_in(a, band)) triangle_.push_back(a.point);
            crossings(a, b, band, [this](const GridPoint &point) { triangle_.push_back(point); });
        }
        add_outline(triangle_, band);
    }

    void add_outline(const std::vector<GridPoint> &outline, int band) {
        constexpr std::size_t kLeast = 3;
        if (outline.size() < kLeast) return;
        RowOutlines &row = outlines_[static_cast<std::size_t>(band)];
        row.points.insert(row.points.end(), outline.begin(), outline.end());
        row.ends.push_back(row.points.size());
    }

    const Field &field_;
    std::span<const float> thresholds_;
    std::vector<Strip> strips_;
    std::vector<RowOutlines> outlines_;
    std::vector<GridPoint> triangle_;
};

} // namespace

void CONT_walk_bands(const Field &field, std::span<const float> thresholds, const std::vector<bool> &drawn,
                     BandSink &sink) {
    if (field.columns() < 2 || field.rows() < 2) return;
    RowWalk walk(field, thresholds);
    const auto bands_of = [&](int j, std::vector<int> &bands) {
        std::ranges::transform(field.row(j), bands.begin(),
                               [&](float value) { return band_of(value, thresholds); });
    };
    const auto any_drawn = [&drawn](int low, int high) {
        for (int band = low; band <= high; ++band)
            if (drawn[static_cast<std::size_t>(band)]) return true;
        return false;
    };
    std::vector<int> upper(static_cast<std::size_t>(field.columns())), lower(upper.size());
    bands_of(0, lower);
    for (int j = 0; j + 1 < field.rows(); ++j) {
        upper.swap(lower);
        bands_of(j + 1, lower);
        for (int i = 0; i + 1 < field.columns(); ++i) {
            const auto k = static_cast<std::size_t>(i);
            const auto [low, high] = std::minmax({upper[k], upper[k + 1], lower[k], lower[k + 1]});
            if (low == kNoBand || !any_drawn(low, high) || !sink.wants(i, j)) continue;
            if (low == high) {
                walk.add_whole(i, j, low);
                continue;
            }
            for (int band = low; band <= high; ++band)
                if (drawn[static_cast<std::size_t>(band)]) walk.add(i, j, band);
        }
        walk.hand_over(sink);
    }
}
