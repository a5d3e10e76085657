#include "plot/contour/contour.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "lib/report/message.h"
#include "plot/colour/levels.h"
#include "plot/contour/draw.h"

namespace {

constexpr std::size_t kMostThresholds = 1000;
constexpr int kMostSide = 1 << 15;
/// Values this near a level, in intervals, are taken to lie at it: what is a plateau at a level in the data
/// lies a rounding error beside it as a number.
constexpr float kAtLevel = 1e-4F;

struct Range {
    float min, max;
};

std::optional<Range> range_of(std::span<const float> field) {
    std::optional<Range> range;
    for (const float value : field) {
        if (!Field::is_given(value)) continue;
        if (!range) range = Range{value, value};
        range->min = std::min(range->min, value);
        range->max = std::max(range->max, value);
    }
    return range;
}

void refuse(const char *why) {
    MESS_print(kWarn, "CONT_draw_contour: %s\n", why);
}

/// Levels at base + k x interval from the one below the range to the one above. Nothing when there are too
/// many.
std::optional<std::vector<float>> regular_thresholds(const Range &range) {
    const float interval = CONT_get_intrvl(), base = is_missing(CONT_get_base()) ? 0 : CONT_get_base();
    if (is_missing(interval) || !(interval > 0)) return std::vector<float>{};
    const double first = std::floor((static_cast<double>(range.min) - static_cast<double>(base)) /
                                    static_cast<double>(interval));
    const double last = std::floor((static_cast<double>(range.max) - static_cast<double>(base)) /
                                   static_cast<double>(interval)) +
                        1;
    if (!(last - first < static_cast<double>(kMostThresholds))) return std::nullopt;
    std::vector<float> thresholds;
    for (double k = first; k <= last; ++k)
        thresholds.push_back(
            static_cast<float>(static_cast<double>(base) + k * static_cast<double>(interval)));
    return thresholds;
}

void make_ascend(std::vector<float> &thresholds) {
    std::ranges::sort(thresholds);
    thresholds.erase(std::unique(thresholds.begin(), thresholds.end()), thresholds.end());
}

/// The levels over the range of the data, ascending.
std::optional<std::vector<float>> levels_of(const Range &range) {
    const std::span<const float> values = CONT_get_values();
    std::optional<std::vector<float>> levels =
        values.empty() ? regular_thresholds(range) : std::vector<float>(values.begin(), values.end());
    if (levels) make_ascend(*levels);
    return levels;
}

/// With what bounds the drawing besides: where ink may change.
std::vector<float> with_cutoffs(std::vector<float> thresholds) {
    float max = kMissingF, min = kMissingF;
    CONT_get_cutoff(max, min);
    if (!is_missing(min)) thresholds.push_back(min);
    if (!is_missing(max)) thresholds.push_back(std::nextafter(max, INFINITY)); // it is drawn itself
    make_ascend(thresholds);
    return thresholds;
}

/// The field with what lies at a level put exactly there.
std::vector<float> settled(std::span<const float> field, std::span<const float> thresholds) {
    std::vector<float> values(field.begin(), field.end());
    const float near = is_missing(CONT_get_intrvl()) ? 0.0F : kAtLevel * std::abs(CONT_get_intrvl());
    for (const float threshold : thresholds)
        for (float &value : values)
            value = value < threshold && threshold - value <= near ? threshold : value;
    return values;
}

} // namespace

int CONT_draw_contour(std::span<const float> field, const PlotDomain &grid) {
    const bool sized = grid.nx > 0 && grid.ny > 0 && grid.nx < kMostSide && grid.ny < kMostSide;
    if (!sized || field.size() != static_cast<std::size_t>(grid.nx) * static_cast<std::size_t>(grid.ny)) {
        refuse("The field does not fit its grid");
        return -1;
    }
    const int type = CONT_get_type();
    const auto range = range_of(field);
    if (!range || type == kContourNone) return 0;
    PlotPoints points(grid);
    if (type == kContourValues) {
        CONT_draw_values(Field(field, grid.nx, grid.ny), points);
        return 0;
    }
    const auto levels = levels_of(*range);
    if (levels && levels->empty()) {
        refuse("There are no levels");
        return -1;
    }
    if (!levels || levels->size() > kMostThresholds) {
        refuse("There are more levels over the range of the data than can be drawn");
        return -1;
    }
    const std::vector<float> values = settled(field, *levels);
    const std::vector<float> thresholds = with_cutoffs(*levels);
    const Field settled_field(values, grid.nx, grid.ny);
    if (type != kContourLines) CONT_fill_bands(settled_field, thresholds, points);
    if (CONT_get_line_look().grid) CONT_draw_grid_points(settled_field, points);
    if (type == kContourLines || type == kContourFillLines)
        CONT_draw_lines(settled_field, *levels, type == kContourFillLines, grid, points);
    return 0;
}
