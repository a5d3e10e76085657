#include "samples/level3_products.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "lib/text/strings.h"

namespace samples {

namespace {

using Grid = std::vector<std::vector<std::uint8_t>>;
constexpr double kRadian = std::numbers::pi / 180.0;
constexpr unsigned kBelowThreshold = 0x8002; ///< threshold word of level 0
constexpr double kNoise = 4.0;               ///< dBZ below which nothing is detected

Level3Product product_of(int code, double minutes, const char *awips) {
    const Site site;
    Level3Product product;
    product.code = code;
    product.source = site.source;
    product.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60);
    product.lat_millideg = static_cast<int>(std::lround(site.lat * 1000));
    product.lon_millideg = static_cast<int>(std::lround(site.lon * 1000));
    product.height_ft = site.height_ft;
    product.volume = 1 + static_cast<int>(minutes) / kVolumeMinutes;
    product.awips = std::string(awips) + &site.id[1];
    product.wmo_heading = std::string("SDUS53 ") + site.id;
    return product;
}

/// Levels of radials from a function of place.
RadialData radials(int count, int bins, double bin_km,
                   const std::function<std::uint8_t(double, double)> &level) {
    RadialData data;
    data.delta_deg = 360.0 / count;
    data.radials.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double azimuth = (i + 0.5) * data.delta_deg * kRadian;
        auto &out = data.radials[static_cast<std::size_t>(i)];
        for (int k = 0; k < bins; ++k) {
            const double range = (k + 0.5) * bin_km;
            out.push_back(level(range * std::sin(azimuth), range * std::cos(azimuth)));
        }
    }
    return data;
}

/// A square raster around the radar; boxes beyond `range_km` have level 0.
Grid raster(int size, double box_km, double range_km,
            const std::function<std::uint8_t(double, double)> &level) {
    Grid rows(static_cast<std::size_t>(size));
    for (int r = 0; r < size; ++r) {
        for (int c = 0; c < size; ++c) {
            const double x = (c - (size - 1) / 2.0) * box_km;
            const double y = ((size - 1) / 2.0 - r) * box_km;
            rows[static_cast<std::size_t>(r)].push_back(std::hypot(x, y) > range_km ? std::uint8_t{0}
                                                                                    : level(x, y));
        }
    }
    return rows;
}

/// Highest of sixteen levels whose value is not above `value`.
std::uint8_t level_of(double value, const std::array<double, 16> &values) {
    std::uint8_t level = 0;
    for (std::uint8_t i = 1; i < 16; ++i)
        if (value >= values[i]) level = i;
    return level;
}

/// dBZ of the sixteen precipitation-mode levels; level 0 is below threshold.
constexpr std::array<double, 16> kReflectivityLevels{-99, 5,  10, 15, 20, 25, 30, 35,
                                                     40,  45, 50, 55, 60, 65, 70, 75};
constexpr std::array<double, 16> kTopLevels{-99, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75};
constexpr std::array<double, 16> kLiquidLevels{-99, 1, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70};

std::array<unsigned, 16> plain_words(const std::array<double, 16> &values) {
    std::array<unsigned, 16> words{};
    words[0] = kBelowThreshold;
    for (std::size_t i = 1; i < 16; ++i) words[i] = static_cast<unsigned>(values[i]);
    return words;
}

int peak(const Scene &scene) {
    double best = 0;
    for (const Cell &cell : scene.cells()) best = std::max(best, cell.peak_dbz);
    return static_cast<int>(best);
}

std::uint8_t digital_level(double value, double minimum, double step) {
    return static_cast<std::uint8_t>(std::clamp(std::lround((value - minimum) / step) + 2, 2L, 255L));
}

void set_digital_thresholds(Level3Product &product, int minimum_tenths, int step_tenths, unsigned levels) {
    product.thresholds[0] = static_cast<unsigned>(minimum_tenths) & 0xFFFFU;
    product.thresholds[1] = static_cast<unsigned>(step_tenths);
    product.thresholds[2] = levels;
}

Level3Product digital_reflectivity_of(int code, double minutes, int count, int bins, double bin_km,
                                      const char *awips) {
    const Scene scene(minutes);
    Level3Product product = product_of(code, minutes, awips);
    set_digital_thresholds(product, -320, 5, 254);
    product.elevation_number = 1;
    product.p[3] = 5;
    product.p[4] = peak(scene);
    product.packets.push_back(digital_radial_packet(radials(count, bins, bin_km, [&](double x, double y) {
        const double z = scene.dbz(x, y);
        return z < kNoise ? std::uint8_t{0} : digital_level(z, -32.0, 0.5);
    })));
    return product;
}

Level3Product composite_of(int code, double minutes, const char *awips, int size, double box_km,
                           double range_km) {
    const Scene scene(minutes);
    Level3Product product = product_of(code, minutes, awips);
    product.thresholds = plain_words(kReflectivityLevels);
    product.p[4] = peak(scene);
    product.packets.push_back(raster_packet(raster(size, box_km, range_km, [&](double x, double y) {
        return level_of(scene.dbz(x, y) + 3, kReflectivityLevels);
    })));
    return product;
}

/// Pages of at most four storms under the heading, framed by lines as the products do.
std::vector<std::vector<Bytes>> table_pages(const std::vector<std::string> &lines) {
    constexpr std::size_t kStormsPerPage = 4;
    std::vector<std::vector<Bytes>> pages;
    for (std::size_t first = 1; first < lines.size(); first += kStormsPerPage) {
        std::vector<Bytes> page{text_packet(1, 0, 1, lines.front())};
        int j = 11;
        for (std::size_t i = first; i < std::min(lines.size(), first + kStormsPerPage); ++i, j += 10)
            page.push_back(text_packet(1, 0, j, lines[i]));
        page.push_back(vector_packet(6, {{4, 0, 501, 0}, {4, 10, 501, 10}, {4, 50, 501, 50}}));
        pages.push_back(page);
    }
    return pages;
}

double azimuth_of(const Cell &cell) {
    return std::fmod(std::atan2(cell.x_km, cell.y_km) / kRadian + 360.0, 360.0);
}
double range_nm(const Cell &cell) {
    return std::hypot(cell.x_km, cell.y_km) / 1.852;
}

} // namespace

Level3Product reflectivity(double minutes) {
    const Scene scene(minutes);
    Level3Product product = product_of(19, minutes, "N0R");
    product.thresholds = plain_words(kReflectivityLevels);
    product.elevation_number = 1;
    product.p[3] = 5;
    product.p[4] = peak(scene);
    product.packets.push_back(radial_packet(radials(
        360, 230, 1.0, [&](double x, double y) { return level_of(scene.dbz(x, y), kReflectivityLevels); })));
    return product;
}

Level3Product velocity(double minutes) {
    constexpr std::array<double, 16> kLevels{-999, -64, -50, -36, -26, -20, -10, -1,
                                             0,    10,  20,  26,  36,  50,  64,  999};
    constexpr unsigned kNegative = 0x100;
    constexpr unsigned kRangeFolded = 0x8003;
    const Scene scene(minutes);
    Level3Product product = product_of(27, minutes, "N0V");
    product.thresholds[0] = kBelowThreshold;
    for (std::size_t i = 1; i < 15; ++i)
        product.thresholds[i] =
            static_cast<unsigned>(std::abs(kLevels[i])) | (kLevels[i] < 0 ? kNegative : 0U);
    product.thresholds[15] = kRangeFolded;
    product.elevation_number = 1;
    product.p[3] = 5;
    product.p[4] = -60;
    product.p[5] = 55;
    product.packets.push_back(radial_packet(radials(360, 230, 1.0, [&](double x, double y) {
        if (scene.dbz(x, y) < kNoise) return std::uint8_t{0};
        return std::max(std::uint8_t{1}, level_of(scene.radial_velocity(x, y) * 1.944, kLevels));
    })));
    return product;
}

Level3Product digital_reflectivity(double minutes) {
    return digital_reflectivity_of(94, minutes, 360, 460, 1.0, "N0Q");
}

Level3Product super_reflectivity(double minutes) {
    return digital_reflectivity_of(153, minutes, 720, 1840, 0.25, "N0B");
}

Level3Product digital_velocity(double minutes) {
    const Scene scene(minutes);
    Level3Product product = product_of(99, minutes, "N0U");
    set_digital_thresholds(product, -635, 5, 254);
    product.elevation_number = 1;
    product.p[3] = 5;
    product.p[4] = -60;
    product.p[5] = 55;
    product.packets.push_back(digital_radial_packet(radials(360, 1199, 0.25, [&](double x, double y) {
        return scene.dbz(x, y) < kNoise ? std::uint8_t{0}
                                        : digital_level(scene.radial_velocity(x, y), -63.5, 0.5);
    })));
    return product;
}

Level3Product composite(double minutes) {
    Level3Product product = composite_of(37, minutes, "NCR", 464, 1.0, 230);
    product.pages = table_pages(storm_table(Scene(minutes)));
    return product;
}

Level3Product hail_composite(double minutes) {
    Level3Product product = composite_of(36, minutes, "NCZ", 232, 4.0, 460);
    product.pages = table_pages(hail_table(Scene(minutes)));
    return product;
}

Level3Product echo_tops(double minutes) {
    const Scene scene(minutes);
    Level3Product product = product_of(41, minutes, "NET");
    product.thresholds = plain_words(kTopLevels);
    product.p[4] = 48;
    product.packets.push_back(raster_packet(raster(
        116, 4.0, 230, [&](double x, double y) { return level_of(scene.top_kft(x, y), kTopLevels); })));
    return product;
}

Level3Product liquid(double minutes) {
    const Scene scene(minutes);
    Level3Product product = product_of(57, minutes, "NVL");
    product.thresholds = plain_words(kLiquidLevels);
    product.p[4] = 60;
    product.packets.push_back(
        raster_packet(raster(116, 4.0, 230,
                             [&](double x, double y) { return level_of(scene.liquid(x, y), kLiquidLevels); }),
                      0xBA0F));
    return product;
}

Level3Product hour_rain(double minutes) {
    constexpr std::array<double, 16> kTenths{-99, 0.5,  1,  2.5, 5,  7.5, 10, 12.5,
                                             15,  17.5, 20, 25,  30, 40,  60, 80};
    constexpr unsigned kTwentieths = 0x2000;
    Level3Product product = product_of(78, minutes, "N1P");
    product.thresholds[0] = kBelowThreshold;
    for (std::size_t i = 1; i < 16; ++i)
        product.thresholds[i] = kTwentieths | static_cast<unsigned>(kTenths[i] * 2);
    const Scene scene(minutes);
    product.p[4] = 21;
    product.packets.push_back(radial_packet(radials(360, 115, 2.0, [&](double x, double y) {
        return level_of(scene.hour_rain_inch(x, y) * 10, kTenths);
    })));
    return product;
}

Level3Product precipitation_array(double minutes) {
    constexpr int kBoxes = 131;
    constexpr std::uint8_t kNoData = 255;
    const Scene scene(minutes);
    Level3Product product = product_of(81, minutes, "DPA");
    // dBA of hundredths of an inch: minimum -6, step 0.125.
    product.thresholds[0] = 0xFFC4;
    product.thresholds[1] = 125;
    product.thresholds[2] = 256;
    product.p[4] = 21;
    Grid rows = raster(kBoxes, 4.0, 1000, [&](double x, double y) {
        if (std::hypot(x, y) > 230) return kNoData;
        const double hundredths = scene.hour_rain_inch(x, y) * 100;
        if (hundredths < 0.3) return std::uint8_t{0};
        return static_cast<std::uint8_t>(
            std::clamp(std::lround((10 * std::log10(hundredths) + 6) / 0.125), 1L, 254L));
    });
    product.packets.push_back(precipitation_packet(rows));
    return product;
}

Level3Product wind_profile(double minutes) {
    constexpr int kColumns = 11;
    constexpr int kLowest = 1;
    constexpr int kHighest = 30;
    Level3Product product = product_of(48, minutes, "NVW");
    for (unsigned i = 1; i < 6; ++i) product.thresholds[i] = (i - 1) * 4;
    product.thresholds[0] = 0x8000;
    const auto column_i = [](int column) { return 76 + column * 38; };
    const auto height_j = [](int kft) { return 466 - kft * 14; };
    std::vector<Line> ticks{{53, 24, 53, 466}, {53, 466, 510, 466}};
    std::vector<Bytes> texts{text_packet(6, 2, 2, "ALT KFT"), text_packet(6, 11, 490, "TIME")};
    std::vector<Barb> barbs;
    for (int kft = kLowest; kft <= kHighest; ++kft) {
        ticks.push_back({53, height_j(kft), 57, height_j(kft)});
        if (kft % 2 == 0) texts.push_back(text_packet(6, 31, height_j(kft) - 4, format_text("%2d", kft)));
    }
    for (int column = 0; column < kColumns; ++column) {
        const double then = minutes - (kColumns - 1 - column) * kVolumeMinutes;
        const std::int64_t time = kFirstVolume + static_cast<std::int64_t>(then * 60);
        const int minute_of_day = static_cast<int>(time / 60 % 1440);
        texts.push_back(text_packet(6, column_i(column) - 10, 490,
                                    format_text("%02d%02d", minute_of_day / 60, minute_of_day % 60)));
        for (int kft = kLowest; kft <= kHighest; ++kft) {
            const Wind wind = environment_wind(kft, then);
            const int quality = 1 + (kft * 7 + column * 3) % 5;
            barbs.push_back({quality, column_i(column), height_j(kft),
                             static_cast<int>(std::lround(wind.from_deg)),
                             static_cast<int>(std::lround(wind.knots))});
        }
    }
    product.p[4] = 62;
    product.packets.push_back(vector_packet(6, ticks));
    product.packets.insert(product.packets.end(), texts.begin(), texts.end());
    product.packets.push_back(wind_packet(barbs));
    return product;
}

Level3Product mosaic(double minutes) {
    constexpr int kColumns = 400;
    constexpr int kRows = 260;
    constexpr double kBoxKm = 4.0;
    constexpr int kNationalSource = 10000;
    const Scene scene(minutes);
    Level3Product product = product_of(103, minutes, "NCM");
    product.source = kNationalSource;
    product.thresholds = plain_words(kReflectivityLevels);
    product.p[4] = peak(scene);
    product.p[10] = kColumns;
    Grid rows(kRows);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c)
            rows[static_cast<std::size_t>(r)].push_back(
                level_of(scene.dbz((c - (kColumns - 1) / 2.0) * kBoxKm, ((kRows - 1) / 2.0 - r) * kBoxKm),
                         kReflectivityLevels));
    product.packets.push_back(raster_packet(rows));
    return product;
}

std::vector<std::string> storm_table(const Scene &scene) {
    std::vector<std::string> lines{
        " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT "};
    for (const Cell &cell : scene.cells()) {
        const bool hail = cell.peak_dbz > 57;
        lines.push_back(format_text(
            "    %2s  %3.0f/%3.0f %-4s %4s  %3d/%3d/%5s   %3.0f %3.0f %4.1f %5.1f  %3.0f/%3.0f  ",
            cell.id.c_str(), azimuth_of(cell), range_nm(cell),
            cell.rotating && cell.peak_dbz > 61 ? "TVS" : "NONE", cell.rotating ? "7" : "NONE", hail ? 60 : 0,
            hail ? 100 : 20, hail ? " 1.50" : "<0.50", cell.peak_dbz - 12, cell.peak_dbz, cell.top_kft / 4,
            cell.top_kft, Scene::kMotionFromDeg, Scene::kMotionKnots));
    }
    return lines;
}

std::vector<std::string> hail_table(const Scene &scene) {
    std::vector<std::string> lines{" STM ID  AZ  RAN  TVS  MESO HAIL DBZM HT  VLOW  TOP  DIR SPD"};
    for (const Cell &cell : scene.cells())
        lines.push_back(format_text(
            " %-3s %4.0f %4.0f  %-4s %-4s %-4s %4.0f %4.1f %5.1f >%5.1f %4.0f %3.0f", cell.id.c_str(),
            azimuth_of(cell), range_nm(cell), cell.rotating && cell.peak_dbz > 61 ? "YES" : "NO",
            cell.rotating ? "YES" : "NO", cell.peak_dbz > 57 ? "PRO" : "NONE", cell.peak_dbz,
            cell.top_kft / 4, 1.5, cell.top_kft, Scene::kMotionFromDeg, Scene::kMotionKnots));
    return lines;
}

std::vector<NamedProduct> all_products(double minutes) {
    return {{"N0R", reflectivity(minutes), Framing::wmo, Compression::none},
            {"N0V", velocity(minutes), Framing::none, Compression::none},
            {"N0Q", digital_reflectivity(minutes), Framing::wmo, Compression::bzip2},
            {"N0U", digital_velocity(minutes), Framing::wmo, Compression::none},
            {"N0B", super_reflectivity(minutes), Framing::noaaport, Compression::bzip2},
            {"NCR", composite(minutes), Framing::noaaport, Compression::zlib},
            {"NCZ", hail_composite(minutes), Framing::wmo, Compression::none},
            {"NET", echo_tops(minutes), Framing::wmo, Compression::none},
            {"NVL", liquid(minutes), Framing::noaaport, Compression::zlib},
            {"N1P", hour_rain(minutes), Framing::wmo, Compression::none},
            {"DPA", precipitation_array(minutes), Framing::wmo, Compression::none},
            {"NVW", wind_profile(minutes), Framing::wmo, Compression::none},
            {"NCM", mosaic(minutes), Framing::none, Compression::none}};
}

} // namespace samples
