// The plot session on the memory display: image files, animation, zoom and refresh.

#include <cstdint>
#include <cstring>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "graphics/window/zoom.h"
#include "image_facts.h"
#include "lib/report/process.h"
#include "plot/map/current_map.h"
#include "plot/session/images.h"
#include "plot/session/plot_session.h"
#include "plot/session/view.h"
#include "plot_page.h"

namespace {

class WindowSession : public PlotPage {
protected:
    void SetUp() override {
        PlotPage::SetUp();
        RES_put("plot_param", "");
        RES_put("label", "");
        RES_put("device", "d,memory");
        RES_put("geometry", "320x256");
        RES_put("image_path", scratch_.path());
        FLAG_set(kFlagDevice, 1);
    }
    /// Frames of one colour each, drawn and dumped as a series.
    static void draw_frames(int count) {
        for (int i = 0; i < count; ++i) {
            (void)gcreate_frame(i);
            gselect_frame(i);
            GPH_trans(kViewTransform);
            gset_fill_int_style(1);
            gset_fill_colr_ind(i + 2);
            GPH_frect(0, 0, 0.2F * static_cast<float>(i + 1), 1);
            gdisplay_frame(i);
            (void)PLT_dump(i);
        }
    }
    std::string told_by_close() {
        testing::internal::CaptureStdout();
        EXPECT_EQ(PLT_close(), 0);
        return testing::internal::GetCapturedStdout();
    }
    bool exists(const char *name) const { return std::filesystem::exists(scratch_.at(name)); }
};

TEST_F(WindowSession, WordsThatAskForAnImage) {
    EXPECT_EQ(PLT_dump(0), -1);
    EXPECT_FALSE(PLT_wants_image());
    RES_put("plot_param", "gif_inter,gif_trans,nolooptitle,kill");
    PLT_open(1);
    EXPECT_FALSE(PLT_wants_image()) << "these only say how";
    PLT_close();
    RES_put("plot_param", "");
    RES_put("out_file", "png=a.png");
    PLT_open(1);
    EXPECT_TRUE(PLT_wants_image());
    EXPECT_EQ(PLT_dump(0), 0);
    PLT_close();
    EXPECT_EQ(png_size(scratch_.at("a.png")), (PictureSize{320, 256}));
}

TEST_F(WindowSession, OnePictureIsNamedAsAsked) {
    for (const auto *param : {"png", "gif", "xwd", "img=vyx.img", "png=%p_%i.png"}) {
        RES_put("plot_param", param);
        RES_put("title", "My radar");
        PLT_open(1);
        EXPECT_EQ(PLT_dump(0), 0) << param;
        PLT_close();
    }
    for (const auto *name : {"vyx.png", "vyx.gif", "vyx.xwd", "vyx.img", "My_radar_win.png"})
        EXPECT_TRUE(exists(name)) << name;
}

TEST_F(WindowSession, EveryFrameGetsAFile) {
    RES_put("plot_param", "gif");
    PLT_open(1);
    draw_frames(3);
    told_by_close();
    EXPECT_TRUE(exists("vyx.gif"));
    EXPECT_TRUE(exists("vyx-01.gif"));
    EXPECT_TRUE(exists("vyx-02.gif"));

    RES_put("plot_param", "png=f%i.png");
    PLT_open(1);
    draw_frames(2);
    EXPECT_EQ(PLT_dump(kDumpAllFrames), 0);
    PLT_close();
    EXPECT_TRUE(exists("f00.png"));
    EXPECT_TRUE(exists("f01.png"));
    EXPECT_FALSE(exists("fwin.png"));
}

TEST_F(WindowSession, TheAnimationHoldsEveryFrame) {
    RES_put("plot_param", "anim");
    PLT_open(1);
    draw_frames(4);
    EXPECT_NE(told_by_close().find("Wrote GIF file: " + scratch_.at("vyx_anim.gif")), std::string::npos);
    const GifFacts gif = gif_facts(scratch_.at("vyx_anim.gif"));
    EXPECT_EQ(gif.size, (PictureSize{320, 256}));
    EXPECT_TRUE(gif.loops);
    EXPECT_EQ(gif.delays, (std::vector<int>{50, 50, 50, 100})) << "hundredths of a second";
}

TEST_F(WindowSession, ARockingAnimationGoesBack) {
    RES_put("plot_param", "anim,rock");
    PLT_open(1);
    draw_frames(4);
    gdisplay_frame(3);
    EXPECT_EQ(ginc_frame(0), 2) << "and so does the loop of the window";
    told_by_close();
    const GifFacts gif = gif_facts(scratch_.at("vyx_anim.gif"));
    EXPECT_EQ(gif.delays, (std::vector<int>{50, 50, 50, 100, 50, 50})) << "0 1 2 3 2 1";
}

TEST_F(WindowSession, NamesAreNotCut) {
    const std::string folder(100, 'f'), name(120, 'n');
    RES_put("plot_param", ("png=" + name).c_str());
    RES_put("image_path", (scratch_.path() + "/" + folder).c_str());
    PLT_open(1);
    (void)PLT_dump(0);
    PLT_close();
    EXPECT_TRUE(exists((folder + "/" + name).c_str()));
    const auto longer_than_paths = [] {
        RES_put("image_path", std::string(5000, 'f').c_str());
        PLT_open(1);
        (void)PLT_dump(0);
        PLT_close();
        VYX_exit(0);
    };
    EXPECT_EXIT(longer_than_paths(), testing::ExitedWithCode(kExitSession), "Unable to write PNG file: fff");
}

TEST_F(WindowSession, WhatCannotBeDoneIsTold) {
    const auto told = [](const char *param) {
        RES_put("plot_param", param);
        testing::internal::CaptureStderr();
        PLT_open(1);
        PLT_close();
        return testing::internal::GetCapturedStderr();
    };
    for (const char *geometry : {"P2x2+0+0", "640x", "x"}) {
        RES_put("geometry", geometry);
        EXPECT_EQ(told("gif=b.gif"), std::string("geometry: Not understood: ") + geometry + "\n");
    }
    const auto open_with = [](const char *param, const char *geometry) {
        RES_put("plot_param", param);
        RES_put("geometry", geometry);
        PLT_open(1);
        VYX_exit(0);
    };
    for (const char *panel : {"2x2+5+5", "1x2+0+1", "2x2+-1+0", "0x0+0+0", ".5x.5+0+1"})
        EXPECT_EXIT(open_with(("vp_size=" + std::string(panel)).c_str(), ""),
                    testing::ExitedWithCode(kExitGraphics), "PLT_param_decode: No room in this panel: ");
    for (const char *geometry : {"0x0", "10x0+5+5", "40000x10"})
        EXPECT_EXIT(open_with("", geometry), testing::ExitedWithCode(kExitGraphics),
                    "geometry: No picture has this size: ");
}

TEST_F(WindowSession, AnUnwrittenImageIsToldAndEndsTheSession) {
    RES_put("plot_param", "png=/dev/full/x.png");
    PLT_open(1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(PLT_dump(0), 0);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find("PLT_dump: Unable to write PNG file: /dev/full/x.png\n"), std::string::npos) << told;
    const auto close_and_end = [](int batch) {
        FLAG_set_batch(batch);
        PLT_close();
        VYX_exit(0);
    };
    EXPECT_EXIT(close_and_end(0), testing::ExitedWithCode(kExitSession), "");
    EXPECT_EXIT(close_and_end(1), testing::ExitedWithCode(kExitSession), "");
}

PlotDomain state_domain() {
    PlotDomain domain;
    domain.proj = kProjLatLon;
    domain.clat = 40;
    domain.clon = -90;
    domain.dx = domain.dy = 1;
    domain.nx = domain.ny = 11;
    return domain;
}

struct Redraws {
    int count = 0;
    PlotDomain last;
} redraws;

int note_redraw(PlotDomain &domain) {
    ++redraws.count;
    redraws.last = domain;
    MAP_setup(domain);
    PLT_plot_zoom("r-Alt", 0, 0); // whoever draws may be asked again meanwhile
    return 0;
}

TEST_F(WindowSession, ABoxBecomesTheDomain) {
    PLT_open(1);
    MAP_setup(state_domain());
    PLT_set_zoom_func(note_redraw);
    EXPECT_EQ(PLT_plot_zoom("B1-R", 1, 1), -1) << "nothing was pressed";
    EXPECT_EQ(PLT_plot_zoom("u-Alt", 0, 0), 0);
    const Rect limits = MAP_get_limits();
    const float x = limits.xmin, y = limits.ymax;
    PLT_plot_zoom("B1-P-Shft", x, y);
    PLT_plot_zoom("B1-R-Shft", x, y - 4);
    EXPECT_EQ(redraws.count, 0) << "a line is no box";
    PLT_plot_zoom("B1-P-Shft", x, y);
    EXPECT_EQ(PLT_plot_zoom("B1-R", x + 2, y - 4), 0);
    EXPECT_EQ(redraws.count, 1);
    EXPECT_EQ(PLT_get_zoom(), 1);
    EXPECT_FLOAT_EQ(redraws.last.dx, 0.4F);
    EXPECT_FLOAT_EQ(redraws.last.dy, 0.4F);
    EXPECT_NEAR(redraws.last.clat, 43, 1e-3);
    EXPECT_NEAR(redraws.last.clon, -94, 1e-3);
    PLT_plot_zoom("r-Alt", 0, 0);
    EXPECT_EQ(redraws.count, 2);
    EXPECT_FLOAT_EQ(redraws.last.dx, 0.4F);
    PLT_plot_zoom("u-Alt", 0, 0);
    EXPECT_EQ(redraws.count, 3);
    EXPECT_FLOAT_EQ(redraws.last.dx, 1);
    EXPECT_EQ(redraws.last.clon, -90);
    EXPECT_EQ(PLT_get_zoom(), 0);
    PLT_close();
}

void fill(int color, float right) {
    GPH_trans(kViewTransform);
    gset_fill_int_style(1);
    gset_fill_colr_ind(color);
    GPH_frect(0, 0, right, 1);
}

int draw_newer(PlotDomain & /*domain*/) {
    EXPECT_EQ(gget_zoom(), 1) << "a picture is drawn unmagnified";
    gselect_frame(kFrameBase);
    gclear_frame(kFrameBase);
    fill(3, 0.5F);
    return 0;
}

std::vector<std::byte> base_picture() {
    RasterImage image;
    EXPECT_TRUE(graster_read(graster_base(), image));
    return image.data;
}

TEST_F(WindowSession, ARefreshIsSeenThroughTheZoom) {
    PLT_open(1);
    MAP_setup(state_domain());
    PlotDomain domain = state_domain();
    draw_newer(domain);
    const std::vector<std::byte> newer = base_picture();
    gzoom(0, 160, 128, -2, 0);
    const std::vector<std::byte> newer_magnified = base_picture();
    EXPECT_NE(newer_magnified, newer);
    gunzoom();
    gclear_frame(kFrameBase);
    fill(2, 0.3F);
    PLT_set_refresh_func(60, draw_newer);
    gzoom(0, 160, 128, -2, 0);
    PLT_plot_refresh();
    EXPECT_EQ(gget_zoom(), 2);
    EXPECT_EQ(base_picture(), newer_magnified);
    gunzoom();
    EXPECT_EQ(base_picture(), newer) << "not the old data";
    PLT_close();
}

TEST_F(WindowSession, EscapeLeavesABoxAndOneLevel) {
    PLT_open(1);
    MAP_setup(state_domain());
    PLT_set_zoom_func(note_redraw);
    redraws.count = 0;
    const Rect limits = MAP_get_limits();
    const auto draw_box = [&](float right, float height) {
        PLT_plot_zoom("B1-P-Shft", limits.xmin, limits.ymax);
        return PLT_plot_zoom("B1-R", limits.xmin + right, limits.ymax - height);
    };
    draw_box(0.01F, 3);
    EXPECT_EQ(redraws.count, 0) << "a few pixels are no box";
    PLT_plot_zoom("B1-P-Shft", limits.xmin, limits.ymax);
    PLT_plot_zoom("\x1b", 0, 0);
    EXPECT_EQ(PLT_plot_zoom("B1-R", limits.xmin + 3, limits.ymax - 3), -1);
    EXPECT_EQ(redraws.count, 0);
    draw_box(5, 5);
    draw_box(3, 3);
    EXPECT_FLOAT_EQ(redraws.last.dx, 0.3F);
    PLT_plot_zoom("\x1b", 0, 0);
    EXPECT_FLOAT_EQ(redraws.last.dx, 0.5F);
    PLT_plot_zoom("\x1b", 0, 0);
    EXPECT_FLOAT_EQ(redraws.last.dx, 1);
    EXPECT_EQ(PLT_get_zoom(), 0);
    PLT_plot_zoom("\x1b", 0, 0);
    EXPECT_EQ(redraws.count, 4) << "there is nothing left to leave";
    PLT_close();
}

TEST_F(WindowSession, ScreensZoomByTheirCorner) {
    PLT_open(1);
    PlotDomain screen;
    screen.proj = kProjPixel;
    screen.clat = screen.clon = 0;
    screen.dx = screen.dy = 511;
    screen.nx = screen.ny = 512;
    MAP_setup(screen);
    PLT_set_zoom_func(note_redraw);
    PLT_plot_zoom("B1-P-Shft", 100, -50);
    PLT_plot_zoom("B1-R", 200, -250);
    const Rect limits = MAP_get_limits();
    EXPECT_FLOAT_EQ(limits.xmin, 100);
    EXPECT_FLOAT_EQ(limits.xmax, 200);
    EXPECT_FLOAT_EQ(limits.ymin, -250);
    EXPECT_FLOAT_EQ(limits.ymax, -50);
    PLT_close();
}

} // namespace
