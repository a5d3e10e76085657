/// Drawing into the window of another program: handed over in every form, in panels, and frame by frame into
/// the loop of this program's own window.

#include <algorithm>
#include <cstdio>

#include "window/window_program.h"

namespace {

/// A program that owns a window and a picture, and hands them over.
class Host {
public:
    static constexpr int kWidth = 640, kHeight = 512;
    explicit Host(const std::string &server) : display_(XOpenDisplay(server.c_str())) {
        window_ = XCreateSimpleWindow(display_, XDefaultRootWindow(display_), 0, 0, kWidth, kHeight, 0, 0, 0);
        XStoreName(display_, window_, "Host [9]");
        pixmap_ = XCreatePixmap(display_, window_, kWidth, kHeight,
                                static_cast<unsigned>(XDefaultDepth(display_, XDefaultScreen(display_))));
        XMapWindow(display_, window_);
        fill(0);
    }
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;
    ~Host() { XCloseDisplay(display_); }

    /// Both, with one pixel value.
    void fill(unsigned long pixel) {
        XGCValues values{};
        values.foreground = pixel;
        GC context = XCreateGC(display_, window_, GCForeground, &values);
        for (const Drawable d : {window_, pixmap_})
            XFillRectangle(display_, d, context, 0, 0, kWidth, kHeight);
        XFreeGC(display_, context);
        XSync(display_, False);
    }
    [[nodiscard]] Picture picture(Drawable of) const {
        Picture result{kWidth, kHeight, {}};
        XImage *const image = XGetImage(display_, of, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                result.colors.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFU);
        XDestroyImage(image);
        return result;
    }
    /// Writes magenta into every cell of the colour map that is nobody's.
    void take_free_cells() {
        const Colormap map = XDefaultColormap(display_, XDefaultScreen(display_));
        unsigned long pixel = 0;
        while (XAllocColorCells(display_, map, False, nullptr, 0, &pixel, 1) != 0) {
            XColor cell{pixel, 0xFFFF, 0, 0xFFFF, DoRed | DoGreen | DoBlue, 0};
            XStoreColor(display_, map, &cell);
        }
        XSync(display_, False);
    }
    /// First data bytes of the messages that have come.
    std::vector<int> messages() {
        XSync(display_, False);
        std::vector<int> bytes;
        XEvent event;
        while (XCheckTypedEvent(display_, ClientMessage, &event) != False)
            bytes.push_back(event.xclient.data.b[0]);
        return bytes;
    }
    [[nodiscard]] Window window() const { return window_; }
    [[nodiscard]] Pixmap pixmap() const { return pixmap_; }

private:
    Display *display_;
    Window window_;
    Pixmap pixmap_;
};

class ForeignWindow : public WindowProgram {
protected:
    void SetUp() override {
        WindowProgram::SetUp();
        if (IsSkipped()) return;
        series_ = write_series(files_, kSeries);
    }
    void TearDown() override {
        host_.reset();
        EXPECT_EQ(chdir("/"), 0);
        WindowProgram::TearDown();
    }
    /// The program's exit status; what it says is in `log`.
    int draw(const std::string &device, int file = 0, const std::vector<std::string> &options = {}) {
        std::vector<std::string> all{VYX_PROGRAM,
                                     "-ba",
                                     "-inp",
                                     "nids",
                                     "-de",
                                     device,
                                     "-fp",
                                     kData,
                                     "-pd",
                                     kDomain,
                                     "-ip",
                                     files_.path(),
                                     series_.at(static_cast<std::size_t>(file))};
        all.insert(all.end() - 1, options.begin(), options.end());
        drawing_ = std::make_unique<Child>(all, files_.at("drawing"));
        return drawing_->wait_for_end(kDeadline);
    }
    [[nodiscard]] std::string told() const { return files_.read("drawing"); }
    /// What the program draws into a window of its own.
    Picture own_picture() {
        Picture result = start_picture();
        stop();
        return result;
    }
    void host() { host_ = std::make_unique<Host>(server_->display()); }
    [[nodiscard]] std::string size() const { return ":640x512:0"; }

    std::unique_ptr<Host> host_;
    std::unique_ptr<Child> drawing_;
};

TEST_F(ForeignWindow, IsDrawnIntoInEveryForm) {
    const Picture own = own_picture();
    host();
    const std::string window = std::to_string(host_->window()), pixmap = std::to_string(host_->pixmap());
    char hexadecimal[32];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%lx", host_->pixmap());
    EXPECT_EQ(draw("w,," + window + size()), 0) << told();
    EXPECT_EQ(host_->picture(host_->window()), own);
    host_->fill(0);
    EXPECT_EQ(draw("w,," + std::string(hexadecimal) + size()), 0) << told();
    EXPECT_EQ(host_->picture(host_->pixmap()), own);
    host_->fill(0);
    EXPECT_EQ(draw("w,,+" + window + ":" + pixmap + size()), 0) << told();
    EXPECT_EQ(host_->picture(host_->pixmap()), own);
    EXPECT_EQ(host_->picture(host_->window()), own) << "it is shown";
    host_->fill(0);
    files_.write("vyxloop.12", "+" + window + ":" + pixmap + size() + " and what follows\n");
    EXPECT_EQ(draw("w,,W12", 0, {"-fp", files_.path()}), 0) << told();
    EXPECT_EQ(host_->picture(host_->pixmap()), own);
    host_->fill(0);
    setenv("vyxwindow", (window + size()).c_str(), 1);
    EXPECT_EQ(draw("w"), 0) << told();
    unsetenv("vyxwindow");
    EXPECT_EQ(host_->picture(host_->window()), own);
    // The picture before stays where nothing is drawn; "clear" takes it away, "kill" tells the owner.
    host_->fill(0xFF0000);
    EXPECT_EQ(draw("w,," + window + size()), 0);
    EXPECT_NE(host_->picture(host_->window()), own);
    EXPECT_EQ(draw("w,," + window + size(), 0, {"-pp", "clear"}), 0);
    EXPECT_EQ(host_->picture(host_->window()), own);
    EXPECT_TRUE(host_->messages().empty());
    EXPECT_EQ(draw("w,," + window + size(), 0, {"-pp", "kill"}), 0);
    EXPECT_EQ(host_->messages(), std::vector<int>{9});
}

TEST_F(ForeignWindow, KeepsTheColoursOfItsMapWhenTheProgramHasEnded) {
    serve(kPseudoColor);
    const Picture own = own_picture();
    host();
    const Onlooker eye(server_->display());
    EXPECT_EQ(draw("w,," + std::to_string(host_->window()) + size(), 0, {"-pp", "clear"}), 0) << told();
    host_->take_free_cells();
    EXPECT_EQ(eye.picture(), own);
}

TEST_F(ForeignWindow, HasPanelsCountedFromTheTop) {
    host();
    const std::string device = "w,," + std::to_string(host_->window()) + size();
    /// Quarters with anything drawn: upper left, upper right, lower left, lower right.
    const auto quarters = [&](const char *geometry) {
        host_->fill(0);
        EXPECT_EQ(draw(device, 0, {"-ge", geometry}), 0) << told();
        const Picture seen = host_->picture(host_->window());
        std::string result;
        for (int quarter = 0; quarter < 4; ++quarter) {
            int inked = 0;
            for (int y = 0; y < Host::kHeight / 2; ++y)
                for (int x = 0; x < Host::kWidth / 2; ++x)
                    inked +=
                        seen.at(x + quarter % 2 * Host::kWidth / 2, y + quarter / 2 * Host::kHeight / 2) != 0
                            ? 1
                            : 0;
            result += inked > 1000 ? 'x' : inked > 0 ? '?' : '-';
        }
        return result;
    };
    EXPECT_EQ(quarters("P2x2+1+0"), "-x--");
    EXPECT_EQ(quarters("P2x2+0+1"), "--x-");
    EXPECT_EQ(quarters("P0.5x0.5+0.5+0.5"), "---x");
    EXPECT_EQ(quarters("P0.5x1+0+0"), "x-x-");
    EXPECT_EQ(quarters("320x256+0+256"), "--x-");
    EXPECT_EQ(quarters("320x256"), "x---");
    EXPECT_EQ(draw(device, 0, {"-ge", "P2x2+5+0"}), 4);
    EXPECT_EQ(draw(device, 0, {"-ge", "10x10+640+0"}), 4);
}

TEST_F(ForeignWindow, ThatIsNoneIsTold) {
    host();
    const auto refused = [this](const std::string &device, const char *why) {
        EXPECT_EQ(draw(device), 4) << device;
        EXPECT_NE(told().find(why), std::string::npos) << device << told();
    };
    unsetenv("WINDOW");
    refused("w", "gopen_ws: window parameters not specified\n");
    refused("w,,", "gopen_ws: window parameters not specified\n");
    refused("w,,w77", "gopen_ws: unable to open window id file\n");
    files_.write("vyxloop.win", "");
    refused("w,,0x", "gopen_ws: window id not specified\n");
    refused("w,,+5", "gopen_ws: window id not specified\n");
    refused("w,,:::", "gopen_ws: window id not specified\n");
    refused("w,,99999999999999999999:1x1:0", "gopen_ws: window id not specified\n");
    refused("w,,12345:640x512:0", "gopen_ws: no such window or pixmap: 0x3039\n");
    refused("w,,+12345:" + std::to_string(host_->pixmap()) + size(), "gopen_ws: no such window: 0x3039\n");
    refused("w,," + std::to_string(host_->pixmap()) + ":640x512:77", "gopen_ws: no such colour map: 0x4d\n");
    refused("w,,99999999999:1x1:0", "gopen_ws: window id not specified\n"); // of more bits than a number has
    refused("w,:987," + std::to_string(host_->pixmap()), "gopen_ws: unable to connect to display\n");
    EXPECT_EQ(draw("w,," + std::to_string(host_->pixmap()) + ":640y512"), 0);
    EXPECT_NE(told().find("window: Not understood: "), std::string::npos);
    EXPECT_EQ(draw("p," + files_.at("x.ps"), 0, {"-pp", "new,share"}), 0);
    EXPECT_NE(told().find("windows of other programs"), std::string::npos);
    EXPECT_NE(told().find("can be drawn into by others: share"), std::string::npos);
}

TEST_F(ForeignWindow, GetsFramesFromAnotherProcess) {
    ASSERT_EQ(chdir(files_.path().c_str()), 0); // where window id files are
    start(1, {"-pp", "share=3"});
    const Picture first = settled({});
    EXPECT_EQ(draw("w,,w3", 1, {"-pp", "new"}), 0) << told();
    EXPECT_TRUE(shows(0)) << "the only frame is shown when it is drawn";
    const Picture second = settled(first);
    EXPECT_EQ(draw("w,,w3", 2, {"-pp", "new"}), 0) << told();
    // A series brings a frame each.
    EXPECT_EQ(draw("w,,w3", 3, {"-pp", "new", series_.at(4)}), 0) << told();
    for (int n = 0; n < 4; ++n) EXPECT_TRUE(shows(n)) << n;
    ASSERT_TRUE(pause());
    std::vector<Picture> frames;
    for (int n = 0; n < 4; ++n) {
        press("alt+bracketright");
        frames.push_back(settled(frames.empty() ? Picture{} : frames.back()));
    }
    EXPECT_EQ(std::ranges::count(frames, second), 1) << "what was drawn before keeps its frame";
    press("alt+r");
    EXPECT_EQ(settled(frames.back()), first) << "the window's own picture again";
    EXPECT_EQ(draw("w,,w3", 1, {"-pp", "new"}), 0) << told();
    EXPECT_TRUE(shows(0));
    EXPECT_EQ(draw("w,,w3", 0, {"-pp", "kill"}), 0) << told();
    EXPECT_EQ(program_->wait_for_end(kDeadline), 0) << log();
    EXPECT_FALSE(std::ifstream(files_.at("vyxloop.3")).good());
    EXPECT_EQ(draw("w,,w3"), 4);
}

TEST_F(ForeignWindow, WhoseOwnerDiesIsNoticed) {
    ASSERT_EQ(chdir(files_.path().c_str()), 0);
    start(1, {"-pp", "share"});
    settled({});
    const std::string parameters = files_.read("vyxloop.win");
    kill(program_->pid(), SIGKILL);
    EXPECT_EQ(draw("w,,w", 1, {"-pp", "new"}), 4) << "the file of a window that has gone";
    EXPECT_NE(told().find("gopen_ws: no such window or pixmap: "), std::string::npos) << told();
    // An owner that goes while it is waited for.
    host();
    std::vector<std::string> all{
        VYX_PROGRAM,
        "-ba",
        "-inp",
        "nids",
        "-de",
        "w,,+" + std::to_string(host_->window()) + ":" + std::to_string(host_->pixmap()) + size(),
        "-fp",
        kData,
        "-pp",
        "new",
        series_.at(0)};
    Child waiting(all, files_.at("waiting"));
    EXPECT_TRUE(comes_true([this] { return host_->messages() == std::vector<int>{2}; }, kDeadline));
    host_.reset();
    EXPECT_EQ(waiting.wait_for_end(kDeadline), 4);
    EXPECT_NE(files_.read("waiting").find("X11 window was destroyed by another program"), std::string::npos);
}

} // namespace
