/// The memory display against an X server: the same verbs, then every pixel.

#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "graphics/devices/memory/display.h"
#include "graphics/devices/x11/display.h"
#include "x_server.h"

namespace {

constexpr int kWidth = 200, kHeight = 160;

/// Both displays with a window of one size, told the same.
class BothDisplays {
public:
    bool open() {
        RasterWish wish;
        wish.geometry = "200x160+0+0";
        RasterWindow a, b;
        return gx11_open(wish, a) && gmem_open(wish, b);
    }
    ~BothDisplays() {
        gx11_close();
        gmem_close();
    }
    BothDisplays() = default;
    BothDisplays(const BothDisplays &) = delete;
    BothDisplays &operator=(const BothDisplays &) = delete;

    static void clear() {
        gx11_clear(gx11_base());
        gmem_clear(gmem_base());
    }
    static void color(RasterContext context, long pixel) {
        gx11_set_foreground(context, pixel);
        gmem_set_foreground(context, pixel);
    }
    static void line(RasterContext context, int width, int type) {
        gx11_set_line(context, width, type);
        gmem_set_line(context, width, type);
    }
    static void fill(int pattern) {
        gx11_set_fill(pattern);
        gmem_set_fill(pattern);
    }
    static void clip(const PixelRect &rect) {
        gx11_set_clip(rect);
        gmem_set_clip(rect);
    }
    static void lines(RasterContext context, std::span<const PixelPoint> points) {
        gx11_lines(context, points);
        gmem_lines(context, points);
    }
    static void area(std::span<const PixelPoint> points) {
        gx11_area(points);
        gmem_area(points);
    }
    /// Number of pixels that differ, of those that anything was drawn to.
    static int differences(int *drawn = nullptr) {
        RasterImage a, b;
        EXPECT_TRUE(gx11_read(gx11_base(), a));
        EXPECT_TRUE(gmem_read(gmem_base(), b));
        int count = 0, inked = 0;
        for (std::size_t y = 0; y < kHeight; ++y)
            for (std::size_t x = 0; x < kWidth; ++x) {
                const std::size_t i = y * static_cast<std::size_t>(a.bytes_per_line) + x * 4;
                const std::size_t j = y * static_cast<std::size_t>(b.bytes_per_line) + x * 4;
                const bool same = std::equal(&a.data[i], &a.data[i] + 3, &b.data[j]);
                if (!same) ++count;
                if (b.data[j] != std::byte{0}) ++inked;
            }
        if (drawn != nullptr) *drawn += inked;
        return count;
    }
};

class RandomPaths {
public:
    PixelPoint point(int spread) {
        std::uniform_int_distribution<int> x(-spread, kWidth + spread), y(-spread, kHeight + spread);
        return {static_cast<std::int16_t>(x(engine_)), static_cast<std::int16_t>(y(engine_))};
    }
    std::vector<PixelPoint> path(std::size_t count, int spread, bool closed) {
        std::vector<PixelPoint> points(count);
        for (PixelPoint &p : points) p = point(spread);
        if (closed) points.push_back(points.front());
        return points;
    }
    /// Near one place, as cells of a picture are.
    std::vector<PixelPoint> cell(std::size_t count, int size) {
        const PixelPoint at = point(0);
        std::uniform_int_distribution<int> offset(0, size);
        std::vector<PixelPoint> points(count);
        for (PixelPoint &p : points)
            p = {static_cast<std::int16_t>(at.x + offset(engine_)),
                 static_cast<std::int16_t>(at.y + offset(engine_))};
        return points;
    }
    int number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(engine_); }

private:
    std::mt19937 engine_{20110427};
};

constexpr long kInk = 0x3366CC;

class MemoryPixels : public testing::Test {
protected:
    void SetUp() override {
        NEEDS_X_SERVER(server_);
        ASSERT_TRUE(both_.open());
        for (const RasterContext c :
             {RasterContext::line, RasterContext::marker, RasterContext::text, RasterContext::fill})
            BothDisplays::color(c, kInk);
        BothDisplays::clip({0, 0, kWidth, kHeight});
    }
    /// Draws `count` pictures; pixels that differ in all of them, per mille of those drawn.
    double compare(int count, const std::function<void()> &draw) {
        int different = 0, drawn = 0;
        for (int i = 0; i < count; ++i) {
            BothDisplays::clear();
            draw();
            different += BothDisplays::differences(&drawn);
        }
        EXPECT_GT(drawn, 0);
        return 1000.0 * different / drawn;
    }

    XServer server_{"400x300x24"};
    BothDisplays both_;
    RandomPaths random_;
};

TEST_F(MemoryPixels, ThinLinesAndDashesAreTheServersOwn) {
    for (int type = 1; type <= 5; ++type) {
        BothDisplays::line(RasterContext::line, 0, type);
        for (const int spread : {0, 300, 12000}) {
            EXPECT_EQ(compare(60,
                              [&] {
                                  BothDisplays::lines(RasterContext::line, random_.path(2, spread, false));
                                  BothDisplays::lines(RasterContext::line, random_.path(5, spread, false));
                                  BothDisplays::lines(RasterContext::line, random_.path(4, spread, true));
                              }),
                      0)
                << "type " << type << ", spread " << spread;
        }
        EXPECT_EQ(compare(20,
                          [&] {
                              for (int i = 0; i < 60; ++i)
                                  BothDisplays::lines(RasterContext::line, random_.cell(3, 9));
                          }),
                  0)
            << "type " << type << ", short";
    }
}

TEST_F(MemoryPixels, PolygonsAndPatternsAreTheServersOwn) {
    const auto cells = [&](std::size_t corners, int size) {
        return compare(30, [&] {
            BothDisplays::fill(random_.number(21) - 1);
            BothDisplays::clip({20 + random_.number(9), 15, 150, 130});
            for (int i = 0; i < 40; ++i) {
                BothDisplays::color(RasterContext::fill, kInk + i);
                BothDisplays::area(random_.cell(corners, size));
            }
        });
    };
    for (const std::size_t corners : {3U, 4U, 5U, 9U})
        for (const int size : {3, 12, 80}) EXPECT_EQ(cells(corners, size), 0) << corners << " in " << size;
    EXPECT_EQ(compare(60, [&] { BothDisplays::area(random_.path(12, 400, false)); }), 0);
    EXPECT_EQ(compare(60, [&] { BothDisplays::area(random_.path(5, 15000, false)); }), 0);
}

/// Wide lines: ends and joins of short dashes differ from the server's in single pixels.
TEST_F(MemoryPixels, WideLinesAreNearlyTheServersOwn) {
    for (const int width : {1, 2, 3, 6})
        for (int type = 1; type <= 5; ++type)
            for (const RasterContext context : {RasterContext::line, RasterContext::text}) {
                BothDisplays::line(context, width, type);
                const auto paths = [&](std::size_t count, bool closed) {
                    return compare(10,
                                   [&] { BothDisplays::lines(context, random_.path(count, 20, closed)); });
                };
                EXPECT_LT(paths(2, false), 0.5) << width << ' ' << type;
                EXPECT_LT(paths(5, false), 5) << width << ' ' << type;
                EXPECT_LT(paths(4, true), 8) << width << ' ' << type;
                const double cells = compare(10, [&] {
                    for (int i = 0; i < 30; ++i) BothDisplays::lines(context, random_.cell(3, 9));
                });
                EXPECT_LT(cells, type == 1 ? 5 : 30) << width << ' ' << type;
            }
}

} // namespace
