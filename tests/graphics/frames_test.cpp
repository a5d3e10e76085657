// Frames, stepping and loop timing on the memory display.

#include "graphics/window/frames.h"
#include "graphics/window/hold.h"
#include "graphics/window/loop.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/report/process.h"
#include "no_more_memory.h"

namespace {

constexpr int kRed = 2, kBlue = 3;

class Frames : public testing::Test {
protected:
    void SetUp() override {
        gsetup_window();
        ASSERT_EQ(gopen_gks("", 0), 0);
        ASSERT_EQ(gopen_ws(1, "memory", DeviceKind::win), 0);
        GPH_set_maxview(1);
        GPH_set_color(kRed, 1, 0, 0);
        GPH_set_color(kBlue, 0, 0, 1);
        ginc_loop_delay(0.5F - gget_loop_delay());
        gset_loop_direction(1);
        gset_looping(0);
        background_ = middle_of(graster_base());
    }
    void TearDown() override {
        if (gchk_graphics() != 0) (void)gclose_ws(1);
        gclose_gks();
        gstate() = GraphicsState{};
    }

    static void create(int count) {
        for (int i = 0; i < count; ++i) EXPECT_EQ(gcreate_frame(i), i);
    }
    /// Fills the whole of a frame.
    static void paint(int frame, int color) {
        gselect_frame(frame);
        gsel_norm_tran(1);
        gset_fill_int_style(1);
        gset_fill_colr_ind(color);
        GPH_frect(0, 0, 1, 1);
    }
    using Pixel = std::array<std::byte, 4>;
    static Pixel middle_of(PixmapId pixmap) {
        RasterImage image;
        EXPECT_TRUE(graster_read(pixmap, image));
        const int bytes = image.bits_per_pixel / 8;
        const auto at =
            static_cast<std::size_t>(image.height / 2 * image.bytes_per_line + image.width / 2 * bytes);
        Pixel pixel{};
        for (std::size_t i = 0; i < static_cast<std::size_t>(bytes); ++i) pixel.at(i) = image.data.at(at + i);
        return pixel;
    }
    static Pixel shown() { return middle_of(graster_base()); }

    Pixel background_{};
};

TEST_F(Frames, DelaysFollowTheOrderOfCreation) {
    create(3);
    EXPECT_EQ(gget_num_images(), 3);
    EXPECT_FLOAT_EQ(gget_frame_delay(0), 0.5F);
    EXPECT_FLOAT_EQ(gget_frame_delay(1), 0.5F);
    EXPECT_FLOAT_EQ(gget_frame_delay(kFrameLast), 1.0F);
    ginc_loop_delay(0.2F);
    EXPECT_FLOAT_EQ(gget_frame_delay(1), 0.7F);
    EXPECT_FLOAT_EQ(gget_frame_delay(2), 1.0F) << "the last picture keeps its time";
    EXPECT_EQ(gcreate_frame(-5), 3) << "a negative number appends";
    EXPECT_FLOAT_EQ(gget_frame_delay(2), 0.7F);
    ginc_loop_delay(-1);
    EXPECT_EQ(gget_loop_delay(), 0);
    EXPECT_EQ(gcreate_frame(1), 1) << "an old frame is cleared and stays in its place";
    EXPECT_EQ(gget_num_images(), 4);
}

TEST_F(Frames, EachIsAPictureOfItsOwn) {
    create(2);
    paint(0, kRed);
    EXPECT_EQ(gget_redraw(), 0) << "frames are not made again from the object list";
    paint(1, kBlue);
    EXPECT_EQ(shown(), background_);
    const Pixel red = middle_of(gget_frame_id(0)), blue = middle_of(gget_frame_id(kFrameLast));
    EXPECT_NE(red, blue);
    EXPECT_EQ(gdisplay_frame(0), 1);
    EXPECT_EQ(shown(), red);
    EXPECT_EQ(gget_cur_frame(), 0);
    EXPECT_EQ(gget_frame_id(kFrameCurrent), gget_frame_id(0));
    EXPECT_EQ(gdisplay_frame(-7), 1) << "a negative number: the current frame";
    EXPECT_EQ(gget_cur_frame(), 0);

    EXPECT_EQ(gcopy_frame(kFrameBase, 1), 1);
    EXPECT_EQ(shown(), blue);
    EXPECT_EQ(gclear_frame(0), 1);
    EXPECT_EQ(middle_of(gget_frame_id(0)), background_);
    EXPECT_EQ(gclear_frame(5), 0);
    EXPECT_EQ(gcopy_frame(0, 5), 0);
    EXPECT_EQ(gselect_frame(5), 0);
}

TEST_F(Frames, SwitchingKeepsThePictureThatIsDrawn) {
    create(2);
    paint(0, kRed);
    const PixmapId drawn = graster_drawable();
    const Pixel red = middle_of(drawn);
    EXPECT_EQ(gswitch_frame(0, 1), 1);
    EXPECT_EQ(gget_frame_id(1), drawn);
    EXPECT_EQ(graster_drawable(), drawn);
    EXPECT_EQ(gswitch_frame(kFrameBase, kFrameLast), 1);
    EXPECT_EQ(graster_base(), drawn);
    EXPECT_EQ(shown(), red);
    EXPECT_EQ(graster_drawable(), drawn);
    EXPECT_EQ(gswitch_frame(0, 9), 0);
}

TEST_F(Frames, DeletingMovesTheLaterFramesDown) {
    create(4);
    const PixmapId third = gget_frame_id(2);
    paint(2, kRed);
    const Pixel red = middle_of(third);
    gdisplay_frame(1);
    EXPECT_EQ(gdelete_frame(kFrameCurrent), 1);
    EXPECT_EQ(gget_num_images(), 3);
    EXPECT_EQ(gget_frame_id(1), third);
    EXPECT_EQ(shown(), red) << "what took the current frame's place is shown";
    EXPECT_EQ(gget_frame_id(3), kNoPixmap);

    gdisplay_frame(2);
    EXPECT_EQ(gdelete_frame(kFrameLast), 1);
    EXPECT_FLOAT_EQ(gget_frame_delay(1), 1.0F);
    EXPECT_EQ(gget_cur_frame(), 1);
    EXPECT_EQ(shown(), red);
    EXPECT_EQ(gdelete_frame(kMaxFrames), 0);
    EXPECT_EQ(gdelete_frame(kFrameBase), 0);
    EXPECT_EQ(gget_num_images(), 2);
}

TEST_F(Frames, DeletingTheOnlyFrameClearsTheWindow) {
    create(1);
    paint(0, kRed);
    gdisplay_frame(0);
    EXPECT_NE(shown(), background_);
    EXPECT_EQ(gdelete_frame(0), 1);
    EXPECT_EQ(gget_num_images(), 0);
    EXPECT_EQ(shown(), background_);
    EXPECT_EQ(gget_cur_frame(), -1);
    EXPECT_EQ(gdelete_frame(0), 0);
    EXPECT_EQ(gdelete_frame(kFrameLast), 0);
    EXPECT_EQ(ginc_frame(1), -1);
}

TEST_F(Frames, DeletedPicturesAreNotDrawnInto) {
    create(2);
    gselect_frame(1);
    gdelete_all_frames();
    EXPECT_EQ(graster_drawable(), graster_base());
    EXPECT_EQ(gget_num_images(), 2);
    EXPECT_EQ(gcopy_frame(0, 1), 0);
    ginit_plot(PlotMode::resized);
    EXPECT_EQ(gget_num_images(), 0);
    EXPECT_EQ(gcreate_frame(-1), 0);
}

TEST_F(Frames, NoMoreThanThereIsRoomFor) {
    for (int i = 0; i < kMaxFrames; ++i) (void)gcreate_frame(-1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(gcreate_frame(-1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "gcreate_frame: no room for frame 128\n");
    EXPECT_EQ(gget_num_images(), kMaxFrames);
}

TEST_F(Frames, WithoutMemoryThereIsNoFrame) {
    create(2);
    gselect_frame(1);
    const PixmapId drawable = graster_drawable();
    {
        const NoMoreMemory none;
        testing::internal::CaptureStderr();
        EXPECT_EQ(gcreate_frame(2), 0);
        EXPECT_EQ(gselect_frame(2), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "gcreate_frame: no memory for frame 2\n");
    EXPECT_EQ(gget_num_images(), 2);
    EXPECT_EQ(graster_drawable(), drawable);
    EXPECT_EQ(gcreate_frame(2), 2);
}

/// The pace is changed in proportion between a twentieth of a second and five; the last picture then stands
/// twice as long as the others.
TEST_F(Frames, ThePaceIsScaledWithinItsBounds) {
    create(3);
    const auto delays = [] {
        return std::array{gget_frame_delay(0), gget_frame_delay(1), gget_frame_delay(2)};
    };
    const auto near = [&](float first, float last) {
        const std::array found = delays();
        return std::abs(found[0] - first) < 1e-4F && std::abs(found[1] - first) < 1e-4F &&
               std::abs(found[2] - last) < 1e-4F;
    };
    gscale_loop_delay(0.5F);
    EXPECT_TRUE(near(0.25F, 0.5F)) << testing::PrintToString(delays());
    gscale_loop_delay(2);
    EXPECT_TRUE(near(0.5F, 1)) << testing::PrintToString(delays());
    gscale_loop_delay(1e-6F);
    EXPECT_TRUE(near(0.05F, 0.1F)) << testing::PrintToString(delays());
    gscale_loop_delay(1e6F);
    EXPECT_TRUE(near(5, 10)) << testing::PrintToString(delays());
    ginc_loop_delay(-20);
    EXPECT_EQ(gget_loop_delay(), 0) << "by steps down to nothing";
}

/// A drop shadow falls to the right and below, in black, and the thing itself lies upon it.
TEST_F(Frames, ThingsThrowTheirShadowDownwards) {
    struct Colors {
        int width = 0;
        std::vector<std::array<unsigned, 3>> pixels;
        [[nodiscard]] bool is(int x, int y, std::array<unsigned, 3> color) const {
            return pixels.at(static_cast<std::size_t>(y * width + x)) == color;
        }
    };
    const auto look = [] {
        RasterImage image;
        EXPECT_TRUE(graster_read(graster_base(), image));
        const auto bytes = static_cast<std::size_t>(image.bits_per_pixel) / 8;
        Colors colors{image.width, {}};
        for (int y = 0; y < image.height; ++y) {
            for (int x = 0; x < image.width; ++x) {
                const auto at =
                    static_cast<std::size_t>(y * image.bytes_per_line) + static_cast<std::size_t>(x) * bytes;
                std::array<unsigned, 3> raw{};
                for (std::size_t i = 0; i < 3; ++i)
                    raw.at(i) = std::to_integer<unsigned>(image.data.at(at + i));
                colors.pixels.push_back(raw);
            }
        }
        return colors;
    };
    paint(gcreate_frame(0), kBlue);
    gdisplay_frame(0);
    const Colors ground = look();
    const std::array<unsigned, 3> blue = ground.pixels.at(0), black{};
    constexpr int kShadows = 4;
    gset_font_drop(kShadows);
    gset_marker_type(5); // a cross of two strokes
    gset_marker_size(3);
    gset_marker_colr_ind(kRed);
    GPH_mark(0.5F, 0.5F);
    gdisplay_frame(0);
    const Colors shadowed = look();
    int red = 0, dark = 0, right_and_below = 0;
    for (int y = 0; y + kShadows < static_cast<int>(shadowed.pixels.size()) / shadowed.width; ++y) {
        for (int x = 0; x + kShadows < shadowed.width; ++x) {
            const bool is_dark = shadowed.is(x, y, black);
            dark += is_dark ? 1 : 0;
            if (shadowed.is(x, y, blue) || is_dark) continue;
            ++red;
            right_and_below += shadowed.is(x + kShadows - 1, y + kShadows - 1, blue) ? 0 : 1;
        }
    }
    EXPECT_GT(red, 10);
    EXPECT_GT(dark, red / 2) << "of the falling stroke's shadow little is seen, of the rising one's all";
    EXPECT_EQ(right_and_below, red) << "each point of the cross has its shadow";
}

TEST_F(Frames, SteppingWrapsOrTurns) {
    struct Step {
        int direction, from, step, next, then;
    };
    constexpr std::array steps{Step{1, 2, 0, 0, 1},  Step{0, 0, 0, 2, 0},  Step{1, 0, 0, 1, 1},
                               Step{3, 2, 0, 1, 2},  Step{2, 0, 0, 1, 3},  Step{2, 2, 0, 1, 2},
                               Step{1, 2, 1, 0, 1},  Step{1, 0, -1, 2, 1}, Step{1, 1, -1, 0, 1},
                               Step{3, 0, -1, 1, 3}, Step{3, 2, 1, 1, 2}};
    create(3);
    for (const Step &s : steps) {
        gset_loop_direction(s.direction);
        gdisplay_frame(s.from);
        EXPECT_EQ(ginc_frame(s.step), s.next) << s.direction << ' ' << s.from << ' ' << s.step;
        // The direction afterwards shows in where the middle frame leads.
        gdisplay_frame(1);
        EXPECT_EQ(ginc_frame(0), s.then % 2 != 0 ? 2 : 0) << s.direction << ' ' << s.from << ' ' << s.step;
    }
}

TEST_F(Frames, RockingASingleFrameStays) {
    create(1);
    gdisplay_frame(0);
    for (const int direction : {2, 3}) {
        gset_loop_direction(direction);
        EXPECT_EQ(ginc_frame(0), 0);
        EXPECT_EQ(ginc_frame(0), 0);
    }
}

TEST_F(Frames, AFrameIsShownForItsDelay) {
    create(2);
    EXPECT_EQ(gloop_sleep(), -1) << "nothing has been shown";
    gdisplay_frame(0);
    ginc_loop_delay(-0.2F);
    VYX_init_time();
    EXPECT_EQ(gloop_sleep(), 0);
    const float waited = VYX_elapse_time();
    EXPECT_GE(waited, 0.29F);
    EXPECT_LT(waited, 1.0F);
    EXPECT_EQ(gloop_sleep(), 0);
    EXPECT_LT(VYX_elapse_time() - waited, 0.2F) << "its time is over already";
}

TEST_F(Frames, TheMemoryDisplayIsNeverHeld) {
    create(2);
    gset_looping(1);
    EXPECT_EQ(gget_looping(), 1);
    gtoggle_loop(2);
    EXPECT_EQ(gget_looping(), 0);
    gtoggle_loop(1);
    gset_refresh_callback(1, nullptr);
    EXPECT_EQ(GPH_hold(1), 0);
}

TEST_F(Frames, WithoutADisplayNothingHappens) {
    (void)gclose_ws(1);
    EXPECT_EQ(gcreate_frame(3), 0);
    EXPECT_EQ(gget_num_images(), 0);
    EXPECT_EQ(gdisplay_frame(0), 0);
    EXPECT_EQ(gdelete_frame(0), 0);
    EXPECT_EQ(gset_looping(1), 0);
    EXPECT_EQ(gget_looping(), 0);
    EXPECT_EQ(ghold(1), 0);
}

} // namespace
