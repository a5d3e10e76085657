#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/core/transform.h"
#include "graphics/devices/common/drawing_area.h"
#include "graphics/kernel/kernel.h"

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

void use_device(int width, int height, int x = 0, int y = 0) {
    GraphicsState &s = gstate();
    s.win_width = width;
    s.win_height = height;
    s.win_x = x;
    s.win_y = y;
    reset_transforms(false);
}

void expect_rect(const Rect &got, const Rect &wanted) {
    EXPECT_FLOAT_EQ(got.xmin, wanted.xmin);
    EXPECT_FLOAT_EQ(got.xmax, wanted.xmax);
    EXPECT_FLOAT_EQ(got.ymin, wanted.ymin);
    EXPECT_FLOAT_EQ(got.ymax, wanted.ymax);
}

TEST(DrawingArea, PanelsOfAGridCountFromTheTopOnEveryDevice) {
    const auto placed = [](const char *geometry, bool downwards) {
        DrawingArea area{400, 300, 0, 0};
        EXPECT_TRUE(place_by_geometry(geometry, {1, 0, 0, downwards}, area)) << geometry;
        return std::array{area.width, area.height, area.x, area.y};
    };
    EXPECT_EQ(placed("P2x4+1+0", true), (std::array{200, 75, 200, 0}));
    EXPECT_EQ(placed("P2x4+1+0", false), (std::array{200, 75, 200, 225}));
    EXPECT_EQ(placed("P2x3+0+2", true), (std::array{200, 100, 0, 200}));
    // Fractions count as the device does.
    EXPECT_EQ(placed("P0.5x0.5+0.25+0.5", true), (std::array{200, 150, 100, 150}));
    EXPECT_EQ(placed("P0.5x0.5+0.25+0.5", false), (std::array{200, 150, 100, 150}));
    EXPECT_EQ(placed("100x50+7+8", true), (std::array{100, 50, 7, 8}));
}

} // namespace

TEST(Transform, DeviceRectangleKeepsTheWindowsAspectInTheCorner) {
    const TransformRect unit;
    const TransformRect wide = make_transform_rect({10, 210, 20, 120});
    expect_rect(to_rect(fit_device(unit, wide, 3, 4)), {13, 113, 24, 124});
    const TransformRect tall = make_transform_rect({0, 100, 0, 400});
    expect_rect(to_rect(fit_device(make_transform_rect({0, 1, 0, 0.5F}), tall, 0, 0)), {0, 100, 0, 50});
}

TEST(Transform, WorldToNdcToPixelAndPrint) {
    use_device(201, 101, 5, 7); // the unit square becomes 100 x 100 at (5, 7)
    gset_win(1, {-10, 10, 0, 50});
    gset_vp(1, {0.2F, 0.8F, 0.1F, 0.6F});
    gsel_norm_tran(1);
    EXPECT_FLOAT_EQ(xW_NDC(0), 0.5F);
    EXPECT_FLOAT_EQ(yW_NDC(25), 0.35F);
    EXPECT_FLOAT_EQ(xW_p(0), 55);
    EXPECT_FLOAT_EQ(yW_p(25), 72); // (1 - 0.35) x 100 + 7: rows grow downwards
    EXPECT_FLOAT_EQ(xW_ps(0), 55);
    EXPECT_FLOAT_EQ(yW_ps(25), 42);
    for (const float v : {-9.0F, 0.0F, 3.25F}) {
        EXPECT_NEAR(xp_W(xW_p(v)), v, 1e-4F);
        EXPECT_NEAR(yp_W(yW_p(v)), v, 1e-4F);
    }
    EXPECT_FLOAT_EQ(xW_trans(1, 0, 0), 0.5F);
    EXPECT_FLOAT_EQ(yW_trans(0, 1, 0.35F), 25);
    EXPECT_EQ(xW_trans(1, 6, 0), kMissingF);
    const ClipRect &clip = gstate().clip; // x 25 to 85, rows 47 to 97
    EXPECT_EQ(clip.x, 25);
    EXPECT_EQ(clip.width, 61);
    EXPECT_EQ(clip.y, 47);
    EXPECT_EQ(clip.height, 51);
}

TEST(Transform, FarAndUnusableCoordinatesAreClamped) {
    use_device(101, 101);
    gset_win(0, {0, 1, 0, 1});
    EXPECT_EQ(xW_p(1e9F), 30000);
    EXPECT_EQ(yW_p(1e9F), -30000);
    EXPECT_EQ(xW_ps(-1e9F), -100000);
    EXPECT_EQ(yW_ps(kInfinity), 100000);
    EXPECT_EQ(xW_ps(kNan), -100000);
    EXPECT_EQ(yW_p(kNan), -30000);
    gset_win(0, {3, 3, kNan, kInfinity}); // no extent: everything falls on the viewport's corner
    EXPECT_FLOAT_EQ(xW_NDC(7), 0);
    EXPECT_TRUE(std::isfinite(xp_W(50)));
}

TEST(Transform, BoundingBoxAgainstTheWindow) {
    use_device(101, 101);
    gset_win(0, {0, 10, 10, 0}); // a window may run downwards
    const auto in_window = [](float x1, float y1, float x2, float y2) {
        return gpts_in_win(std::array{Point{x1, y1}, Point{x2, y2}});
    };
    EXPECT_EQ(in_window(-5, 5, 15, 5), 1);
    EXPECT_EQ(in_window(10, 10, 12, 12), 1);
    EXPECT_EQ(in_window(10.1F, 5, 12, 5), 0);
    EXPECT_EQ(in_window(-5, -5, 15, -1), 0);
    EXPECT_EQ(in_window(kNan, kNan, kNan, kNan), 0);
    EXPECT_EQ(in_window(kNan, 5, 5, 5), 1);
    EXPECT_EQ(gpts_in_win({}), 0);
}

TEST(Transform, AspectFitting) {
    const Rect region{10, 30, 0, 10};
    expect_rect(gset_aspect(region, AspectMode::centre, AspectMode::centre, 1, 1), {15, 25, 0, 10});
    expect_rect(gset_aspect(region, AspectMode::maximum, AspectMode::centre, 1, 1), {20, 30, 0, 10});
    expect_rect(gset_aspect(region, AspectMode::origin, AspectMode::maximum, 4, 1), {0, 20, 5, 10});
}

TEST(Transform, MaximumViewHasALongerSideOfOne) {
    float x = 0, y = 0;
    use_device(201, 101);
    ginq_maxview(1, x, y);
    EXPECT_FLOAT_EQ(x, 1);
    EXPECT_FLOAT_EQ(y, 0.5F);
    use_device(101, 401);
    ginq_maxview(1, x, y);
    EXPECT_FLOAT_EQ(x, 0.25F);
    EXPECT_FLOAT_EQ(y, 1);
    use_device(1, 1);
    ginq_maxview(1, x, y);
    EXPECT_FLOAT_EQ(x, 1);
}

TEST(Transform, NumbersOutsideTheTableAreRefused) {
    use_device(101, 101);
    Rect window, viewport;
    for (const int number : {-1, 6}) {
        EXPECT_EQ(gset_win(number, {}), -1);
        EXPECT_EQ(gset_vp(number, {}), -1);
        EXPECT_EQ(gsel_norm_tran(number), -1);
        EXPECT_EQ(ginq_norm_tran(number, window, viewport), -1);
    }
    EXPECT_EQ(gstate().current_transform, 0);
}
