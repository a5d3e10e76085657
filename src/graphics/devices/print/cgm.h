#pragma once
/// Elements of a CGM (ISO 8632-3, binary encoding). The plain form holds polylines and clips; the full one
/// areas and the look of both besides.

#include <optional>
#include <span>
#include <string>

#include "graphics/core/types.h"
#include "graphics/devices/print/number_writer.h"

class Cgm {
public:
    explicit Cgm(bool full) : full_(full) {}

    /// What stands before the first picture's elements, between two pictures, and behind the last.
    [[nodiscard]] std::string begin() const;
    [[nodiscard]] std::string next_picture() const;
    [[nodiscard]] static std::string end();
    /// The look of lines and areas is not known any more: a picture begins.
    void forget_look();

    // Points in units of the drawing area, 1000 x 800; the elements count tenths of them.
    void clip(PrintWriter &out, const Rect &area) const;
    void polyline(PrintWriter &out, std::span<const Point> points) const;
    /// Of the full form: the present fill colour, and no edge.
    void polygon(PrintWriter &out, std::span<const Point> points) const;

    // The look of what follows, of the full form; only changes are written.
    /// Width in units of the drawing area, types of the kernel.
    void set_line(PrintWriter &out, const Rgb &color, float width, int type);
    void set_fill(PrintWriter &out, const Rgb &color);

private:
    [[nodiscard]] std::string picture() const;

    bool full_;
    std::optional<Rgb> line_color_, fill_color_;
    float line_width_ = -1;
    int line_type_ = 0;
};
