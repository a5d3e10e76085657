// The driver's frames on the memory display: a series, newer files, a loop that stands.

#include "radar/common/driver.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "image_facts.h"
#include "lib/files/naming.h"
#include "lib/files/series.h"
#include "lib/options/flags.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "lib/system/stream.h"
#include "no_more_memory.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "radar/common/readout.h"

namespace {

/// 4 July 2003, 22:00:00 UTC.
constexpr std::int64_t kTen = 1057356000;
constexpr std::int64_t kTenMinutes = 600;

/// A format whose files are pictures of one colour, told by the last but one digit of the name.
struct ToyFormat {
    std::string open;
    std::vector<std::string> drawn; ///< "10" is the file of ten past
} toy;

bool open_toy(std::string_view name) {
    if (FILE_exist(name) == 0) return false;
    toy.open = name.substr(name.size() - 2);
    return true;
}

void close_toy() {
    toy.open.clear();
}

PlotDomain toy_domain() {
    PlotDomain domain;
    domain.proj = kProjLatLon;
    domain.clat = 40;
    domain.clon = -90;
    domain.dx = domain.dy = 1;
    domain.nx = domain.ny = 11;
    return domain;
}

void draw_toy() {
    toy.drawn.push_back(toy.open);
    GPH_trans(kViewTransform);
    gset_fill_int_style(1);
    gset_fill_colr_ind(2 + (toy.open.front() - '0'));
    GPH_frect(0, 0, 1, 1);
    GPH_trans(kDataTransform);
}

RadarSteps toy_steps() {
    return {open_toy, close_toy, toy_domain, draw_toy};
}

class DriverFrames : public testing::Test {
protected:
    void SetUp() override {
        FLAG_resetplot(1);
        RES_put("plot_param", "");
        RES_put("device", "d,memory");
        RES_put("geometry", "64x64");
        RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
        RES_put("num_hour", "-0:40,0:10");
        FLAG_set(kFlagDevice, 1);
        EXPECT_EQ(FILE_set_name("@" + files_.at("toy_%Y%m%d_%h%n")), 1);
        for (int i = 0; i < 3; ++i) add_file(i);
        set_now(2);
        PLT_open(1);
    }
    void TearDown() override {
        if (RADAR_is_open()) PLT_close();
        DATE_fix_time(-1);
    }

    void add_file(int number) const { files_.write("toy_20030704_22" + std::to_string(number) + "0", "toy"); }
    static void set_now(int number) { DATE_fix_time(kTen + number * kTenMinutes); }
    static void plot_series() {
        DateRecord date;
        const std::int64_t last = kTen + 2 * kTenMinutes;
        DATE_get_gmdate(&last, date);
        std::string name;
        FILE_set_date(&date, name); // the file chosen first tells the period
        PlotDomain domain = toy_domain();
        RADAR_plot(toy_steps(), date, domain);
    }
    /// The pixel value of the frames' middles.
    static std::vector<int> pictures() {
        std::vector<int> found;
        for (int i = 0; i < gget_num_images(); ++i) found.push_back(picture_of(gget_frame_id(i)));
        return found;
    }
    static int picture_of(PixmapId pixmap) {
        RasterImage image;
        EXPECT_TRUE(graster_read(pixmap, image));
        const auto at = static_cast<std::size_t>(image.height / 2 * image.bytes_per_line +
                                                 image.width / 2 * image.bits_per_pixel / 8);
        int value = 0;
        for (std::size_t i = 0; i < 3; ++i) value = value * 256 + std::to_integer<int>(image.data.at(at + i));
        return value;
    }
    std::string file_content(const std::string &name) const {
        std::ifstream in(files_.at(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    using Names = std::vector<std::string>;

    ScratchDir files_;
};

TEST_F(DriverFrames, OneForEachFileOfASeries) {
    plot_series();
    EXPECT_EQ(toy.drawn, (Names{"00", "10", "20"}));
    const std::vector<int> seen = pictures();
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_NE(seen[0], seen[1]);
    EXPECT_NE(seen[1], seen[2]);
    EXPECT_EQ(gget_cur_frame(), 2);
    EXPECT_EQ(picture_of(graster_base()), seen[2]);
    EXPECT_EQ(gget_looping(), 1);
}

TEST_F(DriverFrames, ANewerFileJoinsAsTheLast) {
    plot_series();
    const std::vector<int> before = pictures();
    ASSERT_EQ(before.size(), 3U);
    RADAR_next_file(toy_steps());
    EXPECT_EQ(toy.drawn.size(), 3U) << "nothing is newer";
    add_file(3);
    set_now(3);
    RADAR_next_file(toy_steps());
    EXPECT_EQ(toy.drawn.back(), "30");
    const std::vector<int> after = pictures();
    ASSERT_EQ(after.size(), 3U);
    EXPECT_EQ(after[0], before[1]);
    EXPECT_EQ(after[1], before[2]);
    EXPECT_NE(after[2], before[2]);
    EXPECT_EQ(picture_of(graster_base()), after[2]);
    RADAR_next_file(toy_steps());
    EXPECT_EQ(toy.drawn.size(), 4U);

    toy.drawn.clear();
    plot_series();
    EXPECT_EQ(toy.drawn, (Names{"10", "20", "30"})) << "a zoom draws what is shown";
    EXPECT_EQ(pictures(), after);
}

TEST_F(DriverFrames, AFileThatHasGrownIsDrawnAnewInItsPlace) {
    plot_series();
    const auto look = [] { RADAR_next_file(toy_steps()); };
    look();
    EXPECT_EQ(toy.drawn.size(), 3U) << "it is as it was";
    const std::string last = "toy_20030704_2220";
    files_.write(last, "toy and more");
    look();
    EXPECT_EQ(toy.drawn, (Names{"00", "10", "20", "20"}));
    EXPECT_EQ(gget_num_images(), 3);
    EXPECT_EQ(gget_frame_source(0), files_.at("toy_20030704_2200")) << "no frame has moved";
    EXPECT_EQ(gget_frame_source(2), files_.at(last));
    look();
    EXPECT_EQ(toy.drawn.size(), 4U);
    std::filesystem::last_write_time(files_.at(last), std::filesystem::last_write_time(files_.at(last)) +
                                                          std::chrono::hours(1));
    look();
    EXPECT_EQ(toy.drawn.size(), 5U) << "of the same length, but written again";

    gdelete_frame(kFrameLast);
    files_.write(last, "toy and still more");
    look();
    EXPECT_EQ(toy.drawn.size(), 5U) << "a frame that was deleted does not come back";
    add_file(3);
    set_now(3);
    look();
    EXPECT_EQ(toy.drawn.back(), "30");
    EXPECT_EQ(gget_frame_source(0), files_.at("toy_20030704_2210"));
    EXPECT_EQ(gget_frame_source(1), files_.at("toy_20030704_2230"));
}

TEST_F(DriverFrames, WithoutFramesTheNewestReplacesThePicture) {
    RES_put("num_hour", "0");
    plot_series();
    EXPECT_EQ(gget_num_images(), 0);
    const int before = picture_of(graster_base());
    add_file(3);
    set_now(3);
    RADAR_next_file(toy_steps());
    EXPECT_EQ(toy.drawn.back(), "30");
    EXPECT_NE(picture_of(graster_base()), before);
}

TEST_F(DriverFrames, ALookThatFindsNothingChangesNothing) {
    RES_put("num_hour", "0");
    plot_series();
    set_now(3000); // nothing is found so late, and the name that was looked for is no file
    RADAR_next_file(toy_steps());
    std::string name;
    FILE_first(FILE_get_date());
    ASSERT_EQ(FILE_get_next(name), 1);
    EXPECT_EQ(name, files_.at("toy_20030704_2220")) << "what a zoom draws is what is shown";
}

TEST_F(DriverFrames, AMissingFileIsSkippedAndFewerFilesLeaveFewerFrames) {
    plot_series();
    EXPECT_EQ(FILE_delete(files_.at("toy_20030704_2210")), 0);
    toy.drawn.clear();
    plot_series();
    EXPECT_EQ(toy.drawn, (Names{"00", "20"}));
    EXPECT_EQ(gget_num_images(), 2);
}

/// The one number behind `name` in /proc/self/status, kB.
long status_number(const std::string &name) {
    std::ifstream in("/proc/self/status");
    for (std::string word; in >> word;)
        if (long number = 0; word == name + ":" && in >> number) return number;
    return 0;
}

TEST_F(DriverFrames, ImageFilesNeedNoFramesAndHaveNoLimit) {
    constexpr int kFiles = 300;
    std::string list;
    for (int i = 0; i < kFiles; ++i)
        list += (i == 0 ? "" : ",") + files_.at("toy_20030704_22" + std::to_string(i % 3) + "0");
    PLT_close();
    RES_put("filename", list.c_str());
    RES_put("num_hour", "0");
    RES_put("geometry", "640x512");
    RES_put("image_path", files_.path());
    RES_put("plot_param", "xwd=x%i.xwd,anim=all.gif");
    PLT_open(1);
    [[maybe_unused]] const long before = status_number("VmHWM");
    plot_series();
    EXPECT_EQ(toy.drawn.size(), 300U);
    PLT_close();
#ifndef __SANITIZE_ADDRESS__ // which keeps freed memory to watch it
    EXPECT_LT(status_number("VmHWM") - before, 16 * 1024) << "kB: a dozen pictures' worth, not 300";
#endif
    for (const auto *last : {"x00.xwd", "x128.xwd", "x299.xwd"})
        EXPECT_EQ(FILE_exist(files_.at(last)), 1) << last;
    EXPECT_NE(file_content("x00.xwd"), file_content("x128.xwd"));
    EXPECT_EQ(file_content("x00.xwd"), file_content("x297.xwd"));
    EXPECT_EQ(gif_facts(files_.at("all.gif")).pictures, kFiles);
}

TEST_F(DriverFrames, PicturesThatCannotBeKeptAreMissed) {
    std::string list;
    for (int i = 0; i <= kMaxFrames; ++i)
        list += (i == 0 ? "" : ",") + files_.at("toy_20030704_22" + std::to_string(i % 3) + "0");
    const auto plot_too_many = [&] {
        RES_put("filename", list.c_str());
        RES_put("num_hour", "0");
        plot_series();
        PLT_close();
        VYX_exit(kExitOk);
    };
    EXPECT_EXIT(plot_too_many(), testing::ExitedWithCode(kExitSession), "only the first 128 files are shown");
#ifndef __SANITIZE_ADDRESS__ // whose own allocator does not give up, but ends the process
    const auto plot_without_memory = [] {
        PLT_close();
        RES_put("geometry", "1000x1000");
        PLT_open(1);
        const NoMoreMemory none;
        plot_series();
        PLT_close();
        VYX_exit(kExitOk);
    };
    EXPECT_EXIT(plot_without_memory(), testing::ExitedWithCode(kExitNoMemory),
                "out of memory; only the first 0 files");
#endif
}

bool read_toy(const std::string &file, RadarReading &reading) {
    reading.value = file.substr(file.size() - 2);
    return true;
}

TEST_F(DriverFrames, TheFileOfTheFrameThatIsSeenIsRead) {
    plot_series();
    Point middle;
    MAP_tran_center(middle.x, middle.y);
    const auto read = [middle](const char *event, std::optional<Point> place = {}) {
        const Point at = place.value_or(middle);
        const auto reading = RADAR_read(event, at.x, at.y, read_toy);
        return reading ? reading->value : std::string("nothing");
    };
    gdisplay_frame(1);
    EXPECT_EQ(read("v-Alt"), "10");
    EXPECT_EQ(read("B1-M"), "10");
    EXPECT_EQ(read("B1-P-Alt"), "10");
    for (const char *other : {"B1-P", "B1-R", "B1-P-Shft", "B1-M-Shft", "v", "v-Alt-Shft", "size", "l-Alt"})
        EXPECT_EQ(read(other), "nothing") << other;
    EXPECT_EQ(read("v-Alt", Point{1000, 1000}), "outside the map");
    gdisplay_frame(0);
    gdelete_frame(kFrameCurrent);
    EXPECT_EQ(read("v-Alt"), "10") << "the frame has moved, and its file with it";

    files_.write("toy_20030704_2210", "another toy");
    EXPECT_EQ(read("v-Alt"), "file not read: it has changed since it was drawn");
    EXPECT_EQ(FILE_delete(files_.at("toy_20030704_2210")), 0);
    EXPECT_EQ(read("v-Alt"), "file not read: it is gone");
    gdisplay_frame(1);
    EXPECT_EQ(read("v-Alt"), "20");

    RES_put("num_hour", "0");
    ginit_loop();
    plot_series();
    EXPECT_EQ(read("B1-P"), "20") << "without a loop a press alone asks";
}

TEST_F(DriverFrames, ALoopThatStandsIsNotStartedByAnotherPlot) {
    plot_series();
    EXPECT_EQ(gget_looping(), 1);
    gset_looping(0);
    plot_series();
    EXPECT_EQ(gget_looping(), 0);
}

} // namespace
