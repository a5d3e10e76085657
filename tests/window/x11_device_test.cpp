#include <gtest/gtest.h>

#include "graphics/core/state.h"
#include "graphics/core/transform.h"
#include "graphics/devices/x11/display.h"
#include "graphics/text/font.h"
#include "graphics/text/stroke.h"
#include "lib/report/process.h"
#include "window/onlooker.h"
#include "window/x_server.h"

namespace {

constexpr int kWidth = 320, kHeight = 200;
const std::string kTrueColor = "800x700x24", kPseudoColor = "800x700x8";

RasterWindow open_window(const RasterWish &changes = {}) {
    gstate().kernel_open = true;
    gstate().rw_colors = true;
    RasterWish wish = changes;
    if (wish.title.empty()) wish.title = "Radar_window";
    wish.width = kWidth;
    wish.height = kHeight;
    RasterWindow window;
    EXPECT_TRUE(gx11_open(wish, window));
    return window;
}

unsigned long pixel_at(const RasterImage &image, int x, int y) {
    const auto bytes = static_cast<std::size_t>(image.bits_per_pixel) / 8;
    const auto at = static_cast<std::size_t>(y * image.bytes_per_line) + static_cast<std::size_t>(x) * bytes;
    unsigned long pixel = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        const std::size_t from = image.msb_first ? at + i : at + bytes - 1 - i;
        pixel = pixel << 8 | std::to_integer<unsigned long>(image.data[from]);
    }
    return pixel;
}

unsigned long base_pixel(int x, int y) {
    RasterImage image;
    EXPECT_TRUE(gx11_read(gx11_base(), image));
    return pixel_at(image, x, y);
}

RasterEvent wait_for(RasterEventKind kind) {
    for (;;) {
        RasterEvent event = gx11_next_event();
        if (event.kind == kind) return event;
    }
}

TEST(X11Window, OpensWithTitleSizeAndGeometry) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    const RasterWindow window = open_window();
    EXPECT_EQ(window.width, kWidth);
    EXPECT_EQ(window.height, kHeight);
    const Onlooker onlooker(server.display());
    EXPECT_EQ(onlooker.title(onlooker.window()), "Radar window");
    gx11_set_title_extra("[3]");
    gx11_sync();
    EXPECT_EQ(onlooker.title(onlooker.window()), "Radar window [3]");
    EXPECT_EQ(gx11_title_extra(), "[3]");
    gx11_set_title_extra("");
    EXPECT_EQ(gx11_title_extra(), "");
    gx11_close();

    RasterWish wish;
    wish.geometry = "200x100-10+20";
    RasterWindow placed;
    ASSERT_TRUE(gx11_open(wish, placed));
    EXPECT_EQ(placed.width, 200);
    EXPECT_EQ(placed.height, 100);
    // From the right edge: screen width less 10 less the width.
    EXPECT_EQ(gx11_pointer().x, 400 - (800 - 10 - 200) - 5);
    gx11_close();
}

TEST(X11Window, NoServerIsAMessage) {
    gstate().kernel_open = true;
    unsetenv("DISPLAY");
    RasterWish wish;
    wish.display = ":987";
    RasterWindow window;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(gx11_open(wish, window));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "gopen_ws: unable to connect to display\n");
    // Verbs without a connection do nothing.
    EXPECT_EQ(gx11_create_pixmap(10, 10), kNoPixmap);
    gx11_show();
    gx11_close();
}

TEST(X11Drawing, TrueColorPrimitivesReachPixmapAndWindow) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    open_window();
    const RasterColor red = gx11_alloc_color(2, {1, 0, 0}, -1);
    const RasterColor half = gx11_alloc_color(3, {0, 0.5F, 1}, -1);
    EXPECT_EQ(red.pixel, 0xFF0000);
    EXPECT_EQ(half.pixel, 0x007FFF);
    EXPECT_NEAR(half.actual.green, 0.5F, 0.005F);

    gx11_set_clip({0, 0, kWidth, kHeight});
    gx11_set_foreground(RasterContext::fill, red.pixel);
    const std::array<PixelPoint, 4> square{{{10, 10}, {50, 10}, {50, 50}, {10, 50}}};
    gx11_area(square);
    gx11_set_foreground(RasterContext::line, half.pixel);
    const std::array<PixelPoint, 2> line{{{0, 100}, {200, 100}}};
    gx11_lines(RasterContext::line, line);
    gx11_set_line(RasterContext::line, 0, 2);
    const std::array<PixelPoint, 2> dashed{{{0, 110}, {200, 110}}};
    gx11_lines(RasterContext::line, dashed);
    EXPECT_EQ(base_pixel(30, 30), 0xFF0000U);
    EXPECT_EQ(base_pixel(60, 30), 0U);
    EXPECT_EQ(base_pixel(150, 100), 0x007FFFU);
    EXPECT_EQ(base_pixel(3, 110), 0x007FFFU);
    EXPECT_EQ(base_pixel(9, 110), 0U);

    // Pattern 8: two full rows, two empty ones.
    gx11_set_fill(8);
    gx11_rectangle(RasterContext::fill, {100, 8, 16, 16});
    EXPECT_EQ(base_pixel(105, 8), 0xFF0000U);
    EXPECT_EQ(base_pixel(105, 10), 0U);

    gx11_set_clip({200, 150, 20, 20});
    gx11_set_fill(kSolidFill);
    gx11_rectangle(RasterContext::fill, {150, 140, 100, 50});
    EXPECT_EQ(base_pixel(210, 160), 0xFF0000U);
    EXPECT_EQ(base_pixel(190, 160), 0U);

    gx11_show();
    gx11_sync();
    EXPECT_EQ(Onlooker(server.display()).pixel(30, 30), 0xFF0000U);
    EXPECT_EQ(gx11_counts().errors, 0);
    gx11_close();
}

TEST(X11Drawing, LongLinesAndPolygonsAreDrawnWhole) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    open_window();
    gx11_set_clip({0, 0, kWidth, kHeight});
    for (const RasterContext context : {RasterContext::line, RasterContext::fill})
        gx11_set_foreground(context, 0x00FF00);
    std::vector<PixelPoint> points(100000, PixelPoint{5, 5});
    points[99998] = {5, 150};
    points[99999] = {150, 150};
    gx11_lines(RasterContext::line, points);
    EXPECT_EQ(base_pixel(5, 100), 0x00FF00U);
    EXPECT_EQ(base_pixel(140, 150), 0x00FF00U);
    // One request takes 16,000 points: the segments around its end, each at a place of its own.
    constexpr std::size_t kAround = 15990, kStep = 10;
    std::vector<PixelPoint> path(32000, PixelPoint{20, 160});
    for (std::size_t i = 0; i < 20; ++i)
        path[kAround + i] = {static_cast<short>(20 + kStep * i), static_cast<short>(160 + 10 * (i % 2))};
    std::fill(path.begin() + kAround + 20, path.end(), path[kAround + 19]);
    gx11_lines(RasterContext::line, path);
    for (std::size_t i = 0; i < 19; ++i)
        EXPECT_EQ(base_pixel(static_cast<int>(25 + kStep * i), 165), 0x00FF00U) << i;
    gx11_area(points);
    EXPECT_EQ(base_pixel(20, 100), 0x00FF00U);
    EXPECT_EQ(gx11_counts().errors, 0);
    gx11_close();
}

/// Leftmost, rightmost, upper and lower pixel that is not background.
PixelRect inked(const RasterImage &image) {
    int left = image.width, right = -1, top = image.height, bottom = -1;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (pixel_at(image, x, y) == 0) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return {left, top, right - left + 1, bottom - top + 1};
}

TEST(X11Text, ServerFontsAreLoadedAlignedAndForgotten) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    testing::internal::CaptureStderr();
    EXPECT_EQ(read_font("#fixed"), -1) << "no window is open";
    open_window();
    EXPECT_EQ(read_font("#no-such-font"), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "read_font: unable to load font: fixed\n"
                                                      "read_font: unable to load font: no-such-font\n");
    ASSERT_EQ(read_font("#fixed"), 0);
    const int ascent = gx11_font_ascent(), width = gx11_text_width("HHH");
    EXPECT_GT(ascent, 5);
    EXPECT_GT(width, 12);
    gstate().win_width = kWidth;
    gstate().win_height = kHeight;
    reset_transforms(false);
    gx11_set_clip({0, 0, kWidth, kHeight});
    struct Case {
        int horizontal, vertical, left, bottom; // of the text, pixels
    };
    const int x = 100, y = 80;
    for (const Case &c :
         {Case{kAlignLeft, kAlignBase, x, y}, Case{kAlignCenter, kAlignBase, x - width / 2, y},
          Case{kAlignRight, kAlignTop, x - width, y + ascent},
          Case{kAlignLeft, kAlignHalf, x, y + ascent / 2},
          Case{kAlignLeft, kAlignBottom, x, y - gx11_font_descent()}}) {
        gx11_clear(gx11_base());
        gstate().text.horizontal = c.horizontal;
        gstate().text.vertical = c.vertical;
        text("HHH", xp_W(x), yp_W(y));
        RasterImage image;
        ASSERT_TRUE(gx11_read(gx11_base(), image));
        const PixelRect ink = inked(image);
        EXPECT_NEAR(ink.x, c.left, 1);
        EXPECT_NEAR(ink.y + ink.height, c.bottom, 1);
    }
    EXPECT_NEAR(gtext_width("HHH"), xp_W(static_cast<float>(width)) - xp_W(0), 1e-4F);
    gx11_close();
    text("HHH", 0.5F, 0.5F); // no font, no window: nothing
}

TEST(X11Colors, PseudoColorSharesOwnsAndFallsBack) {
    XServer server(kPseudoColor);
    NEEDS_X_SERVER(server);
    open_window();
    // A read-write cell keeps its pixel when the colour changes.
    const RasterColor first = gx11_alloc_color(2, {1, 0, 0}, -1);
    ASSERT_GE(first.pixel, 0);
    EXPECT_TRUE(gstate().rw_colors);
    const RasterColor changed = gx11_alloc_color(2, {0, 1, 0}, first.pixel);
    EXPECT_EQ(changed.pixel, first.pixel);
    EXPECT_NEAR(changed.actual.green, 1, 0.01F);
    // A shared colour is one cell for all who ask.
    gstate().rw_colors = false;
    const RasterColor a = gx11_alloc_color(3, {0, 0, 1}, -1), b = gx11_alloc_color(4, {0, 0, 1}, -1);
    EXPECT_EQ(a.pixel, b.pixel);
    // When the cells run out, read-write colours end and a new colour is the nearest there is.
    gstate().rw_colors = true;
    int index = 5;
    while (gstate().rw_colors && index < 400) gx11_alloc_color(index++, {0, 0, 1}, -1);
    EXPECT_FALSE(gstate().rw_colors);
    const RasterColor near = gx11_alloc_color(5, {0.3F, 0.1F, 0.7F}, -1);
    EXPECT_GE(near.pixel, 0);
    EXPECT_NEAR(near.actual.blue, 0.67F, 0.01F); // of the cube that the server shares
    EXPECT_EQ(gx11_alloc_color(5, {0, 0, 1}, -1).pixel, a.pixel);

    gx11_set_clip({0, 0, kWidth, kHeight});
    gx11_set_foreground(RasterContext::fill, first.pixel);
    gx11_rectangle(RasterContext::fill, {0, 0, 20, 20});
    RasterImage image;
    ASSERT_TRUE(gx11_read(gx11_base(), image));
    EXPECT_TRUE(image.mapped);
    EXPECT_EQ(image.bits_per_pixel, 8);
    EXPECT_NEAR(image.colors.at(pixel_at(image, 5, 5)).green, 1, 0.01F);
    EXPECT_EQ(gx11_counts().errors, 0);
    gx11_close();

    // A colormap of our own has every cell again.
    RasterWish wish;
    wish.private_colormap = true;
    open_window(wish);
    EXPECT_GE(gx11_alloc_color(5, {0.3F, 0.1F, 0.7F}, -1).pixel, 0);
    gx11_close();
}

TEST(X11Images, WhatIsReadCanBeWrittenWithAMask) {
    for (const std::string &screen : {kTrueColor, kPseudoColor}) {
        XServer server(screen);
        NEEDS_X_SERVER(server);
        open_window();
        const RasterColor red = gx11_alloc_color(2, {1, 0, 0}, -1);
        gx11_set_clip({0, 0, kWidth, kHeight});
        gx11_set_foreground(RasterContext::fill, red.pixel);
        const PixmapId small = gx11_create_pixmap(20, 10);
        gx11_set_drawable(small);
        gx11_rectangle(RasterContext::fill, {0, 0, 20, 10});
        RasterImage image;
        ASSERT_TRUE(gx11_read(small, image));
        std::vector<std::uint8_t> mask(200, 0);
        for (std::size_t i = 0; i < mask.size(); ++i) mask[i] = i % 20 < 10 ? 1 : 0;
        gx11_write(gx11_base(), image, mask, 30, 40);
        gx11_write(gx11_base(), image, {}, -15, -5);
        gx11_write(gx11_base(), image, {}, kWidth - 3, kHeight + 5);
        const auto pixel = static_cast<unsigned long>(red.pixel);
        EXPECT_EQ(base_pixel(35, 45), pixel);
        EXPECT_NE(base_pixel(45, 45), pixel);
        EXPECT_EQ(base_pixel(4, 4), pixel);
        EXPECT_NE(base_pixel(5, 5), pixel);
        EXPECT_EQ(gx11_counts().errors, 0);
        gx11_close();
    }
}

TEST(X11Events, AResizeByOthersIsTold) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    open_window();
    gx11_sync();
    while (gx11_pending() > 0) gx11_next_event();
    const Onlooker onlooker(server.display());
    onlooker.resize(400, 300);
    const RasterEvent event = wait_for(RasterEventKind::configure);
    EXPECT_EQ(event.width, 400);
    EXPECT_EQ(event.height, 300);
    int width = 0, height = 0;
    EXPECT_TRUE(gx11_window_size(width, height));
    EXPECT_EQ(width, 400);
    EXPECT_EQ(height, 300);
    gx11_close();
}

TEST(X11Resources, PixmapsAreFreed) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    open_window();
    const std::size_t before = gx11_counts().pixmaps;
    for (int round = 0; round < 50; ++round) {
        const PixmapId pixmap = gx11_create_pixmap(100, 100);
        gx11_set_drawable(pixmap);
        gx11_free_pixmap(pixmap);
        gx11_free_pixmap(pixmap);
        EXPECT_EQ(gx11_drawable(), gx11_base());
    }
    EXPECT_EQ(gx11_counts().pixmaps, before);
    EXPECT_EQ(gx11_create_pixmap(0, 10), kNoPixmap);
    EXPECT_EQ(gx11_create_pixmap(40000, 10), kNoPixmap);
    EXPECT_EQ(gx11_counts().errors, 0);
    gx11_close();
    EXPECT_EQ(gx11_counts().pixmaps, 0U);
}

TEST(X11Errors, TheTwentyFifthEndsTheProgram) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    std::string output;
    EXPECT_EQ(exit_status(
                  [] {
                      open_window();
                      for (int i = 0; i < 24; ++i) gx11_provoke_error();
                  },
                  output),
              0);
    EXPECT_NE(output.find("X11 error: BadPixmap (invalid Pixmap parameter) in X_FreePixmap\n"),
              std::string::npos)
        << output;
    EXPECT_EQ(output.find("too many"), std::string::npos);
    EXPECT_EQ(exit_status(
                  [] {
                      open_window();
                      for (int i = 0; i < 25; ++i) gx11_provoke_error();
                  },
                  output),
              kExitGraphics);
    EXPECT_NE(output.find("X11 error: too many errors\n"), std::string::npos);
}

TEST(X11Errors, ALostServerEndsTheProgram) {
    XServer server(kTrueColor);
    NEEDS_X_SERVER(server);
    std::string output;
    const int status = exit_status(
        [&] {
            open_window();
            server.kill_now();
            gx11_create_pixmap(10, 10);
            gx11_sync();
        },
        output);
    EXPECT_EQ(status, kExitGraphics) << output;
    EXPECT_NE(output.find("Fatal X11 Error\n"), std::string::npos) << output;
}

} // namespace
