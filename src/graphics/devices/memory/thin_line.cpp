#include <array>
#include <cstdlib>

#include "graphics/devices/memory/canvas.h"

namespace {

/// A line as steps along its longer (major) direction; of two equal ones x is the longer. At each step the
/// shorter (minor) direction follows when the true line is at least half a pixel further, whatever the
/// direction: so a line and its reverse may differ where the true line runs midway between two pixels.
struct ThinLine {
    int x, y;                  ///< start
    int major_x, major_y;      ///< pixel of one major step
    int minor_x, minor_y;      ///< pixel of one minor step
    std::int64_t major, minor; ///< lengths, neither negative

    ThinLine(PixelPoint a, PixelPoint b) : x(a.x), y(a.y) {
        const int dx = b.x - a.x, dy = b.y - a.y;
        const int sign_x = dx < 0 ? -1 : 1, sign_y = dy < 0 ? -1 : 1;
        const bool steep = std::abs(dy) > std::abs(dx);
        major_x = steep ? 0 : sign_x;
        major_y = steep ? sign_y : 0;
        minor_x = steep ? sign_x : 0;
        minor_y = steep ? 0 : sign_y;
        major = std::max(std::abs(dx), std::abs(dy));
        minor = std::min(std::abs(dx), std::abs(dy));
    }
    /// Minor steps made when `k` major ones are.
    [[nodiscard]] std::int64_t minor_steps(std::int64_t k) const {
        return major == 0 ? 0 : (2 * minor * k + major) / (2 * major);
    }
};

/// Steps for which the major coordinate is between two limits, the second excluded.
struct StepRange {
    std::int64_t first, end;
};

StepRange visible_steps(const ThinLine &line, const Canvas &canvas, std::int64_t count) {
    const bool steep = line.major_y != 0;
    const std::int64_t start = steep ? line.y : line.x;
    const std::int64_t low = steep ? canvas.top : canvas.left, high = steep ? canvas.bottom : canvas.right;
    const bool grows = line.major_x + line.major_y > 0;
    const std::int64_t first = grows ? low - start : start - high + 1;
    const std::int64_t end = grows ? high - start : start - low + 1;
    return {std::max<std::int64_t>(first, 0), std::min(end, count)};
}

/// Walks the steps of a range; `plot` gets the pixel and the number of the step.
template <typename Plot> void walk(const ThinLine &line, const StepRange &range, Plot plot) {
    if (range.first >= range.end) return;
    const std::int64_t skipped = line.minor_steps(range.first);
    int x = line.x + static_cast<int>(line.major_x * range.first + line.minor_x * skipped);
    int y = line.y + static_cast<int>(line.major_y * range.first + line.minor_y * skipped);
    std::int64_t error = 2 * line.minor * range.first - line.major - 2 * line.major * skipped;
    for (std::int64_t k = range.first; k < range.end; ++k) {
        plot(x, y, k);
        x += line.major_x;
        y += line.major_y;
        error += 2 * line.minor;
        if (error >= 0) {
            x += line.minor_x;
            y += line.minor_y;
            error -= 2 * line.major;
        }
    }
}

/// Solid lines whose ends are both inside the clip need no test for each pixel.
void draw_inside(const Canvas &canvas, const ThinLine &line, int count) {
    std::uint32_t *pixel = canvas.pixels + line.y * canvas.stride + line.x;
    const std::ptrdiff_t major_step = line.major_y * canvas.stride + line.major_x;
    const std::ptrdiff_t minor_step = line.minor_y * canvas.stride + line.minor_x;
    const int twice_minor = static_cast<int>(2 * line.minor), twice_major = static_cast<int>(2 * line.major);
    int error = -static_cast<int>(line.major);
    for (int k = 0; k < count; ++k) {
        *pixel = canvas.color;
        pixel += major_step;
        error += twice_minor;
        if (error >= 0) {
            pixel += minor_step;
            error -= twice_major;
        }
    }
}

bool beside(const Canvas &canvas, PixelPoint a, PixelPoint b) {
    return std::max(a.x, b.x) < canvas.left || std::min(a.x, b.x) >= canvas.right ||
           std::max(a.y, b.y) < canvas.top || std::min(a.y, b.y) >= canvas.bottom;
}

/// The end point is drawn only when `whole`: the next line draws it.
void draw_solid(const Canvas &canvas, PixelPoint a, PixelPoint b, bool whole) {
    if (beside(canvas, a, b)) return;
    const ThinLine line(a, b);
    const int count = static_cast<int>(line.major) + (whole ? 1 : 0);
    if (canvas.stipple == nullptr && canvas.contains(a.x, a.y) && canvas.contains(b.x, b.y)) {
        draw_inside(canvas, line, count);
        return;
    }
    walk(line, visible_steps(line, canvas, count), [&canvas](int x, int y, std::int64_t) {
        if (canvas.contains(x, y)) canvas.ink(x, y);
    });
}

/// Dashes are counted in major steps and run on from line to line of one path.
class DashCounter {
public:
    explicit DashCounter(DashLengths lengths) {
        for (std::size_t i = 0; i < lengths.size(); ++i)
            for (int n = lengths[i]; n > 0 && period_ < on_.size(); --n) on_[period_++] = i % 2 == 0;
    }
    [[nodiscard]] bool on(std::int64_t step) const {
        return on_[static_cast<std::size_t>(offset_ + step) % period_];
    }
    void advance(std::int64_t steps) { offset_ = (offset_ + steps) % static_cast<std::int64_t>(period_); }

private:
    static constexpr std::size_t kLongest = 64;
    std::array<bool, kLongest> on_{};
    std::size_t period_ = 0;
    std::int64_t offset_ = 0;
};

void draw_dashed(const Canvas &canvas, PixelPoint a, PixelPoint b, bool whole, DashCounter &dashes) {
    const ThinLine line(a, b);
    const std::int64_t count = line.major + (whole ? 1 : 0);
    if (!beside(canvas, a, b)) {
        walk(line, visible_steps(line, canvas, count), [&](int x, int y, std::int64_t k) {
            if (dashes.on(k) && canvas.contains(x, y)) canvas.ink(x, y);
        });
    }
    dashes.advance(line.major);
}

} // namespace

void canvas_thin_lines(const Canvas &canvas, std::span<const PixelPoint> points, DashLengths dashes) {
    if (dashes.empty()) {
        for (std::size_t i = 1; i < points.size(); ++i)
            draw_solid(canvas, points[i - 1], points[i], i + 1 == points.size());
        return;
    }
    DashCounter counter(dashes);
    for (std::size_t i = 1; i < points.size(); ++i)
        draw_dashed(canvas, points[i - 1], points[i], i + 1 == points.size(), counter);
}
