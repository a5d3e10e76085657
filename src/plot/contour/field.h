#pragma once
/// A field of values on the points of a grid, and points between them.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "graphics/core/types.h"

class Field {
public:
    /// `values`: rows from the top, x fastest, columns * rows of them.
    Field(std::span<const float> values, int columns, int rows)
        : values_(values), columns_(columns), rows_(rows) {}
    [[nodiscard]] int columns() const { return columns_; }
    [[nodiscard]] int rows() const { return rows_; }
    [[nodiscard]] float at(int i, int j) const {
        return values_[static_cast<std::size_t>(j) * static_cast<std::size_t>(columns_) +
                       static_cast<std::size_t>(i)];
    }
    [[nodiscard]] std::span<const float> row(int j) const {
        const auto columns = static_cast<std::size_t>(columns_);
        return values_.subspan(static_cast<std::size_t>(j) * columns, columns);
    }
    static bool is_given(float value) { return std::isfinite(value) && value != kMissingF; }

private:
    std::span<const float> values_;
    int columns_, rows_;
};

/// A point of the grid: columns from the left and rows from the top, from 0. On a side of a cell one of the
/// two is whole; neighbours make the same numbers of a crossing on the side that they share.
struct GridPoint {
    float i, j;
    friend bool operator==(const GridPoint &, const GridPoint &) = default;
};

/// How far from value `a` to value `b` the threshold lies, 0 to 1.
inline float crossing_part(float threshold, float a, float b) {
    return (threshold - a) / (b - a);
}

/// A corner of an outline with its value.
struct Vertex {
    GridPoint point;
    float value;
};
/// Where a threshold crosses the way from corner to corner, whichever comes first.
inline GridPoint vertex_crossing(const Vertex &a, const Vertex &b, float threshold) {
    const bool turned = b.point.i < a.point.i || (b.point.i == a.point.i && b.point.j < a.point.j);
    const Vertex &from = turned ? b : a, &to = turned ? a : b;
    const float part = crossing_part(threshold, from.value, to.value);
    return {from.point.i + part * (to.point.i - from.point.i),
            from.point.j + part * (to.point.j - from.point.j)};
}

/// A cell by its corners, in the order of its outline from the upper left one.
struct CellValues {
    float value[4];
    [[nodiscard]] float middle() const { return (value[0] + value[1] + value[2] + value[3]) / 4; }
    /// Two opposite corners lie higher than both others: for values between them the cell is a saddle.
    [[nodiscard]] bool is_twisted() const {
        const auto above = [this](int a, int c, int b, int d) {
            return std::min(value[a], value[c]) > std::max(value[b], value[d]);
        };
        return above(0, 2, 1, 3) || above(1, 3, 0, 2);
    }
};
inline CellValues cell_of(const Field &field, int i, int j) {
    return {{field.at(i, j), field.at(i + 1, j), field.at(i + 1, j + 1), field.at(i, j + 1)}};
}
inline Vertex vertex_at(const Field &field, int i, int j) {
    return {{static_cast<float>(i), static_cast<float>(j)}, field.at(i, j)};
}
inline Vertex middle_of(const CellValues &cell, int i, int j) {
    return {{static_cast<float>(i) + 0.5F, static_cast<float>(j) + 0.5F}, cell.middle()};
}
