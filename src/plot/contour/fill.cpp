#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/contour/bands.h"
#include "plot/contour/draw.h"

namespace {

/// A value inside a band: its level's ink is the band's.
float value_in(std::size_t band, std::span<const float> thresholds) {
    return band == 0 ? thresholds.front() - 1 : thresholds[band - 1]; // a threshold lies in the band above
}

class BandFiller : public BandSink {
public:
    BandFiller(std::span<const float> thresholds, PlotPoints &points) : points_(points) {
        for (std::size_t band = 0; band <= thresholds.size(); ++band) {
            Attribute ink;
            CONT_get_fill_attrib(ink, value_in(band, thresholds));
            if (!is_missing(CONT_get_fill_pat())) ink.fill = CONT_get_fill_pat();
            inks_.push_back(ink);
            drawn_.push_back(ink.color >= 0);
        }
    }
    [[nodiscard]] const std::vector<bool> &drawn() const { return drawn_; }

    bool wants(int i, int j) override { return points_.shows_cell(i, j); }

    void take(int band, std::span<const GridPoint> outline) override {
        outline_.clear();
        for (std::size_t k = 0; k < outline.size(); ++k)
            if (!is_between(outline, k)) outline_.push_back(points_.at(outline[k]));
        if (!points_.reaches_window(outline_)) return;
        if (present_ != band) GPH_fill_attr(&inks_[static_cast<std::size_t>(band)]);
        present_ = band;
        outline_.push_back(outline_.front());
        if (in_pixels_) {
            gto_pixels(outline_, pixels_);
            gfill_pixels(pixels_);
        } else {
            gfill_area(outline_);
        }
    }

private:
    /// A point of a row between its neighbours, where rows are straight on the plot.
    [[nodiscard]] bool is_between(std::span<const GridPoint> outline, std::size_t k) const {
        return points_.direct() && k > 0 && k + 1 < outline.size() && outline[k - 1].j == outline[k].j &&
               outline[k + 1].j == outline[k].j;
    }

    PlotPoints &points_;
    std::vector<Attribute> inks_;
    std::vector<bool> drawn_;
    std::vector<Point> outline_;
    const bool in_pixels_ = gtakes_pixels();
    std::vector<PixelPoint> pixels_;
    int present_ = -1; ///< band whose ink the kernel has been told
};

} // namespace

void CONT_fill_bands(const Field &field, std::span<const float> thresholds, PlotPoints &points) {
    if (thresholds.empty()) return;
    BandFiller filler(thresholds, points);
    CONT_walk_bands(field, thresholds, filler.drawn(), filler);
}
