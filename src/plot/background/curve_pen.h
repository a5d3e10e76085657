#pragma once
/// Lines on the earth, drawn on the plane as the current projection bends and tears them. Beside the source:
/// only the map background draws so.

#include <functional>
#include <span>
#include <vector>

#include "graphics/core/types.h"
#include "plot/background/line_file.h"

/// Joins places by lines that are straight in latitude and longitude. A line whose ends lie far apart on the
/// plane is halved until they do not: it bends as the projection does, runs on to where the earth is no
/// longer shown, and is broken where a seam tears it, across the plot or up and down.
class CurvePen {
public:
    using Ink = int (*)(std::span<const Point> points);
    /// `longest` is the longest straight piece, plane units.
    CurvePen(Ink ink, float longest) : ink_(ink), longest_(longest) {}
    CurvePen(const CurvePen &) = delete;
    CurvePen &operator=(const CurvePen &) = delete;
    ~CurvePen() { lift(); }

    /// Pieces that cannot meet the rectangle are left out; what is drawn is still one line where it enters.
    void keep_to(const Rect &window) {
        window_ = window;
        keeps_to_window_ = true;
    }
    /// Told of every straight piece that is drawn.
    void tell(std::function<void(const Point &from, const Point &to)> listener) {
        listener_ = std::move(listener);
    }

    /// Longitudes of neighbours may differ by any number of turns, and by less than half a turn besides.
    void to(const MapPoint &place);
    /// Draws what is pending; the next place begins a line.
    void lift();

private:
    struct Node {
        MapPoint place;
        Point plane;
        bool visible;
    };
    static Node node_at(const MapPoint &place);
    [[nodiscard]] bool is_far(const Point &a, const Point &b) const;
    [[nodiscard]] bool is_outside(const Point &a, const Point &b) const;
    void join(const Node &a, const Node &b, int halvings);
    void draw_to(const Node &a, const Node &b);
    void finish_piece();

    Ink ink_;
    float longest_;
    Rect window_;
    bool keeps_to_window_ = false;
    std::function<void(const Point &, const Point &)> listener_;
    std::vector<Point> piece_;
    Node last_{};
    bool has_last_ = false;
};
