// The one picture in a real window: zoom, sizes, image files, colours, and what the display in memory makes
// of the same data.

#include <filesystem>
#include <sstream>

#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "graphics/images/pixels.h"
#include "samples/level3_products.h"
#include "window/window_program.h"

namespace {

Picture picture_of_file(const std::string &path) {
    ImageRecord record;
    if (IMG_read(path, record, 0) != 1) return {};
    Picture picture{record.width, record.height, {}};
    const PixelColors colors(record);
    std::vector<std::uint32_t> row(static_cast<std::size_t>(record.width));
    for (int y = 0; y < record.height; ++y) {
        read_row(record, y, row);
        for (const std::uint32_t value : row) {
            const Rgb color = colors.color(value);
            picture.colors.push_back(std::uint32_t{color_byte(color.red)} << 16 |
                                     std::uint32_t{color_byte(color.green)} << 8 | color_byte(color.blue));
        }
    }
    return picture;
}

/// Pixels that differ, of a thousand; all of them when the sizes do.
double difference(const Picture &a, const Picture &b) {
    if (a.width != b.width || a.height != b.height || a.colors.empty()) return 1000;
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.colors.size(); ++i)
        if (a.colors[i] != b.colors[i]) ++count;
    return 1000.0 * static_cast<double>(count) / static_cast<double>(a.colors.size());
}

class WindowPicture : public WindowProgram {
protected:
    /// A file that the program is writing.
    bool appears(const std::string &name, const Picture &wanted) const {
        return comes_true(
            [&] {
                if (!std::filesystem::exists(files_.at(name))) return false;
                testing::internal::CaptureStderr();
                const Picture seen = picture_of_file(files_.at(name));
                testing::internal::GetCapturedStderr();
                return seen == wanted;
            },
            kDeadline);
    }
};

TEST_F(WindowPicture, AZoomBoxIsPlottedAndUndone) {
    const Picture whole = start_picture();
    // A box that Escape leaves makes no new domain.
    act(at(250, 200) + "keydown shift mousedown 1 " + at(350, 250) + "key Escape mouseup 1 keyup shift");
    act(at(250, 200) + "keydown shift mousedown 1 " + at(300, 220) + at(350, 250) + "mouseup 1 keyup shift");
    const Picture part = settled(whole);
    // The middle of the box stands in the middle now, so a second box nests.
    act(at(280, 220) + "keydown shift mousedown 1 " + at(300, 230) + at(360, 260) + "mouseup 1 keyup shift");
    const Picture smaller = settled(part);
    EXPECT_NE(smaller, whole);
    press("alt+u");
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == whole; }, kDeadline)) << "as it was";
    EXPECT_EQ(end("Return"), 0);
    // Centre, number and spacing of the grid points: "...,lat,lon,nx,ny,dx,dy".
    const std::string words = log();
    std::vector<float> spacings;
    for (const char *const what : {"New domain: ", "Original domain: "}) {
        for (std::size_t mark = words.find(what); mark != std::string::npos;
             mark = words.find(what, mark + 1)) {
            const std::string line = words.substr(mark, words.find('\n', mark) - mark);
            spacings.push_back(std::strtof(line.substr(line.rfind(',') + 1).c_str(), nullptr));
        }
    }
    ASSERT_EQ(spacings.size(), 3U) << words;
    EXPECT_LT(spacings[0], 0.05F);
    EXPECT_LT(spacings[1], spacings[0]);
    EXPECT_NEAR(spacings[2], 0.2F, 1e-4F);
}

TEST_F(WindowPicture, PixelsAreDoubledAndRestored) {
    const Picture whole = start_picture();
    press("alt+z");
    const Picture doubled = settled(whole);
    int wrong = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            wrong += doubled.at(x, y) != whole.at(kWidth / 4 + x / 2, kHeight / 4 + y / 2) ? 1 : 0;
    EXPECT_EQ(wrong, 0);
    press("alt+u");
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == whole; }, kDeadline));
    EXPECT_EQ(end("Return"), 0);
}

TEST_F(WindowPicture, KeysWriteTheOnePicture) {
    const Picture whole = start_picture();
    press("alt+g");
    EXPECT_TRUE(appears("My_ra.gif", whole));
    press("alt+x");
    EXPECT_TRUE(appears("My_ra.xwd", whole));
    EXPECT_EQ(end("Return"), 0);
    EXPECT_TRUE(said("Created GIF file: " + files_.at("My_ra.gif") + "\n")) << log();
    EXPECT_TRUE(said("Created XWD file: " + files_.at("My_ra.xwd") + "\n")) << log();
    if (std::system("command -v giftopnm xwdtopnm >/dev/null 2>&1") != 0) return;
    for (const char *const command : {"giftopnm My_ra.gif", "xwdtopnm My_ra.xwd"})
        EXPECT_EQ(std::system(("cd " + files_.path() + " && " + command + " >/dev/null 2>&1").c_str()), 0)
            << command;
}

TEST_F(WindowPicture, KeysWriteEveryFrameOfALoop) {
    start_loop(2);
    press("alt+g");
    EXPECT_TRUE(comes_true([&] { return std::filesystem::exists(files_.at("My_ra-01.gif")); }, kDeadline));
    ASSERT_TRUE(pause());
    const auto first = static_cast<std::size_t>(frame());
    const Picture a = eye_->picture();
    press("alt+x");
    const std::array<std::string, 2> names{"My_ra-00", "My_ra-01"};
    EXPECT_TRUE(appears(names.at(first) + ".xwd", a)) << "of a halted loop the frame that is shown";
    press("alt+bracketright");
    ASSERT_TRUE(shows(static_cast<int>(1 - first)));
    EXPECT_TRUE(appears(names.at(first) + ".gif", a));
    EXPECT_TRUE(appears(names.at(1 - first) + ".gif", eye_->picture()));
    EXPECT_FALSE(std::filesystem::exists(files_.at(names.at(1 - first) + ".xwd")));
    EXPECT_EQ(end("Return"), 0);
    EXPECT_TRUE(said("Creating GIF files:\n")) << log();
}

TEST_F(WindowPicture, ANewSizeLooksLikeAWindowOfThatSize) {
    const Picture fresh = start_picture({"-ge", "500x400+0+0"});
    EXPECT_EQ(end("Return"), 0);
    stop();
    EXPECT_NE(start_picture(), fresh);
    eye_->resize(500, 400);
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == fresh; }, kDeadline))
        << difference(eye_->picture(), fresh) << " per mille differ";
    EXPECT_EQ(end("Return"), 0);
}

TEST_F(WindowPicture, ThePlaceUnderThePointerIsTold) {
    const Picture whole = start_picture();
    press("alt+v");
    act(at(kWidth / 2, 150) + "key alt+v");
    EXPECT_EQ(end("Return"), 0);
    std::vector<std::array<float, 4>> places;
    std::istringstream lines(log());
    for (std::string line; std::getline(lines, line);) {
        std::array<float, 4> p{};
        if (std::sscanf(line.c_str(), "Lat: %f Lon: %f Dist: %fnm Alt: %fft", p.data(), &p[1], &p[2],
                        &p[3]) == 4)
            places.push_back(p);
    }
    ASSERT_EQ(places.size(), 2U) << log();
    // The radar stands near the middle of the map.
    EXPECT_NEAR(places[0][0], 38.7F, 0.1F);
    EXPECT_NEAR(places[0][1], -90.7F, 0.1F);
    EXPECT_LT(places[0][2], 6);
    EXPECT_GT(places[1][0], 39.5F) << "above the middle is north of it";
    EXPECT_NEAR(places[1][1], -90.7F, 0.1F);
    const float north_nm = (places[1][0] - 38.699F) * 60;
    EXPECT_NEAR(places[1][2], north_nm, north_nm * 0.02F + 1);
    // Half a degree of elevation over a round earth.
    const float range_km = places[1][2] * 1.852F;
    const float beam_km = range_km * 0.00873F + range_km * range_km / (2 * 6371.3F);
    EXPECT_NEAR(places[1][3], beam_km * 3280.8F, beam_km * 3280.8F * 0.02F);
}

TEST_F(WindowPicture, APaletteScreenShowsTheSameColours) {
    const Picture deep = start_picture();
    EXPECT_EQ(end("Return"), 0);
    serve(kPseudoColor);
    const Picture palette = start_picture();
    EXPECT_EQ(end("Return"), 0);
    EXPECT_EQ(difference(deep, palette), 0) << log();
}

class WindowFlash : public WindowPicture, public testing::WithParamInterface<const char *> {};

TEST_P(WindowFlash, ALevelOfTheBarIsDarkWhereverItShows) {
    serve(GetParam());
    const Picture whole = start_picture();
    // The level that the sector of the picture is drawn in: its colour in the bar below the plot.
    const std::uint32_t level = whole.at(kWidth / 2 + 10, 150);
    ASSERT_NE(level, 0U);
    constexpr int kBarRow = 497;
    int in_bar = 0;
    while (in_bar < kWidth / 2 && whole.at(in_bar, kBarRow) != level) ++in_bar;
    in_bar += 3;
    point_at(in_bar, kBarRow);
    press("alt+f");
    Picture dark;
    const auto is_dark = [&] {
        dark = eye_->picture();
        return dark.at(in_bar, kBarRow) == 0;
    };
    EXPECT_TRUE(comes_true(is_dark, kDeadline));
    int kept = 0, others = 0;
    for (std::size_t i = 0; i < whole.colors.size(); ++i) {
        if (whole.colors[i] == level && dark.colors[i] == level) ++kept;
        if (whole.colors[i] != level && dark.colors[i] != whole.colors[i]) ++others;
    }
    EXPECT_EQ(kept, 0);
    EXPECT_EQ(others, 0);
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == whole; }, kDeadline));
    EXPECT_EQ(end("Return"), 0);
}

INSTANTIATE_TEST_SUITE_P(Screens, WindowFlash, testing::Values("1024x768x24", "1024x768x8"),
                         [](const auto &screen) { return screen.index == 0 ? "deep" : "palette"; });

TEST_F(WindowPicture, InverseIsDarkOnLight) {
    const Picture usual = start_picture();
    EXPECT_EQ(end("Return"), 0);
    stop();
    const Picture inverse = start_picture({"-pp", "inv"});
    EXPECT_EQ(end("Return"), 0);
    EXPECT_EQ(usual.at(0, 0), 0x000000U);
    EXPECT_EQ(inverse.at(0, 0), 0xFFFFFFU);
    // The band above the plot holds nothing but labels.
    const auto inked = [](const Picture &picture, std::uint32_t color) {
        return std::count(picture.colors.begin(), picture.colors.begin() + 15 * kWidth, color);
    };
    EXPECT_GT(inked(usual, 0xFFFFFF), 50);
    EXPECT_EQ(inked(usual, 0xFFFFFF), inked(inverse, 0x000000));
}

TEST_F(WindowPicture, AnIconIsAskedFor) {
    start_picture();
    EXPECT_EQ(eye_->initial_state(), NormalState);
    EXPECT_EQ(end("Return"), 0);
    stop();
    start(1, {"-ic"});
    EXPECT_TRUE(comes_true([this] { return eye_->initial_state() == IconicState; }, kDeadline));
}

TEST_F(WindowPicture, MemoryShowsWhatTheWindowShows) {
    for (const samples::NamedProduct &named : samples::all_products(0)) {
        if (named.kind != "N0R" && named.kind != "NVW" && named.kind != "NCR") continue;
        const samples::Bytes bytes = samples::level3_file(named.product, named.framing, named.compression);
        series_ = {files_.write("KLSX_" + named.kind + "_20030704_2200",
                                {reinterpret_cast<const char *>(bytes.data()), bytes.size()})};
        const auto picture_on = [&](const std::string &device, const std::string &name) {
            Child run(arguments(1, {"-de", device, "-pp", "png=" + name}), files_.at("log"));
            EXPECT_EQ(run.wait_for_end(kDeadline), 0) << log();
            return picture_of_file(files_.at(name));
        };
        const Picture window = picture_on("d", "window.png");
        EXPECT_FALSE(is_plain(window));
        EXPECT_LE(difference(window, picture_on("d,memory", "memory.png")), 1) << named.kind;
    }
}

} // namespace
