#pragma once
/// The real program in a window, driven by keys and buttons as a person does. Nothing waits a fixed time:
/// what is to come is looked for until it comes or a deadline has passed.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/child_process.h"
#include "app/sample_series.h"
#include "lib/scratch_dir.h"
#include "window/onlooker.h"
#include "window/x_server.h"

class WindowProgram : public testing::Test {
protected:
    static constexpr int kWidth = 640, kHeight = 512;
    static constexpr int kBorder = 5; ///< of the window
    static constexpr std::chrono::seconds kDeadline{20};
    static constexpr const char *kTrueColor = "1024x768x24", *kPseudoColor = "1024x768x8";

    void SetUp() override {
        if (std::system("command -v xdotool >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "no xdotool: nothing presses the keys";
        serve(kTrueColor);
        NEEDS_X_SERVER(*server_);
    }
    void TearDown() override { stop(); }

    /// A server with another screen than before.
    void serve(const char *screen) {
        stop();
        server_.reset();
        server_ = std::make_unique<XServer>(screen);
    }
    /// Ends whoever looks, then the program.
    void stop() {
        eye_.reset();
        program_.reset();
    }

    /// Starts the program on the first `count` files of the series and waits for its window.
    void start(int count, const std::vector<std::string> &options = {}) {
        if (series_.empty()) series_ = write_series(files_, kSeries);
        program_ = std::make_unique<Child>(arguments(count, options), files_.at("log"));
        eye_ = std::make_unique<Onlooker>(server_->display());
        ASSERT_TRUE(comes_true([this] { return eye_->window() != 0; }, kDeadline)) << log();
        point_at(kWidth / 2, kHeight / 2);
    }
    /// Starts a series and waits until its loop has come back to the first picture.
    void start_loop(int count, const std::vector<std::string> &options = {}) {
        start(count, options);
        bool last = false;
        ASSERT_TRUE(comes_true(
            [&] {
                last = last || frame() == count - 1;
                return last && frame() == 0;
            },
            kDeadline))
            << log();
    }
    /// Starts one file and waits for its picture.
    Picture start_picture(const std::vector<std::string> &options = {}) {
        start(1, options);
        return settled({});
    }
    std::vector<std::string> arguments(int count, const std::vector<std::string> &options) const {
        std::vector<std::string> all{VYX_PROGRAM,   "-inp", "nids",  "-de",  "d",
                                     "-fp",         kData,  "-ti",   kTitle, "-ge",
                                     "640x512+0+0", "-pd",  kDomain, "-ip",  files_.path()};
        all.insert(all.end(), options.begin(), options.end());
        all.insert(all.end(), series_.begin(), series_.begin() + count);
        return all;
    }

    /// The picture once it is another than `before` and stays as it is. What does not settle is a failure.
    Picture settled(const Picture &before) const {
        constexpr int kLooks = 4; // at 50 ms
        Picture seen;
        int same = 0;
        const bool calm = comes_true(
            [&] {
                Picture now = eye_->picture();
                same = now == seen ? same + 1 : 0;
                seen = std::move(now);
                return same >= kLooks && seen != before && !is_plain(seen);
            },
            kDeadline);
        EXPECT_TRUE(calm) << "the picture stays as it was, or comes to no rest\n" << log();
        return seen;
    }
    static bool is_plain(const Picture &picture) {
        return std::all_of(picture.colors.begin(), picture.colors.end(),
                           [&](std::uint32_t color) { return color == picture.colors.front(); });
    }
    /// The frame in the title; -1 without.
    [[nodiscard]] int frame() const {
        const std::string text = eye_->title(eye_->window());
        const std::size_t mark = text.find('[');
        return mark == std::string::npos ? -1 : std::atoi(text.c_str() + mark + 1);
    }
    [[nodiscard]] bool shows(int wanted) const {
        return comes_true([&] { return frame() == wanted; }, kDeadline);
    }
    /// Stops the loop: true once one frame has stayed for longer than any frame of a loop does. A key pressed
    /// while a picture is drawn is lost, so it is pressed again.
    [[nodiscard]] bool pause() const {
        for (int attempt = 0; attempt < 3; ++attempt) {
            press("alt+l");
            if (comes_to_rest()) return true;
        }
        return false;
    }
    [[nodiscard]] bool comes_to_rest() const {
        constexpr std::chrono::milliseconds kLongest{1300};
        int at = frame();
        auto since = std::chrono::steady_clock::now();
        return comes_true(
            [&] {
                const auto now = std::chrono::steady_clock::now();
                if (frame() != at) since = now;
                at = frame();
                return now - since > kLongest;
            },
            std::chrono::seconds(5));
    }

    /// Words of xdotool. Without a window manager keys go where the pointer is.
    static void act(const std::string &words) {
        EXPECT_EQ(std::system(("xdotool " + words + " >/dev/null 2>&1").c_str()), 0) << words;
    }
    static void press(const std::string &key) { act("key " + key); }
    static std::string at(int x, int y) {
        return "mousemove " + std::to_string(x + kBorder) + " " + std::to_string(y + kBorder) + " ";
    }
    /// Pixels of the window.
    static void point_at(int x, int y) { act(at(x, y)); }
    /// The exit status.
    int end(const std::string &key) {
        press(key);
        return program_->wait_for_end(kDeadline);
    }
    /// What the program has said; whole only once it has ended.
    [[nodiscard]] std::string log() const {
        std::ifstream in(files_.at("log"));
        return {std::istreambuf_iterator<char>(in), {}};
    }
    [[nodiscard]] bool said(std::string_view words) const { return log().find(words) != std::string::npos; }

    static constexpr int kSeries = 6;
    static constexpr const char *kTitle = "My_radar", *kDomain = "lc,38.7,-90.7,31,25,0.2";
    ScratchDir files_;
    std::vector<std::string> series_;
    std::unique_ptr<XServer> server_;
    std::unique_ptr<Child> program_; ///< ends before its server
    std::unique_ptr<Onlooker> eye_;
};
