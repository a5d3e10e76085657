/// Cells in pixels, as a display that keeps no objects takes them, make the picture that outlines make.

#include <algorithm>

#include <gtest/gtest.h>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "radar/common/cells.h"

namespace {

PlotDomain around_radar(float spacing) {
    PlotDomain domain;
    domain.proj = kProjLatLon;
    domain.clat = 38.7F;
    domain.clon = -90.7F;
    domain.nx = domain.ny = 101;
    domain.dx = domain.dy = spacing;
    return domain;
}

/// The picture of 360 radials of 250 m bins whose levels change every few bins.
std::vector<std::byte> picture(float spacing, bool outlines) {
    PlotDomain domain = around_radar(spacing);
    PLT_open(DOM_aspect(domain));
    MAP_setup(domain);
    GPH_trans(kDataTransform);
    gset_redraw(outlines ? 1 : 0);
    CONT_reset_fill_set();
    CONT_set_fill_colors("0:off,1:red,2:blue,3:red,4:green:f3", 1);
    std::array<float, kCellLevels> values{};
    for (std::size_t i = 0; i < kCellLevels; ++i) values[i] = static_cast<float>(i);
    const LevelInk ink = CELL_ink(values);
    CellFiller filler(ink);
    const CellFrame frame(domain, domain.clat, domain.clon);
    RadialCells cells(frame);
    std::vector<std::uint8_t> levels(900);
    for (int radial = 0; radial < 360; ++radial) {
        for (std::size_t bin = 0; bin < levels.size(); ++bin)
            levels[bin] = static_cast<std::uint8_t>((bin / 7 + static_cast<std::size_t>(radial) / 5) % 5);
        const auto azimuth = static_cast<float>(radial);
        cells.draw(azimuth, azimuth + 1.01F, 0, 0.0025F, levels, 0, ink, filler.sink());
    }
    RasterImage image;
    EXPECT_TRUE(graster_read(graster_base(), image));
    (void)GPH_end(1);
    return image.data;
}

/// The outlines of a radial of 100 bins of 2 km to the east of a place; the plot is a map of the whole earth
/// about Greenwich.
std::vector<CellCorners> outlines_east_of(float lon, int color) {
    PlotDomain earth;
    earth.proj = kProjLatLon;
    earth.plon = earth.clon = 0;
    earth.clat = 0;
    earth.nx = 361;
    earth.ny = 181;
    earth.dx = earth.dy = 1;
    MAP_setup(earth);
    PlotDomain radar = earth;
    radar.proj = kProjPolar;
    radar.plat = radar.clat = 60;
    radar.plon = radar.clon = lon;
    LevelInk ink;
    for (Attribute &attribute : ink) attribute.color = color;
    std::vector<CellCorners> found;
    const CellSink sink{[](void *context, const CellCorners &corners, std::uint8_t) {
                            static_cast<std::vector<CellCorners> *>(context)->push_back(corners);
                        },
                        &found};
    const CellFrame frame(radar, 60, lon);
    RadialCells cells(frame);
    cells.draw(89, 91, 0, 0.02F, std::vector<std::uint8_t>(100, 3), 0, ink, sink);
    return found;
}

TEST(CellsInPixels, OutlinesEndAtTheSeamOfTheMap) {
    EXPECT_EQ(outlines_east_of(10, 1).size(), 100U);
    EXPECT_EQ(outlines_east_of(10, 0).size(), 100U) << "the first colour is a colour";
    EXPECT_TRUE(outlines_east_of(10, -1).empty());
    const std::vector<CellCorners> at_seam = outlines_east_of(179, 1);
    EXPECT_NEAR(static_cast<double>(at_seam.size()), 98, 1);
    for (const CellCorners &c : at_seam) {
        const auto [low, high] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
        EXPECT_LT(high - low, 1);
    }
}

TEST(CellsInPixels, MakeThePictureOfTheirOutlines) {
    FLAG_resetplot(1);
    FLAG_set(kFlagDevice, 1);
    RES_put("plot_param", "full,nobar");
    RES_put("device", "d,memory");
    RES_put("geometry", "400x400");
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
    for (const float spacing : {0.05F, 0.02F, 0.003F}) {
        const std::vector<std::byte> outlines = picture(spacing, true);
        EXPECT_TRUE(outlines == picture(spacing, false)) << spacing;
        EXPECT_GT(std::ranges::count_if(outlines, [](std::byte b) { return b != std::byte{0}; }), 10000);
    }
}

} // namespace
