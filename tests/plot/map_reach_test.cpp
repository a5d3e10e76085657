/// Leaving out what a plot cannot show must never leave out what it shows.

#include "plot/background/reach.h"

#include <array>
#include <cmath>
#include <random>

#include "graphics/kernel/helpers.h"
#include "plot/drawing_fixture.h"

namespace {

PlotDomain domain_of(int proj, float lat, float lon, float spacing) {
    PlotDomain domain;
    DOM_init(domain);
    domain.proj = proj;
    domain.clat = domain.plat = lat;
    domain.clon = domain.plon = lon;
    domain.nx = 41;
    domain.ny = 31;
    domain.dx = domain.dy = spacing;
    return domain;
}

class MapReachTest : public DrawingTest {
protected:
    /// True when the lines between the points may touch the window.
    static bool touches(const std::vector<MapPoint> &points) {
        std::vector<Point> plane;
        for (const MapPoint &p : points) {
            Point at;
            if (MAP_tran(at.x, at.y, p.lat, p.lon) == 1) plane.push_back(at);
            constexpr float seam = 20; // behind the projection's seam a line goes on elsewhere
            if (plane.size() > 1 && std::abs(plane.back().x - plane[plane.size() - 2].x) > seam) return false;
        }
        GPH_trans(kDataTransform);
        return !plane.empty() && gpts_in_win(plane) == 1;
    }
};

TEST_F(MapReachTest, NothingThatShowsIsMissed) {
    std::mt19937 engine(1995);
    const auto number = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine);
    };
    struct Case {
        int proj;
        float spacing;
    };
    int missed = 0, shown = 0;
    for (const Case &c : {Case{kProjPolar, 0.3F}, Case{kProjLambert, 0.3F}, Case{kProjLatLon, 0.3F},
                          Case{kProjMercator, 0.3F}, Case{kProjSatellite, 0.3F}, Case{kProjLatLon, 4.0F},
                          Case{kProjPolar, 1.5F}}) {
        for (int i = 0; i < 12; ++i) {
            MAP_setup(domain_of(c.proj, number(-60, 75), number(-180, 180), c.spacing));
            const MapReach reach;
            for (int k = 0; k < 3000; ++k) {
                MapPoint at{number(-88, 88), number(-180, 180)};
                std::vector<MapPoint> line;
                for (int n = 0; n < 5; ++n) {
                    line.push_back(at);
                    at = {at.lat + number(-1.5F, 1.5F), at.lon + number(-1.5F, 1.5F)};
                }
                const bool misses = reach.misses(line);
                missed += misses ? 1 : 0;
                shown += touches(line) ? 1 : 0;
                ASSERT_FALSE(misses && touches(line))
                    << "projection " << c.proj << ", near " << line[0].lat << ' ' << line[0].lon;
            }
        }
    }
    EXPECT_GT(missed, 50000) << "most of the earth is elsewhere";
    EXPECT_GT(shown, 1000);
}

TEST_F(MapReachTest, LongLinesAndTheDateLineAreKept) {
    MAP_setup(domain_of(kProjPolar, 45, -100, 0.3F));
    const MapReach reach;
    const std::array border{MapPoint{49, -123}, MapPoint{49, -95}};
    EXPECT_FALSE(reach.misses(border)) << "both ends are outside";
    const std::array around{MapPoint{10, -179}, MapPoint{10, 179}};
    EXPECT_FALSE(reach.misses(around));
    const std::array other_turn{MapPoint{45, 259}, MapPoint{46, 261}};
    EXPECT_FALSE(reach.misses(other_turn)) << "longitudes counted east";
    const std::array far{MapPoint{45, 10}, MapPoint{46, 12}};
    EXPECT_TRUE(reach.misses(far));
    MAP_setup(domain_of(kProjPolar, 88, 0, 0.3F));
    EXPECT_FALSE(MapReach().misses(far)) << "every meridian meets at the pole";
}

} // namespace
