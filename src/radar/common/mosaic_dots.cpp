#include "radar/common/mosaic_dots.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// Cells are looked at in so many places to each side, where the plot shows them.
constexpr int kProbes = 24;

} // namespace

MosaicDots::MosaicDots(const CellFrame &frame, const MosaicGrid &grid, const PixelScale &scale,
                       const Rect &window, int cells)
    : lattice_(frame, grid, &scale), cells_(cells) {
    const float x0 = scale.x_at + window.xmin * scale.x_per, x1 = scale.x_at + window.xmax * scale.x_per;
    const float y0 = scale.y_at + window.ymin * scale.y_per, y1 = scale.y_at + window.ymax * scale.y_per;
    left_ = static_cast<int>(std::floor(std::min(x0, x1)));
    top_ = static_cast<int>(std::floor(std::min(y0, y1)));
    width_ = static_cast<unsigned>(static_cast<int>(std::ceil(std::max(x0, x1))) - left_ + 1);
    height_ = static_cast<unsigned>(static_cast<int>(std::ceil(std::max(y0, y1))) - top_ + 1);
    levels_.resize(static_cast<std::size_t>(width_) * height_);
    stretches_.resize(lattice_.top().size() - 1);
}

int MosaicDots::cells_in_dot(const CellFrame &frame, const MosaicGrid &grid, const PixelScale &scale,
                             const Rect &window) {
    constexpr float kMostPixels = 0.95F, kLeastPixels = 0.001F;
    const auto length = [&scale](const Point &a, const Point &b) {
        return std::max(std::abs((b.x - a.x) * scale.x_per), std::abs((b.y - a.y) * scale.y_per));
    };
    float longest = kLeastPixels, highest = kLeastPixels;
    for (int i = 0; i < kProbes * kProbes; ++i) {
        const auto part = [](int probe) { return (static_cast<float>(probe) + 0.5F) / kProbes; };
        const Point start{grid.x + part(i % kProbes) * static_cast<float>(grid.columns) * grid.dx,
                          grid.y - part(i / kProbes) * static_cast<float>(grid.lines) * grid.dy};
        std::array<Point, 2> side{}, end{};
        frame.line(start, {grid.dx, 0}, side);
        frame.line(start, {0, -grid.dy}, end);
        const Point &p = side[0];
        if (is_missing(p.x) || p.x < window.xmin || p.x > window.xmax || p.y < window.ymin ||
            p.y > window.ymax)
            continue;
        longest = std::max(longest, length(side[0], side[1]));
        highest = std::max(highest, length(end[0], end[1]));
    }
    return highest > kMostPixels ? 0 : static_cast<int>(kMostPixels / longest);
}

bool MosaicDots::hide(const LevelInk &ink) {
    constexpr int kSolid = 0;
    return std::ranges::all_of(ink, [](const Attribute &level) {
        return level.color < 0 || level.fill == kSolid || is_missing(level.fill);
    });
}

void MosaicDots::set_stretch(std::size_t i) {
    const Point &a = lattice_.top()[i], &b = lattice_.top()[i + 1];
    const Point &c = lattice_.bottom()[i], &d = lattice_.bottom()[i + 1];
    Stretch &stretch = stretches_[i];
    stretch.shown = false;
    if (lattice_.torn(a, b) || lattice_.torn(c, d)) return;
    const auto [x_low, x_high] = std::minmax({a.x, b.x, c.x, d.x});
    const auto [y_low, y_high] = std::minmax({a.y, b.y, c.y, d.y});
    const auto right = static_cast<float>(left_) + static_cast<float>(width_),
               bottom = static_cast<float>(top_) + static_cast<float>(height_);
    if (x_high < static_cast<float>(left_) || x_low > right || y_high < static_cast<float>(top_) ||
        y_low > bottom)
        return;
    constexpr float kHalf = 0.5F; // what rounds a coordinate when its fraction is cut
    const auto cells = static_cast<float>(lattice_.stride());
    const float x = kHalf - static_cast<float>(left_), y = kHalf - static_cast<float>(top_);
    stretch.begin = Corners{a.x + x, a.y + y, c.x + x, c.y + y};
    stretch.step = Corners{b.x - a.x, b.y - a.y, d.x - c.x, d.y - c.y} / cells;
    stretch.shown = line_shown_ = true;
}

void MosaicDots::set_stretches(int line) {
    lattice_.set_line(line);
    line_shown_ = false;
    for (std::size_t i = 0; i < stretches_.size(); ++i) set_stretch(i);
}

void MosaicDots::mark(const Stretch &stretch, int column, std::uint8_t level) {
    using Pixels [[gnu::vector_size(sizeof(Corners))]] = std::int32_t;
    const auto pixels =
        __builtin_convertvector(stretch.begin + static_cast<float>(column) * stretch.step, Pixels);
    const auto set = [this, level](int x, int y) {
        const auto column_of = static_cast<unsigned>(x), row = static_cast<unsigned>(y);
        if (column_of < width_ && row < height_) levels_[row * width_ + column_of] = level;
    };
    set(pixels[0], pixels[1]);
    set(pixels[2], pixels[3]);
}

/// Cells are marked at their corners; what lies within a pixel of a mark needs none. Sides that the next run
/// begins with are its own.
void MosaicDots::take(int line, std::span<const MosaicRun> runs, const LevelInk &ink) {
    const auto is_drawn = [&ink](const MosaicRun &run) { return ink[run.level].color >= 0; };
    if (std::ranges::none_of(runs, is_drawn)) return;
    set_stretches(line);
    if (!line_shown_) return;
    const int stride = lattice_.stride();
    std::size_t i = 0;
    int begin = 0; // column where stretch i begins
    for (std::size_t r = 0; r < runs.size(); ++r) {
        const MosaicRun &run = runs[r];
        if (!is_drawn(run)) continue;
        const auto level = static_cast<std::uint8_t>(run.level + 1);
        const int end = run.column + run.cells;
        const auto go_to = [&](int column) {
            while (column >= begin + stride) {
                ++i;
                begin += stride;
            }
        };
        const bool goes_on = r + 1 < runs.size() && runs[r + 1].column == end && is_drawn(runs[r + 1]);
        for (int column = run.column;; column = std::min({column + cells_, begin + stride, end})) {
            if (column < end) go_to(column);
            if (column == end && goes_on) break;
            if (stretches_[i].shown) mark(stretches_[i], column - begin, level);
            if (column == end) break;
        }
    }
}

void MosaicDots::finish(const CellSink &sink) {
    const auto pixel = [this](unsigned x, unsigned y) {
        return PixelPoint{static_cast<std::int16_t>(static_cast<int>(x) + left_),
                          static_cast<std::int16_t>(static_cast<int>(y) + top_)};
    };
    for (unsigned y = 0; y < height_; ++y) {
        const std::span<std::uint8_t> row(&levels_[static_cast<std::size_t>(y) * width_], width_);
        for (unsigned x = 0; x < width_;) {
            const std::uint8_t level = row[x];
            unsigned end = x + 1;
            while (end < width_ && row[end] == level) ++end;
            if (level > 0) {
                const PixelPoint a = pixel(x, y), b = pixel(end - 1, y);
                sink.take_pixels(sink.context, {a, b, b, a, a}, static_cast<std::uint8_t>(level - 1));
            }
            x = end;
        }
    }
    std::ranges::fill(levels_, std::uint8_t{0});
}
