#include "plot/contour/bands.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kNoBand = -1;
constexpr std::size_t kCorners = 4;

int band_of(float value, std::span<const float> thresholds) {
    if (!Field::is_given(value)) return kNoBand;
    return static_cast<int>(std::ranges::upper_bound(thresholds, value) - thresholds.begin());
}

class CellBands {
public:
    CellBands(const Field &field, std::span<const float> thresholds, BandSink &sink)
        : field_(field), thresholds_(thresholds), sink_(sink) {}

    void draw(int i, int j, int band) {
        const CellValues cell = cell_of(field_, i, j);
        const std::array corners{vertex_at(field_, i, j), vertex_at(field_, i + 1, j),
                                 vertex_at(field_, i + 1, j + 1), vertex_at(field_, i, j + 1)};
        if (!cell.is_twisted()) {
            draw_outline(corners, band);
            return;
        }
        const Vertex middle = middle_of(cell, i, j);
        for (std::size_t side = 0; side < kCorners; ++side)
            draw_outline(std::array{corners[side], corners[(side + 1) % kCorners], middle}, band);
    }

private:
    void add_crossing(const Vertex &a, const Vertex &b, std::size_t threshold) {
        const float at = thresholds_[threshold];
        if ((a.value >= at) != (b.value >= at)) outline_.push_back(vertex_crossing(a, b, at));
    }

    /// The part of a convex outline without saddles that lies in the band.
    void draw_outline(std::span<const Vertex> vertices, int band) {
        outline_.clear();
        const auto upper = static_cast<std::size_t>(band);
        const bool has_lower = band > 0, has_upper = upper < thresholds_.size();
        for (std::size_t k = 0; k < vertices.size(); ++k) {
            const Vertex &a = vertices[k], &b = vertices[(k + 1) % vertices.size()];
            if (band_of(a.value, thresholds_) == band) outline_.push_back(a.point);
            const bool rising = b.value > a.value;
            if (rising && has_lower) add_crossing(a, b, upper - 1);
            if (has_upper) add_crossing(a, b, upper);
            if (!rising && has_lower) add_crossing(a, b, upper - 1);
        }
        constexpr std::size_t kLeast = 3;
        if (outline_.size() >= kLeast) sink_.take(band, outline_);
    }

    const Field &field_;
    std::span<const float> thresholds_;
    BandSink &sink_;
    std::vector<GridPoint> outline_;
};

} // namespace

void CONT_walk_bands(const Field &field, std::span<const float> thresholds, const std::vector<bool> &drawn,
                     BandSink &sink) {
    if (field.columns() < 2 || field.rows() < 2) return;
    CellBands cells(field, thresholds, sink);
    const auto bands_of = [&](int j, std::vector<int> &bands) {
        std::ranges::transform(field.row(j), bands.begin(),
                               [&](float value) { return band_of(value, thresholds); });
    };
    std::vector<int> upper(static_cast<std::size_t>(field.columns())), lower(upper.size());
    bands_of(0, lower);
    for (int j = 0; j + 1 < field.rows(); ++j) {
        upper.swap(lower);
        bands_of(j + 1, lower);
        int strip_begin = 0, strip_band = kNoBand;
        const auto end_strip = [&](int i) {
            if (strip_band != kNoBand) sink.take_strip(strip_band, j, strip_begin, i);
            strip_band = kNoBand;
        };
        for (int i = 0; i + 1 < field.columns(); ++i) {
            const auto k = static_cast<std::size_t>(i);
            const auto [low, high] = std::minmax({upper[k], upper[k + 1], lower[k], lower[k + 1]});
            if (low == high) {
                if (low == strip_band) continue;
                end_strip(i);
                if (low == kNoBand || !drawn[static_cast<std::size_t>(low)]) continue;
                strip_begin = i;
                strip_band = low;
                continue;
            }
            end_strip(i);
            if (low == kNoBand) continue;
            for (int band = low; band <= high; ++band)
                if (drawn[static_cast<std::size_t>(band)]) cells.draw(i, j, band);
        }
        end_strip(field.columns() - 1);
    }
}
