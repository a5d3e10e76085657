#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/contour/bands.h"
#include "plot/contour/draw.h"

namespace {

constexpr int kMostInStrip = 32; ///< cells of one polygon

/// A value inside a band: its level's ink is the band's.
float value_in(std::size_t band, std::span<const float> thresholds) {
    if (band == 0) return thresholds.front() - 1;
    if (band == thresholds.size()) return thresholds.back() + 1;
    return (thresholds[band - 1] + thresholds[band]) / 2;
}

class BandFiller : public BandSink {
public:
    BandFiller(std::span<const float> thresholds, PlotPoints &points) : points_(points) {
        for (std::size_t band = 0; band <= thresholds.size(); ++band) {
            Attribute ink;
            // Between two levels; below the first and above the last one the level's edge tells.
            CONT_get_fill_attrib(ink, value_in(band, thresholds));
            if (!is_missing(CONT_get_fill_pat())) ink.fill = CONT_get_fill_pat();
            inks_.push_back(ink);
            drawn_.push_back(ink.color >= 0);
        }
    }
    [[nodiscard]] const std::vector<bool> &drawn() const { return drawn_; }

    void take(int band, std::span<const GridPoint> outline) override {
        outline_.clear();
        for (const GridPoint &point : outline) outline_.push_back(points_.at(point));
        fill(band);
    }

    void take_strip(int band, int row, int first, int end) override {
        for (int begin = first; begin < end; begin += kMostInStrip)
            take_piece(band, row, begin, std::min(begin + kMostInStrip, end));
    }

private:
    Point corner(int i, int j) { return points_.at({static_cast<float>(i), static_cast<float>(j)}); }

    void take_piece(int band, int row, int begin, int end) {
        outline_.clear();
        for (int i = begin; i <= end; ++i) outline_.push_back(corner(i, row));
        for (int i = end; i >= begin; --i) outline_.push_back(corner(i, row + 1));
        const bool whole = fill(band);
        // Of a strip that a seam tears, or that leaves the map, cells may be whole.
        for (int i = begin; !whole && end - begin > 1 && i < end; ++i) take_piece(band, row, i, i + 1);
    }

    /// False when it cannot be shown as it is.
    bool fill(int band) {
        if (!points_.shows(outline_)) return false;
        if (present_ != band) GPH_fill_attr(&inks_[static_cast<std::size_t>(band)]);
        present_ = band;
        outline_.push_back(outline_.front());
        gfill_area(outline_);
        return true;
    }

    PlotPoints &points_;
    std::vector<Attribute> inks_;
    std::vector<bool> drawn_;
    std::vector<Point> outline_;
    int present_ = -1; ///< band whose ink the kernel has been told
};

} // namespace

void CONT_fill_bands(const Field &field, std::span<const float> thresholds, PlotPoints &points) {
    if (thresholds.empty()) return;
    BandFiller filler(thresholds, points);
    CONT_walk_bands(field, thresholds, filler.drawn(), filler);
}
