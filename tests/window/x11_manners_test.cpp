// How the window behaves among other programs: what it tells the window manager, and what others do to it.

#include <cstring>

#include <gtest/gtest.h>

#include <X11/Xatom.h>

#include "graphics/core/state.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"
#include "lib/report/process.h"
#include "window/onlooker.h"
#include "window/window_program.h"
#include "window/x_server.h"

namespace {

constexpr int kWidth = 200, kHeight = 100;

void open_window(const std::string &geometry = {}, const std::string &title = "Radar") {
    gstate().kernel_open = true;
    RasterWish wish;
    wish.geometry = geometry;
    wish.title = title;
    wish.width = kWidth;
    wish.height = kHeight;
    RasterWindow window;
    ASSERT_TRUE(gx11_open(wish, window));
}

/// The bytes of a property of the open window, empty for one of another type.
std::string property(const char *name, const char *type) {
    Display *const display = x11_session()->display();
    Atom actual = 0;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char *data = nullptr;
    constexpr long kMostWords = 100;
    XGetWindowProperty(display, x11_session()->window.get(), XInternAtom(display, name, False), 0, kMostWords,
                       False, XInternAtom(display, type, False), &actual, &format, &count, &left, &data);
    if (data == nullptr) return {};
    const std::size_t size = format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8;
    std::string result(reinterpret_cast<const char *>(data), count * size);
    XFree(data);
    return result;
}

TEST(X11Manners, TitlesAreGivenInBothEncodings) {
    const XServer server("800x600x24");
    NEEDS_X_SERVER(server);
    struct Case {
        const char *title, *unicode, *latin;
    };
    for (const Case &c : {Case{"K\u00F6ln_\u2022_N0R", "K\u00F6ln \u2022 N0R", "K\xF6ln ? N0R"},
                          Case{"K\xF6ln", "K\u00F6ln", "K\xF6ln"}, Case{"Radar", "Radar", "Radar"}}) {
        open_window("", c.title);
        for (const char *name : {"_NET_WM_NAME", "_NET_WM_ICON_NAME"})
            EXPECT_EQ(property(name, "UTF8_STRING"), c.unicode);
        for (const char *name : {"WM_NAME", "WM_ICON_NAME"}) EXPECT_EQ(property(name, "STRING"), c.latin);
        gx11_set_title_extra("21\u00B0 [3]");
        EXPECT_EQ(property("_NET_WM_NAME", "UTF8_STRING"), std::string(c.unicode) + " 21\u00B0 [3]");
        EXPECT_EQ(gx11_title_extra(), "21\u00B0 [3]");
        gx11_close();
    }
    // A title is cut between characters.
    std::string longest;
    for (int i = 0; i < 59; ++i) longest += "\u00E9";
    open_window("", longest + "\u00E9\u00E9");
    EXPECT_EQ(property("_NET_WM_NAME", "UTF8_STRING"), longest);
    gx11_close();
}

TEST(X11Manners, TheWindowNamesItsProcess) {
    const XServer server("800x600x24");
    NEEDS_X_SERVER(server);
    open_window();
    std::array<char, 256> machine{};
    ASSERT_EQ(gethostname(machine.data(), machine.size() - 1), 0);
    EXPECT_EQ(property("WM_CLIENT_MACHINE", "STRING"), machine.data());
    const std::string id = property("_NET_WM_PID", "CARDINAL");
    long number = 0;
    ASSERT_EQ(id.size(), sizeof number);
    std::memcpy(&number, id.data(), sizeof number);
    EXPECT_EQ(number, getpid());
    gx11_close();
}

/// A client that hears what windows ask for, as a window manager does.
class Manager {
public:
    explicit Manager(const std::string &name) : display_(XOpenDisplay(name.c_str())) {
        XSelectInput(display_, XDefaultRootWindow(display_), SubstructureRedirectMask);
        XSync(display_, False);
    }
    Manager(const Manager &) = delete;
    Manager &operator=(const Manager &) = delete;
    ~Manager() { XCloseDisplay(display_); }

private:
    Display *display_;
};

TEST(X11Manners, TheCornerThatWasGivenStays) {
    const XServer server("800x600x24");
    NEEDS_X_SERVER(server);
    struct Case {
        const char *geometry;
        int gravity, x, y; ///< with a window manager: of the border's outside
    };
    constexpr int kAround = 10;
    for (const Case &c :
         {Case{"200x100+30+20", NorthWestGravity, 30, 20},
          Case{"200x100-0+20", NorthEastGravity, 800 - 200 - kAround, 20},
          Case{"200x100+30-0", SouthWestGravity, 30, 600 - 100 - kAround},
          Case{"200x100-7-3", SouthEastGravity, 800 - 200 - kAround - 7, 600 - 100 - kAround - 3}}) {
        SCOPED_TRACE(c.geometry);
        const auto check = [&c](int border) {
            XWindowAttributes look{};
            XSizeHints hints{};
            long supplied = 0;
            Display *const display = x11_session()->display();
            const Window window = x11_session()->window.get();
            ASSERT_NE(XGetWindowAttributes(display, window, &look), 0);
            ASSERT_NE(XGetWMNormalHints(display, window, &hints, &supplied), 0);
            EXPECT_EQ(hints.flags & (USPosition | PWinGravity), USPosition | PWinGravity);
            EXPECT_EQ(hints.win_gravity, c.gravity);
            EXPECT_EQ(look.x, c.x + (c.x > 30 ? border : 0));
            EXPECT_EQ(look.y, c.y + (c.y > 20 ? border : 0));
        };
        open_window(c.geometry);
        check(kAround);
        gx11_close();
    }
    // The window manager of this test never maps a window: what it is asked for is all that counts.
    const Manager manager(server.display());
    open_window("200x100-7-3");
    XWindowAttributes look{};
    ASSERT_NE(XGetWindowAttributes(x11_session()->display(), x11_session()->window.get(), &look), 0);
    EXPECT_EQ(look.x, 800 - 200 - kAround - 7);
    EXPECT_EQ(look.y, 600 - 100 - kAround - 3);
    gx11_close();
}

class DestroyedWindow : public WindowProgram {};

TEST_F(DestroyedWindow, EndsTheProgramWhateverItDoes) {
    const auto destroy_and_check = [this](const char *when) {
        SCOPED_TRACE(when);
        eye_->destroy();
        EXPECT_EQ(program_->wait_for_end(kDeadline), kExitGraphics);
        EXPECT_TRUE(said("X11 window was destroyed by another program\n")) << log();
        EXPECT_FALSE(said("X11 error")) << log();
    };
    start(1);
    destroy_and_check("while it draws, or soon after");
    stop();
    start_picture();
    destroy_and_check("while it waits");
    stop();
    start_loop(3);
    destroy_and_check("while it loops");
}

} // namespace
