// The loop in a real window, under a virtual X server, driven by keys and buttons.

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "app/child_process.h"
#include "app/sample_series.h"
#include "lib/scratch_dir.h"
#include "window/x_server.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::string output_of(const std::string &command) {
    std::string text;
    std::FILE *const pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) return text;
    std::array<char, 256> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) text += buffer.data();
    pclose(pipe);
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

std::string text_of(const std::string &path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

class WindowLoop : public testing::Test {
protected:
    void SetUp() override {
        NEEDS_X_SERVER(server_);
        if (output_of("command -v xdotool").empty()) GTEST_SKIP() << "no xdotool: nothing presses the keys";
    }

    /// Starts the program on a series and waits for its window.
    void start(int count, std::vector<std::string> options = {}) {
        std::vector<std::string> all{VYX_PROGRAM, "-inp", "nids",        "-de",   "d",
                                     "-fp",       kData,  "-me",         "debug", "-ti",
                                     "Loop",      "-ge",  "640x512+0+0", "-pd",   "lc,38.7,-90.7,31,25,0.2"};
        all.insert(all.end(), options.begin(), options.end());
        for (const std::string &name : write_series(files_, count)) all.push_back(name);
        program_ = std::make_unique<Child>(all, files_.at("log"));
        ASSERT_TRUE(comes_true(
            [this] {
                window_ = output_of("xdotool search --name '^Loop'");
                window_ = window_.substr(0, window_.find('\n'));
                return !window_.empty();
            },
            seconds(20)))
            << log();
        // Without a window manager the keys go where the pointer is.
        act("mousemove 320 256");
        ASSERT_TRUE(
            comes_true([this] { return log().find("Looping initiated") != std::string::npos; }, seconds(30)))
            << log();
    }
    static void act(const std::string &what) { output_of("xdotool " + what); }
    static void press(const std::string &key) {
        act("key " + key);
        std::this_thread::sleep_for(milliseconds(400));
    }
    std::string title() const { return output_of("xdotool getwindowname " + window_); }
    /// The frame in the title; -1 without.
    int frame() const {
        const std::string text = title();
        const std::size_t mark = text.find('[');
        return mark == std::string::npos ? -1 : std::atoi(text.c_str() + mark + 1);
    }
    std::set<int> frames_seen(milliseconds time) const {
        std::set<int> seen;
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end) {
            seen.insert(frame());
            std::this_thread::sleep_for(milliseconds(100));
        }
        return seen;
    }
    void pause() {
        press("alt+l");
        EXPECT_EQ(frames_seen(milliseconds(1500)).size(), 1U) << "paused";
    }
    std::string log() const { return text_of(files_.at("log")); }
    bool logged(const char *text) const {
        return comes_true([&] { return log().find(text) != std::string::npos; }, seconds(20));
    }

    ScratchDir files_;
    XServer server_{"1024x768x24"};
    std::string window_;
    std::unique_ptr<Child> program_; ///< ends before its server
};

TEST_F(WindowLoop, RunsPausesAndSteps) {
    start(6);
    EXPECT_EQ(frames_seen(milliseconds(5500)), (std::set<int>{0, 1, 2, 3, 4, 5}));
    pause();
    const int at = frame();
    press("alt+bracketright");
    EXPECT_EQ(frame(), (at + 1) % 6);
    press("alt+bracketleft");
    press("alt+bracketleft");
    EXPECT_EQ(frame(), (at + 5) % 6);
    act("click 3");
    std::this_thread::sleep_for(milliseconds(400));
    EXPECT_EQ(frame(), at) << "button 3 shows the next frame";

    press("alt+d");
    for (int i = 0; i < 5; ++i) {
        EXPECT_GE(frame(), 0);
        EXPECT_LT(frame(), 5);
        press("alt+bracketright");
    }
    press("alt+l");
    EXPECT_EQ(frames_seen(milliseconds(5000)), (std::set<int>{0, 1, 2, 3, 4})) << "one was deleted";
    act("key Return");
    EXPECT_EQ(program_->wait_for_end(seconds(10)), 0) << log();
}

TEST_F(WindowLoop, ZoomsIntoABoxAndBack) {
    start(2);
    act("mousemove 200 150 keydown shift mousedown 1 mousemove 300 200 mousemove 400 300 mouseup 1 keyup "
        "shift");
    EXPECT_TRUE(logged("New domain: ")) << log();
    ASSERT_TRUE(comes_true([this] { return frames_seen(milliseconds(500)).count(1) != 0; }, seconds(20)));
    press("alt+u");
    EXPECT_TRUE(logged("Original domain: ")) << log();
    press("alt+q");
    EXPECT_EQ(program_->wait_for_end(seconds(20)), 0) << log();
}

TEST_F(WindowLoop, ANewSizeIsDrawnAgain) {
    start(2);
    act("windowsize " + window_ + " 500 400");
    const auto initiated = [this] {
        const std::string text = log();
        const std::size_t first = text.find("Looping initiated");
        return text.find("Looping initiated", first + 1) != std::string::npos;
    };
    EXPECT_TRUE(comes_true(initiated, seconds(20))) << log();
    EXPECT_EQ(frames_seen(milliseconds(2500)), (std::set<int>{0, 1}));
    press("alt+q");
    EXPECT_EQ(program_->wait_for_end(seconds(20)), 0) << log();
}

} // namespace
