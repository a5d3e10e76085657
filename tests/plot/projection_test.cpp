/// Projections and the current map domain: numbers from outside, round trips, and the edges by hand.

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/kernel/kernel.h"
#include "plot/map/current_map.h"
#include "plot/map/seam.h"
#include "plot/projection/names.h"
#include "projection_numbers.h"

namespace {

PlotDomain domain_of(int proj, float plat, float plon) {
    PlotDomain d;
    d.proj = proj;
    d.plat = plat;
    d.plon = plon;
    d.clat = plat;
    d.clon = plon;
    d.dx = d.dy = 1.2F;
    d.nx = 25;
    d.ny = 17;
    return d;
}

void install(const PlotDomain &domain) {
    ASSERT_EQ(MAP_domain(&domain), 0);
}

struct Plane {
    int status;
    float x = 7, y = 7;
};

Plane tran(float lat, float lon) {
    Plane p{};
    p.status = MAP_tran(p.x, p.y, lat, lon);
    return p;
}

void expect_hidden(const Plane &p) {
    EXPECT_EQ(p.status, 0);
    EXPECT_EQ(p.x, kMissingF);
    EXPECT_EQ(p.y, kMissingF);
}

/// Distance in degrees of arc.
double arc(double lat1, double lon1, double lat2, double lon2) {
    const double h = std::pow(std::sin((lat2 - lat1) * kDegree / 2), 2) +
                     std::cos(lat1 * kDegree) * std::cos(lat2 * kDegree) *
                         std::pow(std::sin((lon2 - lon1) * kDegree / 2), 2);
    return 2 * std::asin(std::sqrt(std::min(h, 1.0))) / kDegree;
}

} // namespace

TEST(Projection, AgreesWithNumbersFromOutside) {
    for (const ProjectionNumber &row : kProjectionNumbers) {
        PlotDomain d = domain_of(row.proj, row.plat, row.plon);
        d.p3 = row.p3;
        d.p4 = row.p4;
        d.ellipsoid = row.ellipsoid;
        install(d);
        const Plane p = tran(row.lat, row.lon);
        SCOPED_TRACE(testing::Message() << row.proj << " at " << row.lat << ", " << row.lon);
        EXPECT_EQ(p.status, 1);
        EXPECT_NEAR(p.x, row.x, 2e-5 + std::abs(row.x) * 2e-6);
        EXPECT_NEAR(p.y, row.y, 2e-5 + std::abs(row.y) * 2e-6);
    }
}

TEST(Projection, ForwardAndInverseUndoEachOther) {
    PlotDomain southern_cone = domain_of(kProjLambert, -27, 134),
               northern_cone = domain_of(kProjLambert, 10, -100);
    southern_cone.p3 = -18;
    southern_cone.p4 = -36;
    northern_cone.p3 = -30; // opens to the south although the domain lies in the north
    northern_cone.p4 = -10;
    PlotDomain scan = domain_of(kProjSatellite, 0, -75), tangent = domain_of(kProjSatellite, 0, 140);
    PlotDomain sphere_scan = domain_of(kProjSatellite, 0, -75), sphere = domain_of(kProjSatellite, 0, 140);
    scan.ellipsoid = tangent.ellipsoid = 1;
    scan.p4 = sphere_scan.p4 = 1;
    const PlotDomain domains[] = {domain_of(kProjPolar, 40, -97),
                                  domain_of(kProjPolar, -60, 170),
                                  domain_of(kProjLatLon, 0, 170),
                                  domain_of(kProjMercator, 20, -170),
                                  domain_of(kProjLambert, 35, -95),
                                  domain_of(kProjLambert, -35, 20),
                                  southern_cone,
                                  northern_cone,
                                  domain_of(kProjOrtho, 40, -95),
                                  domain_of(kProjGnomonic, 40, -95),
                                  domain_of(kProjGnomonic, 90, 0),
                                  domain_of(kProjMollweide, 0, -90),
                                  domain_of(kProjLambertAzim, 45, 175),
                                  domain_of(kProjLambertAzim, 90, 10),
                                  domain_of(kProjLambertAzim, -90, 10),
                                  domain_of(kProjLambertAzim, 0, 0),
                                  scan,
                                  tangent,
                                  sphere_scan,
                                  sphere};
    for (const PlotDomain &d : domains) {
        install(d);
        int visible = 0;
        for (int i = -8; i <= 8; ++i) {
            for (int j = -17; j <= 17; ++j) {
                const float lat = static_cast<float>(i) * 10.3F, lon = static_cast<float>(j) * 10.3F;
                const bool clamped = (d.proj == kProjPolar && lat * d.plat < 0 && std::abs(lat) > 75);
                const Plane p = tran(lat, lon);
                if (p.status == 0 || clamped || (p.x == 0 && p.y == 0)) continue;
                // Close to the edge of a globe a rounding in the plane is a long way on the ground.
                const double from_center = arc(lat, lon, d.plat, d.plon);
                if ((d.proj == kProjOrtho && from_center > 85) || from_center > 175 ||
                    (d.proj == kProjSatellite && from_center > 75))
                    continue;
                float lat2 = 0, lon2 = 0;
                ASSERT_EQ(MAP_untran(lat2, lon2, p.x, p.y), 1) << d.proj << " " << lat << " " << lon;
                EXPECT_LT(arc(lat, lon, lat2, lon2), d.proj == kProjSatellite ? 0.001 : 0.004)
                    << d.proj << " " << d.plat << ": " << lat << " " << lon << " came back as " << lat2 << " "
                    << lon2;
                ++visible;
            }
        }
        EXPECT_GT(visible, 100) << d.proj;
    }
}

TEST(Projection, LongitudesMeetAtTheDateLine) {
    for (const int proj :
         {kProjPolar, kProjLatLon, kProjMercator, kProjLambert, kProjMollweide, kProjLambertAzim}) {
        install(domain_of(proj, 40, -150));
        const Plane east = tran(30, 190), west = tran(30, -170), turns = tran(30, -170 + 720);
        EXPECT_EQ(east.x, west.x) << proj;
        EXPECT_EQ(turns.x, west.x) << proj;
        EXPECT_EQ(east.y, west.y) << proj;
    }
    install(domain_of(kProjLatLon, 0, -150));
    EXPECT_FLOAT_EQ(tran(10, 170).x, -40);
}

TEST(Projection, HidesWhatItCannotShow) {
    install(domain_of(kProjOrtho, 0, 0));
    expect_hidden(tran(0, 91));
    EXPECT_EQ(tran(0, 89).status, 1);
    install(domain_of(kProjGnomonic, 0, 0));
    expect_hidden(tran(0, 90));
    expect_hidden(tran(0, 179));
    install(domain_of(kProjLambertAzim, 40, -100));
    expect_hidden(tran(-40, 80));
    install(domain_of(kProjSatellite, 0, -75));
    expect_hidden(tran(0, 10));
    expect_hidden(tran(85, -75));
    float lat = 0, lon = 0;
    for (const int proj : {kProjOrtho, kProjMollweide, kProjLambertAzim, kProjSatellite}) {
        install(domain_of(proj, 0, 0));
        EXPECT_EQ(MAP_untran(lat, lon, 0, 140), 0) << proj;
        EXPECT_EQ(lat, kMissingF);
        EXPECT_EQ(lon, kMissingF);
    }
}

TEST(Projection, ClampsLatitudesOfTheFarHemisphere) {
    install(domain_of(kProjPolar, 90, -97));
    EXPECT_EQ(tran(-80, -20).y, tran(-75, -20).y);
    install(domain_of(kProjPolar, -90, -97));
    EXPECT_EQ(tran(80, -20).x, tran(75, -20).x);
    install(domain_of(kProjMercator, 0, 0));
    EXPECT_EQ(tran(90, 0).y, tran(89.9F, 0).y);
    install(domain_of(kProjLambert, 40, 0));
    EXPECT_EQ(tran(-90, 10).y, tran(-89, 10).y);
    EXPECT_NEAR(tran(90, 10).y, 0, 1e-4);
}

TEST(Projection, NeverGivesAnUndefinedNumber) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(),
                    inf = std::numeric_limits<float>::infinity();
    for (int proj = kProjPolar; proj <= kProjSatellite; ++proj) {
        PlotDomain odd = domain_of(proj, 90, 1000);
        odd.p3 = -90;
        odd.p4 = 90;
        for (const PlotDomain &d : {domain_of(proj, 40, -100), odd}) {
            install(d);
            for (const float value : {nan, inf, -inf, 1e30F, -9999.0F, 1000.0F, 90.0F}) {
                for (const float other : {0.0F, 90.0F, nan, 1e38F}) {
                    const Plane p = tran(value, other);
                    EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y))
                        << proj << " " << value << " " << other;
                    float lat = 0, lon = 0;
                    MAP_untran(lat, lon, value, other);
                    EXPECT_TRUE(std::isfinite(lat) && std::isfinite(lon))
                        << proj << " " << value << " " << other;
                }
            }
        }
    }
}

TEST(Projection, LambertAzimuthalCentreIsAPositionWithoutStatus) {
    install(domain_of(kProjLambertAzim, 45, -100));
    float lat = 0, lon = 0;
    EXPECT_EQ(MAP_untran(lat, lon, 0, 0), 0);
    EXPECT_EQ(lat, 45);
    EXPECT_EQ(lon, -100);
    // Offsets from the centre must work all the same.
    float x = 0, y = 0;
    MAP_offset(x, y, 0, 0, 0, 111.195F);
    EXPECT_NEAR(x, 0, 1e-4);
    EXPECT_NEAR(y, 1.112, 1e-3);
}

TEST(Map, WithoutDomainCoordinatesPassThrough) {
    EXPECT_EQ(MAP_domain(nullptr), -1);
    EXPECT_EQ(MAP_get_proj(), kProjNone);
    const Plane p = tran(40, -100);
    EXPECT_EQ(p.status, 1);
    EXPECT_EQ(p.x, 40);
    EXPECT_EQ(p.y, -100);
    EXPECT_EQ(MAP_in_grid_domain(1e6F, 1e6F), 1);
}

TEST(Map, UnknownCodesLeaveTheOutputsAlone) {
    install(domain_of(kProjSkewT, 40, -100));
    const Plane p = tran(40, -100);
    EXPECT_EQ(p.status, 1);
    EXPECT_EQ(p.x, 7);
    float lat = 3, lon = 3;
    EXPECT_EQ(MAP_untran(lat, lon, 1, 1), 1);
    EXPECT_EQ(lat, 3);
}

TEST(Map, LimitsSurroundTheTransformedCentre) {
    PlotDomain us = domain_of(kProjPolar, kMissingF, kMissingF);
    us.clat = 39;
    us.clon = -97;
    us.dx = us.dy = 2.3F;
    MAP_setup(us);
    EXPECT_EQ(MAP_get_domain().plat, 39);
    float xc = 0, yc = 0;
    EXPECT_EQ(MAP_tran_center(xc, yc), 1);
    const Rect limits = MAP_get_limits();
    EXPECT_NEAR(limits.xmin, xc - 27.6, 1e-4);
    EXPECT_NEAR(limits.xmax, xc + 27.6, 1e-4);
    EXPECT_NEAR(limits.ymin, yc - 18.4, 1e-4);
    EXPECT_NEAR(limits.ymax, yc + 18.4, 1e-4);
    Rect window, viewport;
    ASSERT_EQ(ginq_norm_tran(2, window, viewport), 0);
    EXPECT_EQ(window, limits);

    float x = 0, y = 0, i = 0, j = 0;
    EXPECT_EQ(MAP_grid_tran(x, y, 24, 0), 0);
    EXPECT_NEAR(x, limits.xmax, 1e-4);
    EXPECT_NEAR(y, limits.ymax, 1e-4);
    EXPECT_EQ(MAP_grid_untran(i, j, xc, yc), 0);
    EXPECT_NEAR(i, 12, 1e-4);
    EXPECT_NEAR(j, 8, 1e-4);
    EXPECT_EQ(MAP_grid_tran(x, y, kMissingF, 0), -1);
    EXPECT_EQ(x, kMissingF);
    EXPECT_EQ(MAP_in_grid_domain(limits.xmax + 6.8F, yc), 1);
    EXPECT_EQ(MAP_in_grid_domain(limits.xmax + 7.0F, yc), 0);
}

TEST(Map, DirectionsAtPolesAndOffTheEarth) {
    install(domain_of(kProjPolar, 90, -97));
    const Plane south = tran(40, -97);
    EXPECT_NEAR(MAP_dir_adj(0, south.x, south.y), 0, 1e-4);
    install(domain_of(kProjPolar, -90, 30));
    EXPECT_NEAR(MAP_dir_adj(10, 0, 0), 40, 1e-4); // at the pole itself
    install(domain_of(kProjSatellite, 0, -75));
    const Plane below = tran(0, -75);
    EXPECT_NEAR(MAP_dir_adj(90, below.x, below.y), 90, 0.01);
    for (const int proj : {kProjSatellite, kProjOrtho, kProjLambertAzim}) {
        install(domain_of(proj, 0, -75));
        EXPECT_EQ(MAP_dir_adj(0, 300, 300), kMissingF) << proj;
    }
    install(domain_of(kProjMercator, 0, 0));
    EXPECT_EQ(MAP_dir_adj(33, 5, 5), 33);
}

namespace {

/// All nine map projections on both hemispheres, with what turns their formulas round.
std::vector<PlotDomain> domains_of_the_earth() {
    std::vector<PlotDomain> domains;
    for (const float lat : {41.0F, -33.0F})
        for (int proj = kProjPolar; proj <= kProjSatellite; ++proj)
            domains.push_back(domain_of(proj, proj == kProjSatellite ? 0 : lat, lat > 0 ? -97.5F : 150.0F));
    PlotDomain cone = domain_of(kProjLambert, -27, 134); // southern latitudes, given as such
    cone.p3 = -18;
    cone.p4 = -36;
    domains.push_back(cone);
    cone = domain_of(kProjLambert, 10, -100); // opens to the south although the domain lies in the north
    cone.p3 = -30;
    cone.p4 = -10;
    domains.push_back(cone);
    PlotDomain satellite = domain_of(kProjSatellite, 0, 140);
    satellite.ellipsoid = 1;
    satellite.p4 = 1;
    domains.push_back(satellite);
    domains.push_back(domain_of(kProjGnomonic, -90, 0));
    domains.push_back(domain_of(kProjLambertAzim, 90, 0));
    domains.push_back(domain_of(kProjOrtho, 90, 10));
    return domains;
}

struct Place {
    double lat, lon;
};

/// By spherical trigonometry with an angle at the pole, another way than the program goes.
Place reached(const Place &from, double azimuth, double km) {
    const double arc_angle = km / 6371.22, a = azimuth * kDegree, lat = from.lat * kDegree;
    const double sine =
        std::sin(lat) * std::cos(arc_angle) + std::cos(lat) * std::sin(arc_angle) * std::cos(a);
    const double turn = std::atan2(std::sin(a) * std::sin(arc_angle) * std::cos(lat),
                                   std::cos(arc_angle) - std::sin(lat) * sine);
    return {std::asin(sine) / kDegree, from.lon + turn / kDegree};
}

Plane tran(const Place &place) {
    return tran(static_cast<float>(place.lat), static_cast<float>(place.lon));
}

double turn_between(double a, double b) {
    return std::abs(std::remainder(a - b, 360));
}

} // namespace

TEST(Map, DirectionsAreThoseOfStepsOnTheEarth) {
    constexpr double step_km = 10;
    for (const PlotDomain &d : domains_of_the_earth()) {
        install(d);
        const double reach =
            d.proj == kProjSatellite || d.proj == kProjOrtho || d.proj == kProjGnomonic ? 70 : 150;
        int places = 0;
        for (double lat = -72; lat <= 72; lat += 9) {
            for (double lon = -170; lon < 190; lon += 23) {
                if (arc(lat, lon, d.plat, d.plon) > reach) continue;
                const Place place{lat, lon};
                const Plane here = tran(place);
                ASSERT_EQ(here.status, 1);
                for (const double azimuth : {0.0, 40.0, 90.0, 170.0, 225.0, 300.0}) {
                    const Plane ahead = tran(reached(place, azimuth, step_km)),
                                behind = tran(reached(place, azimuth + 180, step_km));
                    const double x = ahead.x - behind.x, y = ahead.y - behind.y;
                    if (std::abs(x) > 20) continue; // at the seam
                    const double drawn = std::atan2(x, y) / kDegree;
                    const float found = MAP_dir_adj(static_cast<float>(azimuth), here.x, here.y);
                    ASSERT_LT(turn_between(found, drawn), 0.1)
                        << d.proj << " " << d.plat << ": " << lat << " " << lon << " towards " << azimuth;
                    const float back =
                        MAP_dir(here.x, here.y, here.x + static_cast<float>(std::sin(found * kDegree)),
                                here.y + static_cast<float>(std::cos(found * kDegree)));
                    ASSERT_LT(turn_between(back, azimuth), 0.1) << d.proj << " " << lat << " " << lon;
                    ++places;
                }
            }
        }
        EXPECT_GT(places, 300) << d.proj << " " << d.plat;
    }
}

/// As far as the earth is shown, and to the far end of a radar's reach.
TEST(Map, OffsetsKeepTheirDistanceInEveryProjection) {
    for (const PlotDomain &d : domains_of_the_earth()) {
        install(d);
        for (const Place &radar :
             {Place{d.plat * 0.9 + 3, d.plon + 4.0}, Place{d.plat * 0.5 + 9, d.plon - 21.0}}) {
            const Plane here = tran(radar);
            for (const double km : {55.56, 333.36, 460.0}) {
                for (double azimuth = 0; azimuth < 360; azimuth += 7.5) {
                    float x = 0, y = 0, lat = 0, lon = 0;
                    MAP_offset(x, y, here.x, here.y, static_cast<float>(azimuth), static_cast<float>(km));
                    MAP_untran(lat, lon, x, y);
                    ASSERT_NEAR(arc(radar.lat, radar.lon, lat, lon) * kDegree * 6371.22, km, 0.1)
                        << d.proj << " " << d.plat << " towards " << azimuth;
                    const Place end = reached(radar, azimuth, km);
                    ASSERT_LT(arc(end.lat, end.lon, lat, lon) * kDegree * 6371.22, 0.1)
                        << d.proj << " " << d.plat << " towards " << azimuth;
                }
            }
        }
    }
}

TEST(Map, OffsetsAndFactorsAtThePoles) {
    install(domain_of(kProjLatLon, 0, 0));
    float x = 0, y = 0;
    MAP_offset(x, y, 10, 90, 90, 100);
    EXPECT_TRUE(std::isfinite(x) && std::isfinite(y));
    EXPECT_EQ(MAP_factor(40), 1);
    install(domain_of(kProjPolar, 90, 0));
    EXPECT_NEAR(MAP_factor(60), 1, 1e-4);
    EXPECT_TRUE(std::isfinite(MAP_factor(-90)));
}

TEST(Map, ConvertsBetweenDomainsAndKeepsTheCurrentOne) {
    const PlotDomain mercator = domain_of(kProjMercator, 0, -90), polar = domain_of(kProjPolar, 90, -97);
    install(polar);
    const Plane expected = tran(35, -80);
    install(mercator);
    const Plane start = tran(35, -80);
    float x = 0, y = 0;
    EXPECT_EQ(MAP_domain_tran(mercator, polar, x, y, start.x, start.y), 1);
    EXPECT_NEAR(x, expected.x, 1e-4);
    EXPECT_NEAR(y, expected.y, 1e-4);
    EXPECT_EQ(MAP_get_proj(), kProjMercator);
    PlotDomain same = mercator;
    same.plat = kMissingF;
    EXPECT_EQ(MAP_domain_tran(mercator, same, x, y, 1.25F, 2.5F), 1);
    EXPECT_EQ(x, 1.25F);
    EXPECT_EQ(MAP_domain_tran(domain_of(kProjOrtho, 0, 0), polar, x, y, 90, 90), 0);
    EXPECT_EQ(x, kMissingF);
}

TEST(Map, Diagrams) {
    PlotDomain d = domain_of(kProjPixel, kMissingF, kMissingF);
    d.clat = d.clon = 0;
    d.dx = 640;
    d.dy = 480;
    install(d);
    EXPECT_EQ(tran(10, 20).y, -20);
    EXPECT_EQ(MAP_get_limits(), (Rect{0, 640, -480, 0}));
    d.proj = kProjXP; // pressure downwards: 1000 at the bottom
    d.clon = 1000;
    d.nx = 10;
    d.ny = 8;
    d.dx = 100;
    d.dy = 800;
    install(d);
    EXPECT_NEAR(tran(50, 1000).y, -1000, 1e-3);
    EXPECT_NEAR(tran(50, 200).y, MAP_get_limits().ymax, 1e-3);
    EXPECT_NEAR(tran(50, 200).x, 5, 1e-4);
    d.proj = kProjHodo;
    install(d);
    EXPECT_NEAR(tran(90, 30).x, 30, 1e-4);
    float direction = 0, speed = 0;
    MAP_untran(direction, speed, 0, 20);
    EXPECT_NEAR(direction, 0, 1e-4);
    EXPECT_NEAR(speed, 20, 1e-4);
    d.proj = kProjXLogY;
    install(d);
    EXPECT_NEAR(tran(3, 500).y, -std::log(500.0), 1e-4);
    expect_hidden(tran(3, 0));
}

/// The two places of a point on the seam are as far apart as the seam says, at every height of the map.
TEST(Map, TheSeamIsAsWideAsTheWorld) {
    for (const int proj : {kProjLatLon, kProjMercator, kProjMollweide}) {
        PlotDomain d;
        d.proj = proj;
        d.clat = 0;
        d.clon = 0;
        d.plat = d.plon = 0;
        d.dx = d.dy = 1;
        d.nx = d.ny = 401;
        install(d);
        for (const float lat : {-60.0F, -20.0F, 0.0F, 35.0F, 70.0F}) {
            SCOPED_TRACE(testing::Message() << proj << " " << lat);
            const auto at = [lat](float lon) {
                Point place;
                MAP_tran(place.x, place.y, lat, lon);
                return place;
            };
            const Point west = at(-179.999F), east = at(179.999F);
            const auto there = MAP_seam_jump(west, east, 50), back = MAP_seam_jump(east, west, 50);
            ASSERT_TRUE(there && back);
            EXPECT_NEAR(*there, east.x - west.x, 0.02F);
            EXPECT_NEAR(*back, west.x - east.x, 0.02F);
            EXPECT_FALSE(MAP_seam_jump(at(1), at(2), 50));
        }
    }
}

TEST(ProjectionNames, FirstPrefixWins) {
    const struct {
        const char *name;
        int code;
    } cases[] = {{"lambaz", kProjLambert}, {"laz", kProjLambertAzim}, {"lat", kProjLatLon},
                 {"LatLon", kProjLatLon},  {"polar", kProjPolar},     {"PS", kProjPolar},
                 {"hodo", kProjHodo},      {"miss", kProjNone},       {"missing", kProjUnknown},
                 {"", kProjUnknown},       {"l", kProjUnknown},       {"xp", kProjXP},
                 {"therm", kProjSkewT},    {"40", kProjUnknown},      {"gnom", kProjGnomonic}};
    for (const auto &row : cases) EXPECT_EQ(DOM_proj_str(row.name), row.code) << row.name;
    EXPECT_EQ(projection_name(kProjLambertAzim), "lambaz");
    EXPECT_EQ(projection_name(kProjXZ), "xz");
    EXPECT_EQ(projection_name(kProjTeph), "");
}
