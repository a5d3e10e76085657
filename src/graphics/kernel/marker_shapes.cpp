#include "graphics/kernel/marker_shapes.h"

namespace {

constexpr float kCos30 = 0.866F, kSin30 = 0.5F;

constexpr std::array kDot{Point{0, 0}, Point{1, 0}, Point{1, 1}, Point{0, 1}, Point{0, 0}};
constexpr std::array kAcross{Point{-1, 0}, Point{1, 0}};
constexpr std::array kUpright{Point{0, 1}, Point{0, -1}};
constexpr std::array kRising{Point{-1, -1}, Point{1, 1}};
constexpr std::array kFalling{Point{1, -1}, Point{-1, 1}};
constexpr std::array kCircle{Point{1, 0},  Point{kCos30, kSin30},   Point{kSin30, kCos30},
                             Point{0, 1},  Point{-kSin30, kCos30},  Point{-kCos30, kSin30},
                             Point{-1, 0}, Point{-kCos30, -kSin30}, Point{-kSin30, -kCos30},
                             Point{0, -1}, Point{kSin30, -kCos30},  Point{kCos30, -kSin30},
                             Point{1, 0}};
constexpr std::array kSquare{Point{-1, 1}, Point{1, 1}, Point{1, -1}, Point{-1, -1}, Point{-1, 1}};
constexpr std::array kTriangle{Point{-1, 1}, Point{1, 1}, Point{0, -1}, Point{-1, 1}};
constexpr std::array kPoint{Point{0, 0}};
constexpr std::array kInverted{Point{-1, -1}, Point{1, -1}, Point{0, 1}, Point{-1, -1}};

/// By type; entry 0 draws nothing.
constexpr std::array kShapes{MarkerShape{},
                             MarkerShape{{kDot}, false},
                             MarkerShape{{kAcross, kUpright}},
                             MarkerShape{{kAcross, kUpright, kRising, kFalling}},
                             MarkerShape{{kCircle}},
                             MarkerShape{{kRising, kFalling}},
                             MarkerShape{{kSquare}},
                             MarkerShape{{kTriangle}, true, true},
                             MarkerShape{{kPoint}},
                             MarkerShape{{kInverted}, true, true}};

} // namespace

const MarkerShape &marker_shape(int type) {
    const bool known = type >= 1 && type < static_cast<int>(kShapes.size());
    return kShapes[known ? static_cast<std::size_t>(type) : 0];
}
