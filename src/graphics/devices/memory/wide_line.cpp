#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "graphics/devices/memory/canvas.h"

namespace {

/// A place between the pixels.
struct Place {
    double x, y;
};

Place operator+(Place a, Place b) {
    return {a.x + b.x, a.y + b.y};
}
Place operator*(Place a, double factor) {
    return {a.x * factor, a.y * factor};
}
Place place(PixelPoint p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// Rounds up, but not on account of an error in the last bits.
int first_centre(double value) {
    constexpr double kNoise = 1e-9;
    return static_cast<int>(std::ceil(value - kNoise));
}

/// The inside of a convex polygon: in each row the centres from its left to before its right edge.
void fill_convex(const Canvas &canvas, std::span<const Place> corners) {
    double low = corners[0].y, high = low;
    for (const Place &p : corners) {
        low = std::min(low, p.y);
        high = std::max(high, p.y);
    }
    const int top = std::max(first_centre(low), canvas.top);
    const int bottom = std::min(first_centre(high), canvas.bottom);
    for (int row = top; row < bottom; ++row) {
        double left = std::numeric_limits<double>::infinity(), right = -left;
        Place a = corners.back();
        for (const Place &b : corners) {
            if (a.y != b.y && row >= first_centre(std::min(a.y, b.y)) &&
                row < first_centre(std::max(a.y, b.y))) {
                const double x = a.x + (row - a.y) * (b.x - a.x) / (b.y - a.y);
                left = std::min(left, x);
                right = std::max(right, x);
            }
            a = b;
        }
        if (left < right) canvas.span(row, first_centre(left), first_centre(right));
    }
}

/// A stretch of line: from, to, and the unit vector between them.
struct Stroke {
    Place from, to, along;
    [[nodiscard]] Place across() const { return {-along.y, along.x}; }
};

void fill_stroke(const Canvas &canvas, Stroke s, double half, bool project_start, bool project_end) {
    if (project_start) s.from = s.from + s.along * -half;
    if (project_end) s.to = s.to + s.along * half;
    const Place side = s.across() * half;
    const std::array corners{s.from + side, s.to + side, s.to + side * -1, s.from + side * -1};
    fill_convex(canvas, corners);
}

/// A bevel: the triangle between the outer corners of two lines and their common point. The one on the inner
/// side lies within the lines.
void fill_join(const Canvas &canvas, const Stroke &before, const Stroke &after, double half) {
    const double turn = before.along.x * after.along.y - before.along.y * after.along.x;
    const double side = turn > 0 ? -half : half;
    const std::array corners{after.from, after.from + before.across() * side,
                             after.from + after.across() * side};
    fill_convex(canvas, corners);
}

/// Where a path is in its list of dashes, which it enters at the start of the first.
class DashPosition {
public:
    explicit DashPosition(DashLengths lengths) : lengths_(lengths), left_(lengths.empty() ? 0 : lengths[0]) {}
    [[nodiscard]] bool on() const { return index_ % 2 == 0; }
    /// Length up to the next change.
    [[nodiscard]] double left() const { return left_; }
    [[nodiscard]] bool solid() const { return lengths_.empty(); }
    /// True when this ends the dash or gap.
    bool advance(double length) {
        left_ -= length;
        if (left_ > 0) return false;
        index_ = (index_ + 1) % lengths_.size();
        left_ = lengths_[index_];
        return true;
    }

    /// At the end of a line: what is left of a dash is kept in whole pixels only.
    void end_line() {
        if (solid()) return;
        left_ = std::trunc(left_);
        if (left_ <= 0) advance(0);
    }

private:
    DashLengths lengths_;
    std::size_t index_ = 0;
    double left_;
};

struct WidePath {
    const Canvas &canvas;
    double half;
    bool projecting;

    /// One line in dashes. `starts` and `ends`: a cap and not a join stands there.
    void dashed(const Stroke &s, double length, bool starts, bool ends, DashPosition &dash) const {
        double done = 0;
        bool from_change = starts;
        while (done < length) {
            const double step = std::min(dash.left(), length - done);
            const bool on = dash.on(), last = done + step >= length;
            const bool changed = dash.advance(step);
            if (on)
                fill_stroke(canvas, {s.from + s.along * done, s.from + s.along * (done + step), s.along},
                            half, projecting && from_change, projecting && (changed || (last && ends)));
            from_change = changed;
            done += step;
        }
        dash.end_line();
    }
    void point(PixelPoint at) const {
        if (projecting) fill_stroke(canvas, {place(at), place(at), {1, 0}}, half, true, true);
    }
};

} // namespace

void canvas_wide_lines(const Canvas &canvas, std::span<const PixelPoint> points, int width,
                       DashLengths dashes, bool projecting) {
    const WidePath path{canvas, width / 2.0, projecting};
    std::vector<Stroke> strokes;
    std::vector<double> lengths;
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (points[i] == points[i - 1]) continue;
        const Place a = place(points[i - 1]), b = place(points[i]);
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        strokes.push_back({a, b, {(b.x - a.x) / length, (b.y - a.y) / length}});
        lengths.push_back(length);
    }
    if (strokes.empty()) {
        if (!points.empty()) path.point(points[0]);
        return;
    }
    const bool closed = points.front() == points.back();
    DashPosition dash(dashes);
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        const bool first = i == 0 && !closed, last = i + 1 == strokes.size() && !closed;
        if (i > 0 && dash.on()) fill_join(canvas, strokes[i - 1], strokes[i], path.half);
        if (dash.solid())
            fill_stroke(canvas, strokes[i], path.half, projecting && first, projecting && last);
        else
            path.dashed(strokes[i], lengths[i], first, last, dash);
    }
    if (closed && dash.on()) fill_join(canvas, strokes.back(), strokes.front(), path.half);
}
