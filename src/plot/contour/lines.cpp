/// Contour lines and their labels.

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_line.h"
#include "plot/colour/levels.h"
#include "plot/contour/draw.h"
#include "plot/contour/trace.h"
#include "plot/map/occupied_places.h"

namespace {

constexpr float kTextHeight = 0.018F; ///< of a label, part of the plot's height
constexpr float kUsualSpacing = 40;   ///< of labels on a line, hundredths of the plot's height
constexpr float kPercent = 0.01F;
constexpr float kLeastLengths = 2.5F; ///< a labelled line is so many labels long
constexpr float kGap = 0.6F;          ///< to each side of a label, of its height

/// A line on the plot with the way along it to each of its points.
struct PlotLine {
    std::vector<Point> points;
    std::vector<float> way;
    [[nodiscard]] float length() const { return way.empty() ? 0.0F : way.back(); }
    /// The point so far along the line.
    [[nodiscard]] Point at(float distance) const {
        const auto next = static_cast<std::size_t>(std::ranges::lower_bound(way, distance) - way.begin());
        if (next == 0) return points.front();
        if (next >= points.size()) return points.back();
        const float step = way[next] - way[next - 1];
        const float part = step > 0 ? (distance - way[next - 1]) / step : 0;
        const Point &a = points[next - 1], &b = points[next];
        return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
    }
};

/// A line in the pieces that the plot shows.
std::vector<PlotLine> plot_lines(const ContourLine &line, PlotPoints &points) {
    std::vector<PlotLine> lines(1);
    const auto add = [&](const GridPoint &grid) {
        const Point point = points.at(grid);
        PlotLine *piece = &lines.back();
        if (!piece->points.empty() && PlotPoints::torn(piece->points.back(), point))
            piece = &lines.emplace_back();
        if (is_missing(point.x)) return;
        const bool first = piece->points.empty();
        const float step =
            first ? 0 : std::hypot(point.x - piece->points.back().x, point.y - piece->points.back().y);
        piece->way.push_back(first ? 0 : piece->way.back() + step);
        piece->points.push_back(point);
    };
    for (const GridPoint &grid : line.points) add(grid);
    if (line.closed) add(line.points.front());
    std::erase_if(lines, [](const PlotLine &piece) { return piece.points.size() < 2; });
    return lines;
}

struct Label {
    float from, to; ///< the part of the line under it
    Point place;
    float angle = 0; ///< of its writing, radians
};

class LineDrawer {
public:
    LineDrawer(bool over_bands, const PlotDomain &grid, PlotPoints &points)
        : over_bands_(over_bands), points_(points), window_(GPH_get_win(kDataTransform)),
          apart_(static_cast<float>(CONT_get_line_look().radius) * std::min(grid.dx, grid.dy)),
          occupied_(window_) {
        ATTRIB_get("color_cont", ATTRIB_text_default(), common_);
        ATTRIB_get("color_clabel", ATTRIB_text_default(), text_);
        height_ = kTextHeight * MAP_get_vert();
    }

    void draw(const Field &field, float threshold, bool labelled) {
        Attribute level;
        CONT_get_fill_attrib(level, threshold);
        if (level.color < 0) return; // neither the line of a level that is not drawn, nor over its bands
        if (over_bands_) level.color = common_.color;
        if (level.color < 0) return;
        const std::string text = labelled ? label_of(threshold) : std::string();
        for (const ContourLine &line : CONT_trace_lines(field, threshold))
            for (const PlotLine &piece : plot_lines(line, points_)) draw_piece(piece, text, level, threshold);
    }

private:
    static std::string label_of(float threshold) {
        const auto values = CONT_get_values();
        const auto level = std::ranges::find(values, threshold) - values.begin();
        const bool given = static_cast<std::size_t>(level) < values.size();
        std::string text = given ? CONT_get_label(static_cast<int>(level)) : std::string();
        constexpr int kDigits = 2;
        return text.empty() ? set_num(threshold, kDigits, 0) : text;
    }

    void draw_piece(const PlotLine &line, const std::string &text, const Attribute &level, float threshold) {
        std::vector<Label> labels;
        if (!text.empty()) {
            GPH_text_attr(&text_, height_);
            labels = place_labels(line, gtext_width(text));
        }
        CONT_line_attr(level, common_, threshold);
        draw_between(line, labels);
        if (labels.empty()) return;
        GPH_text_attr(&text_, height_);
        GPH_text_align(kAlignCenter, kAlignHalf);
        for (const Label &label : labels) {
            gset_char_up_vec(-std::sin(label.angle), std::cos(label.angle));
            gtext(label.place, text);
        }
        gset_char_up_vec(0, 1);
    }

    /// The line but for what is under its labels.
    static void draw_between(const PlotLine &line, const std::vector<Label> &labels) {
        float from = 0;
        for (const Label &label : labels) {
            draw_part(line, from, label.from);
            from = label.to;
        }
        draw_part(line, from, line.length());
    }

    static void draw_part(const PlotLine &line, float from, float to) {
        if (!(to > from)) return;
        std::vector<Point> part{line.at(from)};
        for (std::size_t i = 0; i < line.points.size(); ++i)
            if (line.way[i] > from && line.way[i] < to) part.push_back(line.points[i]);
        part.push_back(line.at(to));
        gpolyline(part);
    }

    /// Labels at even distances, as far as there is room.
    std::vector<Label> place_labels(const PlotLine &line, float width) {
        const LineLook &look = CONT_get_line_look();
        const float spacing =
            is_missing(look.x_spacing) ? kUsualSpacing : std::max({look.x_spacing, look.y_spacing, 1.0F});
        const float step = std::max(spacing * kPercent * MAP_get_vert(), kLeastLengths * width);
        std::vector<Label> labels;
        if (line.length() < kLeastLengths * width) return labels;
        const auto count = static_cast<int>(std::max(1.0F, std::floor(line.length() / step)));
        for (int k = 0; k < count; ++k) {
            const float at = line.length() * (static_cast<float>(k) + 0.5F) / static_cast<float>(count);
            if (const auto label = place_label(line, at, width)) labels.push_back(*label);
        }
        return labels;
    }

    std::optional<Label> place_label(const PlotLine &line, float at, float width) {
        const float half = width / 2, gap = kGap * height_;
        const Point a = line.at(at - half), b = line.at(at + half);
        Label label{at - half - gap, at + half + gap, line.at(at), 0};
        if (CONT_get_line_look().rotated && (a.x != b.x || a.y != b.y)) {
            label.place = {(a.x + b.x) / 2, (a.y + b.y) / 2};
            const bool forwards = b.x >= a.x; // never upside down
            label.angle = forwards ? std::atan2(b.y - a.y, b.x - a.x) : std::atan2(a.y - b.y, a.x - b.x);
        } else {
            // Where the line runs up the page, less of it is under the text.
            const float rise = std::abs(b.y - a.y), run = std::abs(b.x - a.x);
            const float part = rise > run ? height_ / 2 + gap : half + gap;
            label.from = at - part;
            label.to = at + part;
        }
        const float across =
                        std::abs(std::cos(label.angle)) * half + std::abs(std::sin(label.angle)) * height_,
                    up = std::abs(std::sin(label.angle)) * half + std::abs(std::cos(label.angle)) * height_;
        const Point &p = label.place;
        const Rect box{p.x - across, p.x + across, p.y - up, p.y + up};
        const bool inside = box.xmin > window_.xmin && box.xmax < window_.xmax && box.ymin > window_.ymin &&
                            box.ymax < window_.ymax;
        const Rect wide{box.xmin - apart_, box.xmax + apart_, box.ymin - apart_, box.ymax + apart_};
        if (!inside || occupied_.meets(wide)) return std::nullopt;
        occupied_.add(box);
        return label;
    }

    bool over_bands_;
    PlotPoints &points_;
    Rect window_;
    float apart_; ///< from label to label, plane units
    OccupiedPlaces occupied_;
    Attribute common_, text_;
    float height_ = 0;
};

} // namespace

void CONT_draw_lines(const Field &field, std::span<const float> thresholds, bool over_bands,
                     const PlotDomain &grid, PlotPoints &points) {
    LineDrawer drawer(over_bands, grid, points);
    const int skip = CONT_get_line_look().skip;
    for (std::size_t k = 0; k < thresholds.size(); ++k)
        drawer.draw(field, thresholds[k], skip > 0 && k % static_cast<std::size_t>(skip) == 0);
}
