// What the server asks of a window, and what the window holds on the server; in this process.

#include <sys/time.h>
#include <thread>

#include <gtest/gtest.h>

#include "app/sample_series.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/events.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/frames.h"
#include "graphics/window/hold.h"
#include "graphics/window/surface.h"
#include "graphics/window/zoom.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/places/domain_string.h"
#include "radar/nids/plot.h"
#include "window/onlooker.h"
#include "window/window_program.h"

namespace {

class WindowEvents : public testing::Test {
protected:
    void SetUp() override {
        NEEDS_X_SERVER(server_);
        gsetup_window();
        gset_win_size(300, 200);
        ASSERT_EQ(gopen_gks("", 0), 0);
        ASSERT_EQ(gopen_ws(1, "", DeviceKind::win), 0);
        GPH_set_maxview(1);
        GPH_set_color(kRed, 1, 0, 0);
        paint(kFrameBase, 0, 0.3F);
        gupdate_window();
        gcheck_event();
        eye_ = std::make_unique<Onlooker>(server_.display());
        before_ = eye_->picture();
    }
    void TearDown() override {
        eye_.reset();
        if (gchk_graphics() != 0) (void)gclose_ws(1);
        gclose_gks();
        gstate() = GraphicsState{};
    }
    static void paint(int frame, float left, float right) {
        gselect_frame(frame);
        gsel_norm_tran(1);
        gset_fill_int_style(1);
        gset_fill_colr_ind(kRed);
        GPH_frect(left, 0, right, 1);
    }
    /// Requests that the program sends to the server meanwhile.
    template <class Action> static unsigned long requests(Action action) {
        Display *const display = x11_session()->display();
        const unsigned long first = XNextRequest(display);
        action();
        return XNextRequest(display) - first;
    }
    /// All events of what has been done to the window are here.
    static void await_events() { XSync(x11_session()->display(), False); }

    static constexpr int kRed = 2;
    XServer server_{"800x600x24"};
    std::unique_ptr<Onlooker> eye_;
    Picture before_;
};

TEST_F(WindowEvents, ABurstOfExposuresIsOneRefresh) {
    eye_->expose();
    await_events();
    const unsigned long one = requests([] { gcheck_event(); });
    EXPECT_GT(one, 0U);
    EXPECT_EQ(eye_->picture(), before_);
    for (int i = 0; i < 1000; ++i) eye_->expose();
    await_events();
    EXPECT_EQ(requests([] { gcheck_event(); }), one);
    await_events();
    EXPECT_EQ(eye_->picture(), before_);
}

TEST_F(WindowEvents, WhatWasCoveredOrUnmappedComesBack) {
    ASSERT_EQ(before_.width, 300);
    eye_->cover_and_uncover(200, 150);
    await_events();
    gcheck_event();
    EXPECT_EQ(eye_->picture(), before_);
    eye_->unmap();
    await_events();
    gcheck_event();
    EXPECT_EQ(gis_mapped(), 0);
    paint(kFrameBase, 0.5F, 0.9F);
    gupdate_window();
    eye_->map();
    await_events();
    gcheck_event();
    EXPECT_EQ(gis_mapped(), 1);
    await_events();
    EXPECT_NE(eye_->picture(), before_) << "what was drawn meanwhile is seen";
    EXPECT_EQ(eye_->picture().at(200, 100), 0xFF0000U);
}

TEST_F(WindowEvents, AMoveIsNoNewSize) {
    eye_->move_to(40, 30);
    await_events();
    (void)gcreate_frame(0);
    gcheck_event();
    EXPECT_EQ(gget_num_images(), 1) << "frames end with a new size only";
    EXPECT_EQ(eye_->picture(), before_);
}

TEST_F(WindowEvents, FramesLeaveNothingOnTheServer) {
    const std::size_t before = gx11_counts().pixmaps;
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(gcreate_frame(-1), i);
        paint(i, 0, static_cast<float>(i) / 50);
        gdisplay_frame(i);
    }
    EXPECT_EQ(gx11_counts().pixmaps, before + 50);
    gzoom(3, 100, 100, -2, 0);
    gunzoom();
    for (int i = 0; i < 50; ++i) gdelete_frame(i % 2 == 0 ? kFrameLast : 0);
    EXPECT_EQ(gget_num_images(), 0);
    ginit_loop();
    EXPECT_EQ(gx11_counts().pixmaps, before);
    for (int i = 0; i < 50; ++i) (void)gcreate_frame(-1);
    gdelete_all_frames();
    EXPECT_EQ(gx11_counts().pixmaps, before);
    gx11_sync();
    EXPECT_EQ(gx11_counts().errors, 0);
}

TEST_F(WindowEvents, TheTitleTellsAFrameWhileThereIsOne) {
    const std::string plain = eye_->title(eye_->window());
    const auto told = [this] {
        await_events();
        return eye_->title(eye_->window());
    };
    (void)gcreate_frame(0);
    (void)gcreate_frame(1);
    gdisplay_frame(1);
    EXPECT_EQ(told(), plain + " [1]");
    eye_->resize(260, 180);
    await_events();
    gcheck_event();
    EXPECT_EQ(gget_num_images(), 0) << "frames end with a new size";
    EXPECT_EQ(told(), plain);
    (void)gcreate_frame(0);
    gdisplay_frame(0);
    EXPECT_EQ(told(), plain + " [0]");
    gdelete_frame(0);
    EXPECT_EQ(told(), plain);
}

TEST_F(WindowEvents, ACloseRequestDuringADrawingEndsIt) {
    gpump_events();
    eye_->ask_to_close();
    await_events();
    {
        const StoppableDrawing drawing(false);
        EXPECT_THROW(gpump_events(), DrawingStopped);
    }
    EXPECT_TRUE(gquit_wanted());
    EXPECT_EQ(ghold(1), 1) << "the window is not held any more";
    EXPECT_FALSE(gquit_wanted());
}

TEST_F(WindowEvents, ANewSizeOvertakesADrawing) {
    eye_->resize(250, 150);
    await_events();
    {
        const StoppableDrawing drawing(false);
        EXPECT_NO_THROW(gpump_events()) << "an image file keeps the size that was asked for";
    }
    {
        const StoppableDrawing drawing(true);
        EXPECT_THROW(gpump_events(), DrawingStopped);
        EXPECT_TRUE(gfollow_size());
        EXPECT_NO_THROW(gpump_events());
    }
    EXPECT_EQ(gstate().win_width, 250);
    EXPECT_FALSE(gfollow_size());
}

constexpr std::int64_t kFirst = 1057356000, kStep = 300; ///< of the series, seconds since 1970

/// As soon as the newer file is there its time has come, and the program looks for it every second.
void advance_clock(int /*signal*/) {
    if (gget_input_mode() != kInputWaiting || access("newer", F_OK) != 0) return;
    DATE_fix_time(kFirst + 3 * kStep);
    gframe_table().refresh_seconds = 1;
}

TEST(WindowRefresh, ANewerFileBecomesTheLastFrame) {
    const XServer server("1024x768x24");
    NEEDS_X_SERVER(server);
    const ScratchDir files;
    const std::vector<std::string> series = write_series(files, 4);
    const std::string later = files.at("later");
    std::filesystem::rename(series[3], later);
    const pid_t child = fork();
    if (child == 0) {
        std::filesystem::current_path(files.path());
        FLAG_resetplot(1);
        FLAG_set(kFlagDevice, 1);
        for (const auto &[name, value] : {std::pair{"plot_param", "refresh"}, std::pair{"device", "d"},
                                          std::pair{"geometry", "320x256+0+0"}, std::pair{"title", "Refresh"},
                                          std::pair{"num_hour", "-0:10,0:05"}, std::pair{"message", "none"}})
            RES_put(name, value);
        RES_put("file_path", kData);
        EXPECT_EQ(FILE_set_name("@" + files.at("KLSX_N0R_%Y%m%d_%h%n")), 1);
        constexpr std::int64_t newest = kFirst + 2 * kStep;
        DATE_fix_time(newest);
        DateRecord date;
        std::string name;
        DATE_get_gmdate(&newest, date);
        FILE_set_date(&date, name);
        std::signal(SIGALRM, advance_clock);
        const itimerval tick{{0, 200000}, {0, 200000}};
        setitimer(ITIMER_REAL, &tick, nullptr);
        PlotDomain domain;
        NIDS_set_date(&date);
        NIDS_plot(domain);
        std::_Exit(0);
    }
    std::unique_ptr<Onlooker> eye = std::make_unique<Onlooker>(server.display());
    const auto shows = [&](std::string_view title) {
        return comes_true([&] { return eye->title(eye->window()) == title; }, std::chrono::seconds(20));
    };
    ASSERT_TRUE(shows("Refresh [2]"));
    const Picture old = eye->picture();
    ASSERT_TRUE(shows("Refresh [0]"));
    std::filesystem::rename(later, series[3]);
    files.write("newer", "");
    EXPECT_TRUE(
        comes_true([&] { return shows("Refresh [2]") && eye->picture() != old; }, std::chrono::seconds(20)));
    eye->send(9);
    int status = 0;
    EXPECT_TRUE(
        comes_true([&] { return waitpid(child, &status, WNOHANG) == child; }, std::chrono::seconds(20)));
    EXPECT_EQ(status, 0);
}

} // namespace
