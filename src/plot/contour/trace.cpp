#include "plot/contour/trace.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>

namespace {

constexpr std::size_t kSides = 4;
/// Numbers of what a line may cross: from a grid point to the right and below, and the cell's diagonals from
/// its corners to its middle.
constexpr std::uint64_t kRight = 0, kBelow = 1, kDiagonal = 2, kPerPoint = 6;
constexpr std::array<std::array<int, 2>, kSides> kCorner{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

/// A piece of line in a cell, or in a triangle of one, from one crossing to another.
struct Segment {
    std::uint64_t from, to;
    bool used = false;
};

class Tracer {
public:
    Tracer(const Field &field, float threshold) : field_(field), threshold_(threshold) {}

    std::vector<ContourLine> lines() {
        for (int j = 0; j + 1 < field_.rows(); ++j)
            for (int i = 0; i + 1 < field_.columns(); ++i) add_cell(i, j);
        for (std::size_t s = 0; s < segments_.size(); ++s) {
            at_side_[segments_[s].from].push_back(s);
            at_side_[segments_[s].to].push_back(s);
        }
        std::vector<ContourLine> lines;
        for (const bool rings : {false, true})
            for (std::size_t s = 0; s < segments_.size(); ++s) {
                if (segments_[s].used) continue;
                const bool first_open = at_side_[segments_[s].from].size() == 1;
                const bool last_open = at_side_[segments_[s].to].size() == 1;
                if (rings || first_open || last_open) lines.push_back(follow(s, !first_open && last_open));
            }
        return lines;
    }

private:
    [[nodiscard]] std::uint64_t number(int i, int j, std::uint64_t what) const {
        const auto point = static_cast<std::uint64_t>(j) * static_cast<std::uint64_t>(field_.columns()) +
                           static_cast<std::uint64_t>(i);
        return point * kPerPoint + what;
    }
    [[nodiscard]] GridPoint point_on(std::uint64_t number) const {
        const auto columns = static_cast<std::uint64_t>(field_.columns());
        const std::uint64_t point = number / kPerPoint, what = number % kPerPoint;
        const auto i = static_cast<int>(point % columns), j = static_cast<int>(point / columns);
        if (what < kDiagonal)
            return vertex_crossing(vertex_at(field_, i, j),
                                   vertex_at(field_, what == kRight ? i + 1 : i, what == kRight ? j : j + 1),
                                   threshold_);
        const std::array<int, 2> &corner = kCorner[what - kDiagonal];
        return vertex_crossing(vertex_at(field_, i + corner[0], j + corner[1]),
                               middle_of(cell_of(field_, i, j), i, j), threshold_);
    }

    void add_cell(int i, int j) {
        const CellValues cell = cell_of(field_, i, j);
        std::size_t above = 0;
        for (const float value : cell.value) {
            if (!Field::is_given(value)) return;
            above += value >= threshold_ ? 1U : 0U;
        }
        if (above == 0 || above == kSides) return;
        const std::array<std::uint64_t, kSides> sides{number(i, j, kRight), number(i + 1, j, kBelow),
                                                      number(i, j + 1, kRight), number(i, j, kBelow)};
        std::vector<std::uint64_t> crossed;
        const auto cross = [&crossed, this](float a, float b, std::uint64_t what) {
            if ((a >= threshold_) != (b >= threshold_)) crossed.push_back(what);
        };
        const auto add = [&] {
            if (crossed.size() == 2) segments_.push_back({crossed[0], crossed[1]});
            crossed.clear();
        };
        const bool twisted = cell.is_twisted();
        for (std::size_t k = 0; k < kSides; ++k) {
            const std::size_t next = (k + 1) % kSides;
            cross(cell.value[k], cell.value[next], sides[k]);
            if (!twisted) continue;
            cross(cell.value[k], cell.middle(), number(i, j, kDiagonal + k));
            cross(cell.value[next], cell.middle(), number(i, j, kDiagonal + next));
            add();
        }
        add();
    }

    /// The line that the segment begins or, `backwards`, ends.
    ContourLine follow(std::size_t segment, bool backwards) {
        ContourLine line;
        std::uint64_t at = backwards ? segments_[segment].to : segments_[segment].from;
        const std::uint64_t first = at;
        line.points.push_back(point_on(at));
        for (std::optional<std::size_t> next = segment; next; next = unused_at(at)) {
            Segment &piece = segments_[*next];
            piece.used = true;
            at = piece.from == at ? piece.to : piece.from;
            line.closed = at == first;
            if (line.closed) break;
            line.points.push_back(point_on(at));
        }
        return line;
    }

    std::optional<std::size_t> unused_at(std::uint64_t at) const {
        for (const std::size_t s : at_side_.at(at))
            if (!segments_[s].used) return s;
        return std::nullopt;
    }

    const Field &field_;
    float threshold_;
    std::vector<Segment> segments_;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> at_side_;
};

} // namespace

std::vector<ContourLine> CONT_trace_lines(const Field &field, float threshold) {
    return Tracer(field, threshold).lines();
}
