#include <array>
#include <vector>

#include "graphics/devices/memory/canvas.h"

namespace {

constexpr int kFewRows = 32; ///< polygons up to so high, cells above all, need no memory of their own

/// The rows of an edge from its upper end to before its lower one, in each the first pixel centre on or right
/// of the edge.
class EdgeWalk {
public:
    EdgeWalk(PixelPoint upper, PixelPoint lower, int first_row) {
        height_ = lower.y - upper.y;
        const std::int64_t run = lower.x - upper.x;
        quotient_ = floor_div(run, height_);
        remainder_ = run - quotient_ * height_;
        // x = ceil(upper.x + run * rows / height) = upper.x + floor((run * rows + height - 1) / height)
        const std::int64_t numerator = run * (first_row - upper.y) + height_ - 1;
        const std::int64_t whole = first_row == upper.y ? 0 : floor_div(numerator, height_);
        x_ = upper.x + whole;
        rest_ = numerator - whole * height_;
    }
    [[nodiscard]] int x() const { return static_cast<int>(x_); }
    void next_row() {
        x_ += quotient_;
        rest_ += remainder_;
        if (rest_ >= height_) {
            rest_ -= height_;
            ++x_;
        }
    }

private:
    static std::int64_t floor_div(std::int64_t a, std::int64_t b) {
        const std::int64_t q = a / b;
        return a % b < 0 ? q - 1 : q;
    }
    std::int64_t height_ = 1, quotient_ = 0, remainder_ = 0, x_ = 0, rest_ = 0;
};

/// Calls `visit(row, x)` for every crossing of a row from `top` to before `bottom` with an edge.
template <typename Visit>
void for_each_crossing(std::span<const PixelPoint> points, int top, int bottom, Visit visit) {
    PixelPoint previous = points.back();
    for (const PixelPoint point : points) {
        const bool down = previous.y < point.y;
        const PixelPoint upper = down ? previous : point, lower = down ? point : previous;
        previous = point;
        const int first = std::max<int>(upper.y, top), end = std::min<int>(lower.y, bottom);
        if (first >= end) continue;
        EdgeWalk edge(upper, lower, first);
        for (int row = first; row < end; ++row, edge.next_row()) visit(row, edge.x());
    }
}

/// True when the outline goes down once and up once: then each row has two crossings.
bool is_monotone(std::span<const PixelPoint> points) {
    int turns = 0, direction = 0, first_direction = 0;
    PixelPoint previous = points.back();
    for (const PixelPoint point : points) {
        const int step = (point.y > previous.y) - (point.y < previous.y);
        previous = point;
        if (step == 0) continue;
        if (first_direction == 0) first_direction = step;
        if (direction != 0 && step != direction) ++turns;
        direction = step;
    }
    if (direction != first_direction) ++turns; // from the last edge to the first
    return turns == 2;
}

void fill_monotone(const Canvas &canvas, std::span<const PixelPoint> points, int top, int bottom) {
    struct Row {
        int x[2];
    };
    std::array<Row, kFewRows> rows;
    std::array<std::uint8_t, kFewRows> crossings;
    std::fill_n(crossings.begin(), bottom - top, std::uint8_t{0});
    for_each_crossing(points, top, bottom, [&](int row, int x) {
        const auto i = static_cast<std::size_t>(row - top);
        rows[i].x[crossings[i]++ & 1] = x;
    });
    for (int row = top; row < bottom; ++row) {
        const auto [first, end] = std::minmax(rows[static_cast<std::size_t>(row - top)].x[0],
                                              rows[static_cast<std::size_t>(row - top)].x[1]);
        canvas.span(row, first, end);
    }
}

/// Counts the crossings of each row, lays them out row after row and pairs them from the left.
void fill_general(const Canvas &canvas, std::span<const PixelPoint> points, int top, int bottom) {
    const auto height = static_cast<std::size_t>(bottom - top);
    std::vector<std::size_t> begin(height + 1, 0);
    for_each_crossing(points, top, bottom,
                      [&](int row, int) { ++begin[static_cast<std::size_t>(row - top) + 1]; });
    for (std::size_t i = 1; i <= height; ++i) begin[i] += begin[i - 1];
    std::vector<int> crossings(begin[height]);
    std::vector<std::size_t> next(begin.begin(), begin.end() - 1);
    for_each_crossing(points, top, bottom,
                      [&](int row, int x) { crossings[next[static_cast<std::size_t>(row - top)]++] = x; });
    for (std::size_t i = 0; i < height; ++i) {
        const std::span<int> row(crossings.data() + begin[i], begin[i + 1] - begin[i]);
        std::ranges::sort(row);
        for (std::size_t k = 0; k + 1 < row.size(); k += 2)
            canvas.span(top + static_cast<int>(i), row[k], row[k + 1]);
    }
}

struct Bounds {
    PixelPoint low, high;
};

Bounds bounds_of(std::span<const PixelPoint> points) {
    Bounds b{points[0], points[0]};
    for (const PixelPoint p : points) {
        b.low = {std::min(b.low.x, p.x), std::min(b.low.y, p.y)};
        b.high = {std::max(b.high.x, p.x), std::max(b.high.y, p.y)};
    }
    return b;
}

void fill_polygon(const Canvas &canvas, std::span<const PixelPoint> points, const Bounds &bounds) {
    const int top = std::max<int>(bounds.low.y, canvas.top),
              bottom = std::min<int>(bounds.high.y, canvas.bottom);
    if (top >= bottom) return;
    if (bottom - top <= kFewRows && is_monotone(points))
        fill_monotone(canvas, points, top, bottom);
    else
        fill_general(canvas, points, top, bottom);
}

} // namespace

void canvas_area(const Canvas &canvas, std::span<const PixelPoint> points) {
    if (points.size() < 2) return;
    const Bounds bounds = bounds_of(points);
    if (bounds.high.x < canvas.left || bounds.low.x >= canvas.right || bounds.high.y < canvas.top ||
        bounds.low.y >= canvas.bottom)
        return;
    if (bounds.high.x - bounds.low.x <= 1 && bounds.high.y - bounds.low.y <= 1) {
        // Nothing lies between neighbouring pixels: the corners are all there is of so small an area.
        for (const PixelPoint p : points)
            if (canvas.contains(p.x, p.y)) canvas.ink(p.x, p.y);
        return;
    }
    if (points.size() > 2) fill_polygon(canvas, points, bounds);
    canvas_thin_lines(canvas, points, {});
    if (points.front() != points.back())
        canvas_thin_lines(canvas, std::array{points.back(), points.front()}, {});
}
