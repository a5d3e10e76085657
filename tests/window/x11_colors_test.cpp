// Inks on every kind of screen: outlines that are always seen, and colour maps that others have filled.

#include <gtest/gtest.h>

#include "graphics/core/state.h"
#include "graphics/devices/x11/display.h"
#include "lib/resources/database.h"
#include "window/onlooker.h"
#include "window/window_program.h"
#include "window/x_server.h"

namespace {

void open_window(bool inverse) {
    gstate().kernel_open = true;
    gstate().rw_colors = true;
    RasterWish wish;
    wish.width = 200;
    wish.height = 100;
    wish.inverse = inverse;
    RasterWindow window;
    ASSERT_TRUE(gx11_open(wish, window));
}

TEST(X11Outline, IsSeenOnEveryBackground) {
    const Rgb black, white{1, 1, 1}, navy{0, 0, 0.5F}, yellow{1, 1, 0}, gray{0.4F, 0.4F, 0.4F};
    for (const char *const screen : {"800x600x8", "800x600x16", "800x600x24"}) {
        const XServer server(screen);
        NEEDS_X_SERVER(server);
        const std::uint32_t full = std::string(screen).ends_with("16") ? 0xFFFF : 0xFFFFFF; ///< white
        for (const bool inverse : {false, true}) {
            for (const Rgb &back : {black, white, navy, yellow, gray}) {
                SCOPED_TRACE(testing::Message() << screen << (inverse ? " inverse " : " ") << back.red << ' '
                                                << back.green << ' ' << back.blue);
                open_window(inverse);
                const long pixel = gx11_alloc_color(256, back, -1).pixel;
                gx11_set_background(pixel);
                gx11_clear(gx11_base());
                gx11_show();
                // The last line may have been drawn in any colour.
                gx11_set_foreground(RasterContext::line, pixel);
                const Onlooker eye(server.display());
                gx11_sync();
                const Picture before = eye.picture();
                gx11_outline(2, {20, 30}, {60, 70}, true);
                gx11_sync();
                const Picture seen = eye.picture();
                const std::uint32_t ink = seen.at(40, 30);
                const bool dark = back.green > 0.6F;
                EXPECT_EQ(ink, dark ? 0U : full);
                EXPECT_EQ(seen.at(40, 50), before.at(40, 50));
                gx11_outline(2, {20, 30}, {60, 70}, true);
                gx11_sync();
                EXPECT_EQ(eye.picture(), before);
                gx11_outline(2, {60, 70}, {20, 30}, false);
                gx11_sync();
                EXPECT_EQ(eye.picture(), seen) << "the last outline is drawn in the same ink";
                EXPECT_EQ(gx11_counts().errors, 0);
                gx11_close();
            }
        }
    }
}

/// Another program with cells of the screen's colour map.
class Painter {
public:
    explicit Painter(const std::string &name)
        : display_(XOpenDisplay(name.c_str())), map_(XDefaultColormap(display_, XDefaultScreen(display_))) {}
    Painter(const Painter &) = delete;
    Painter &operator=(const Painter &) = delete;
    ~Painter() { XCloseDisplay(display_); }

    static XColor color(int red, int green, int blue) {
        XColor result{};
        result.red = static_cast<unsigned short>(red * 257);
        result.green = static_cast<unsigned short>(green * 257);
        result.blue = static_cast<unsigned short>(blue * 257);
        result.flags = DoRed | DoGreen | DoBlue;
        return result;
    }
    void share(XColor color) const { XAllocColor(display_, map_, &color); }
    void share_cube(int step) const {
        for (int red = 0; red < 256; red += step)
            for (int green = 0; green < 256; green += step)
                for (int blue = 0; blue < 256; blue += step) share(color(red, green, blue));
    }
    /// A cell of its own; -1 when there is none.
    long own(XColor color) const {
        if (XAllocColorCells(display_, map_, False, nullptr, 0, &color.pixel, 1) == 0) return -1;
        write(color.pixel, color);
        return static_cast<long>(color.pixel);
    }
    void own_rest(XColor color) const {
        while (own(color) >= 0) {
        }
    }
    void write(unsigned long pixel, XColor color) const {
        color.pixel = pixel;
        XStoreColor(display_, map_, &color);
        XSync(display_, False);
    }

private:
    Display *display_;
    Colormap map_;
};

TEST(X11ColorMap, AFullOneGivesItsNearestColors) {
    const XServer server("800x600x8");
    NEEDS_X_SERVER(server);
    const Painter painter(server.display());
    // The server itself shares a cube of four levels; these are halfway between them.
    const auto level = [](int byte) { return static_cast<float>(byte) / 255; };
    const Rgb red_wanted{level(212), level(43), level(43)}, blue_wanted{level(43), level(43), level(212)};
    const long exact = painter.own(Painter::color(212, 43, 43));
    painter.share(Painter::color(200, 55, 55));
    painter.own(Painter::color(45, 45, 210));
    painter.own_rest(Painter::color(90, 90, 90));
    testing::internal::CaptureStderr();
    open_window(false);
    // A shared cell that is near is better than one that its owner may change.
    const RasterColor red = gx11_alloc_color(2, red_wanted, -1);
    EXPECT_NE(red.pixel, exact);
    EXPECT_NEAR(red.actual.red, level(200), 0.01F);
    // Where nothing shared is near, another program's cell does.
    const RasterColor blue = gx11_alloc_color(3, blue_wanted, -1);
    EXPECT_NEAR(blue.actual.blue, level(210), 0.01F);
    EXPECT_EQ(gx11_alloc_color(3, blue_wanted, blue.pixel).pixel, blue.pixel);
    // What others own is never written, whatever is asked for.
    gstate().rw_colors = true;
    const RasterColor again = gx11_alloc_color(3, {0, 1, 0}, blue.pixel);
    EXPECT_GE(again.pixel, 0);
    gx11_sync();
    EXPECT_EQ(gx11_counts().errors, 0);
    gx11_close();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "galloc_colr: the colour map is full, the nearest "
                                                      "colours are taken; -pp lcmap gives the window a map "
                                                      "of its own\n");
}

class FullColorMap : public WindowProgram {
protected:
    /// Colours that are not grey.
    static std::size_t hues(const Picture &picture) {
        std::vector<std::uint32_t> found = picture.colors;
        std::erase_if(found, [](std::uint32_t color) {
            constexpr std::uint32_t kByte = 0xFF;
            return (color & kByte) == (color >> 8 & kByte) && (color & kByte) == (color >> 16 & kByte);
        });
        std::ranges::sort(found);
        found.erase(std::ranges::unique(found).begin(), found.end());
        return found.size();
    }
};

TEST_F(FullColorMap, ShowsTheEchoInColoursAndHintsOnce) {
    serve(kPseudoColor);
    NEEDS_X_SERVER(*server_);
    const std::size_t plain = hues(start_picture());
    EXPECT_EQ(end("Return"), 0);
    stop();
    serve(kPseudoColor);
    const Painter painter(server_->display());
    painter.share_cube(51);
    painter.own_rest(Painter::color(0, 0, 0));
    const Picture full = start_picture();
    EXPECT_GE(hues(full) + 2, plain) << "two hues may have the same neighbour";
    EXPECT_EQ(end("Return"), 0);
    const std::string words = "the colour map is full";
    const std::size_t first = log().find(words);
    ASSERT_NE(first, std::string::npos) << log();
    EXPECT_EQ(log().find(words, first + 1), std::string::npos) << log();
    EXPECT_FALSE(said("invalid color index")) << log();
    // The hint helps.
    start_picture({"-pp", "lcmap"});
    EXPECT_EQ(end("Return"), 0);
    EXPECT_FALSE(said(words)) << log();
}

} // namespace
