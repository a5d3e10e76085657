#pragma once
/// Plane positions computed by the program proj (Debian package proj-bin 9.1) on our sphere: metres / 100000
/// unless the comment says otherwise. The command stands above its rows; it reads "longitude latitude".

#include "plot/domain/plot_domain.h"

struct ProjectionNumber {
    int proj;
    float plat, plon, p3, p4;
    int ellipsoid;
    float lat, lon;
    double x, y;
};

// clang-format off
inline constexpr ProjectionNumber kProjectionNumbers[] = {
    // proj +proj=stere +lat_0=90 +lon_0=-97 +lat_ts=60 +R=6371220
    {kProjPolar, 90.0F, -97.0F, kMissingF, kMissingF, 0, 40.0F, -95.0F, 1.934781, -55.404885},
    {kProjPolar, 90.0F, -97.0F, kMissingF, kMissingF, 0, 90.0F, 10.0F, 0.000000, 0.000000},
    {kProjPolar, 90.0F, -97.0F, kMissingF, kMissingF, 0, 25.5F, -60.0F, 45.144016, -59.908133},
    {kProjPolar, 90.0F, -97.0F, kMissingF, kMissingF, 0, 0.0F, 83.0F, 0.000000, 118.888584},
    {kProjPolar, 90.0F, -97.0F, kMissingF, kMissingF, 0, -70.0F, 150.0F, -620.651008, 263.450723},
    // proj +proj=stere +lat_0=90 +lon_0=20 +lat_ts=75 +R=6371220
    {kProjPolar, 75.0F, 20.0F, 75.0F, kMissingF, 0, 60.0F, 20.0F, 0.000000, -33.561563},
    {kProjPolar, 75.0F, 20.0F, 75.0F, kMissingF, 0, 55.25F, -170.0F, 6.805627, 38.596628},
    // proj +proj=stere +lat_0=-90 +lon_0=-60 +lat_ts=-60 +R=6371220
    {kProjPolar, -90.0F, -60.0F, kMissingF, kMissingF, 0, -35.0F, -60.0F, 0.000000, 61.889479},
    {kProjPolar, -90.0F, -60.0F, kMissingF, kMissingF, 0, -88.0F, 100.0F, 0.709763, -1.950058},
    {kProjPolar, -90.0F, -60.0F, kMissingF, kMissingF, 0, -20.0F, -110.5F, -64.235187, 52.951402},
    {kProjPolar, -90.0F, -60.0F, kMissingF, kMissingF, 0, 10.0F, 30.0F, 141.685897, 0.000000},
    // proj +proj=eqc +lon_0=-95 +R=6371220  (metres to degrees)
    {kProjLatLon, 0.0F, -95.0F, kMissingF, kMissingF, 0, 40.0F, -100.0F, -5.000000, 40.000000},
    {kProjLatLon, 0.0F, -95.0F, kMissingF, kMissingF, 0, -33.0F, 84.5F, 179.500000, -33.000000},
    {kProjLatLon, 0.0F, -95.0F, kMissingF, kMissingF, 0, 10.0F, 90.0F, -175.000000, 10.000000},
    {kProjLatLon, 0.0F, -95.0F, kMissingF, kMissingF, 0, 0.0F, -95.0F, 0.000000, 0.000000},
    // proj +proj=merc +lon_0=-72 +R=6371220
    {kProjMercator, 0.0F, -72.0F, kMissingF, kMissingF, 0, 18.0F, -66.0F, 6.671926, 20.353389},
    {kProjMercator, 0.0F, -72.0F, kMissingF, kMissingF, 0, -45.0F, 107.0F, 199.045792, -56.154250},
    {kProjMercator, 0.0F, -72.0F, kMissingF, kMissingF, 0, 85.0F, -72.0F, 0.000000, 199.502097},
    {kProjMercator, 0.0F, -72.0F, kMissingF, kMissingF, 0, 0.0F, 120.0F, -186.813927, 0.000000},
    // proj +proj=lcc +lat_0=90 +lon_0=-95 +lat_1=30 +lat_2=60 +R=6371220
    {kProjLambert, 35.0F, -95.0F, kMissingF, kMissingF, 0, 35.0F, -95.0F, 0.000000, -71.602668},
    {kProjLambert, 35.0F, -95.0F, kMissingF, kMissingF, 0, 50.0F, -60.0F, 23.463823, -50.215691},
    {kProjLambert, 35.0F, -95.0F, kMissingF, kMissingF, 0, -20.0F, -140.0F, -78.558319, -124.746041},
    {kProjLambert, 35.0F, -95.0F, kMissingF, kMissingF, 0, 20.0F, 85.5F, -69.332792, 55.039729},
    // proj +proj=lcc +lat_0=90 +lon_0=-96 +lat_1=33 +lat_2=45 +R=6371220
    {kProjLambert, 39.0F, -96.0F, 33.0F, 45.0F, 0, 25.0F, -80.0F, 16.418555, -92.288521},
    {kProjLambert, 39.0F, -96.0F, 33.0F, 45.0F, 0, 49.0F, -125.0F, -21.015465, -63.605018},
    {kProjLambert, 39.0F, -96.0F, 33.0F, 45.0F, 0, 39.0F, -96.0F, 0.000000, -78.103118},
    // proj +proj=lcc +lat_0=90 +lon_0=-97.5 +lat_1=38.5 +lat_2=38.5 +R=6371220
    {kProjLambert, 38.5F, -97.5F, 38.5F, 38.5F, 0, 21.0F, -122.0F, -26.266295, -96.332998},
    {kProjLambert, 38.5F, -97.5F, 38.5F, 38.5F, 0, 38.5F, -97.5F, 0.000000, -80.097213},
    {kProjLambert, 38.5F, -97.5F, 38.5F, 38.5F, 0, 47.0F, -61.0F, 27.273334, -65.129437},
    // proj +proj=lcc +lat_0=-90 +lon_0=140 +lat_1=-30 +lat_2=-60 +R=6371220
    {kProjLambert, -45.0F, 140.0F, kMissingF, kMissingF, 0, -45.0F, 140.0F, 0.000000, 60.800550},
    {kProjLambert, -45.0F, 140.0F, kMissingF, kMissingF, 0, -20.0F, 120.0F, -21.882187, 85.776324},
    {kProjLambert, -45.0F, 140.0F, kMissingF, kMissingF, 0, 5.0F, 170.0F, 44.504415, 113.172115},
    // proj +proj=lcc +lat_0=-90 +lon_0=134 +lat_1=-18 +lat_2=-36 +R=6371220
    {kProjLambert, -27.0F, 134.0F, -18.0F, -36.0F, 0, -33.9F, 151.2F, 15.742865, 114.315623},
    {kProjLambert, -27.0F, 134.0F, -18.0F, -36.0F, 0, -12.0F, 131.0F, -3.333204, 139.614852},
    {kProjLambert, -27.0F, 134.0F, -18.0F, -36.0F, 0, -27.0F, 134.0F, 0.000000, 122.990425},
    // proj +proj=lcc +lat_0=-90 +lon_0=-60 +lat_1=-35 +lat_2=-35 +R=6371220
    {kProjLambert, -35.0F, -60.0F, -35.0F, -35.0F, 0, -34.6F, -58.4F, 1.464481, 91.423521},
    {kProjLambert, -35.0F, -60.0F, -35.0F, -35.0F, 0, -50.0F, -72.0F, -8.880976, 73.572345},
    // proj +proj=ortho +lat_0=40 +lon_0=-95 +R=6371220
    {kProjOrtho, 40.0F, -95.0F, kMissingF, kMissingF, 0, 40.0F, -95.0F, 0.000000, 0.000000},
    {kProjOrtho, 40.0F, -95.0F, kMissingF, kMissingF, 0, 0.0F, -60.0F, 36.543817, -33.547072},
    {kProjOrtho, 40.0F, -95.0F, kMissingF, kMissingF, 0, 70.0F, -170.0F, -21.048350, 42.237742},
    {kProjOrtho, 40.0F, -95.0F, kMissingF, kMissingF, 0, -45.0F, -100.0F, -3.926482, -63.359560},
    // proj +proj=gnom +lat_0=40 +lon_0=-95 +R=6371220
    {kProjGnomonic, 40.0F, -95.0F, kMissingF, kMissingF, 0, 40.0F, -95.0F, 0.000000, 0.000000},
    {kProjGnomonic, 40.0F, -95.0F, kMissingF, kMissingF, 0, 20.0F, -70.0F, 29.007906, -20.848689},
    {kProjGnomonic, 40.0F, -95.0F, kMissingF, kMissingF, 0, 60.0F, -150.0F, -33.611844, 39.314868},
    {kProjGnomonic, 40.0F, -95.0F, kMissingF, kMissingF, 0, -30.0F, -95.0F, 0.000000, -175.047831},
    // proj +proj=gnom +lat_0=-90 +lon_0=0 +R=6371220
    {kProjGnomonic, -90.0F, 0.0F, kMissingF, kMissingF, 0, -60.0F, 45.0F, 26.010397, 26.010397},
    {kProjGnomonic, -90.0F, 0.0F, kMissingF, kMissingF, 0, -20.0F, -100.0F, -172.388461, -30.396737},
    // proj +proj=moll +lon_0=-90 +R=6371220  (over the square root of 2: the central circle has the radius of the earth here)
    {kProjMollweide, 0.0F, -90.0F, kMissingF, kMissingF, 0, 0.0F, -90.0F, 0.000000, 0.000000},
    {kProjMollweide, 0.0F, -90.0F, kMissingF, kMissingF, 0, 40.0F, -120.0F, -17.996338, 33.829439},
    {kProjMollweide, 0.0F, -90.0F, kMissingF, kMissingF, 0, -75.0F, 60.0F, 44.934003, -57.726780},
    {kProjMollweide, 0.0F, -90.0F, kMissingF, kMissingF, 0, 88.0F, 0.0F, 7.177710, 63.306594},
    // proj +proj=laea +lat_0=45 +lon_0=-100 +R=6371220
    {kProjLambertAzim, 45.0F, -100.0F, kMissingF, kMissingF, 0, 45.0F, -100.0F, 0.000000, 0.000000},
    {kProjLambertAzim, 45.0F, -100.0F, kMissingF, kMissingF, 0, 30.0F, -60.0F, 37.152081, -7.711860},
    {kProjLambertAzim, 45.0F, -100.0F, kMissingF, kMissingF, 0, -10.0F, -150.0F, -59.055931, -44.651826},
    {kProjLambertAzim, 45.0F, -100.0F, kMissingF, kMissingF, 0, -40.0F, 70.0F, 109.256324, 64.825387},
    // proj +proj=laea +lat_0=90 +lon_0=10 +R=6371220
    {kProjLambertAzim, 90.0F, 10.0F, kMissingF, kMissingF, 0, 60.0F, 60.0F, 25.264040, -21.199046},
    {kProjLambertAzim, 90.0F, 10.0F, kMissingF, kMissingF, 0, -30.0F, -120.0F, -84.535124, 70.933392},
    // proj +proj=laea +lat_0=-90 +lon_0=10 +R=6371220
    {kProjLambertAzim, -90.0F, 10.0F, kMissingF, kMissingF, 0, -60.0F, 60.0F, 25.264040, 21.199046},
    {kProjLambertAzim, -90.0F, 10.0F, kMissingF, kMissingF, 0, 10.0F, -120.0F, -74.775707, -62.744269},
    // proj +proj=geos +h=35789780 +lon_0=-75 +sweep=y +R=6371220  (metres / h: scan angle, times 421.61)
    {kProjSatellite, 0.0F, -75.0F, kMissingF, 1.0F, 0, 0.0F, -75.0F, 0.000000, 0.000000},
    {kProjSatellite, 0.0F, -75.0F, kMissingF, 1.0F, 0, 40.0F, -95.0F, -18.717945, 45.726690},
    {kProjSatellite, 0.0F, -75.0F, kMissingF, 1.0F, 0, -55.0F, -40.0F, 22.541152, -55.770892},
    {kProjSatellite, 0.0F, -75.0F, kMissingF, 1.0F, 0, 20.0F, -140.0F, -57.368088, 22.945129},
    // proj +proj=geos +h=35789780 +lon_0=-75 +sweep=y +R=6371220  (tangent of metres / h, times 421.61)
    {kProjSatellite, 0.0F, -75.0F, kMissingF, kMissingF, 0, 40.0F, -95.0F, -18.730252, 45.906832},
    {kProjSatellite, 0.0F, -75.0F, kMissingF, kMissingF, 0, -30.0F, -20.0F, 48.865936, -34.212392},
    // proj +proj=geos +h=35782863 +lon_0=-135 +sweep=y +a=6378137 +b=6356752  (metres / h: scan angle, times 421.61)
    {kProjSatellite, 0.0F, -135.0F, kMissingF, 1.0F, 1, 45.0F, -120.0F, 13.038100, 49.797273},
    {kProjSatellite, 0.0F, -135.0F, kMissingF, 1.0F, 1, -60.0F, -150.0F, -8.927383, -58.951611},
    {kProjSatellite, 0.0F, -135.0F, kMissingF, 1.0F, 1, 20.5F, -157.0F, -25.745020, 25.476476},
    // proj +proj=geos +h=35782863 +lon_0=-135 +sweep=y +a=6378137 +b=6356752  (tangent of metres / h, times 421.61)
    {kProjSatellite, 0.0F, -135.0F, kMissingF, kMissingF, 1, 45.0F, -120.0F, 13.042258, 50.030138},
    {kProjSatellite, 0.0F, -135.0F, kMissingF, kMissingF, 1, -10.0F, -80.0F, 56.266717, -11.924912},
};
// clang-format on
