#include "samples/mosaic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "lib/system/calendar.h"
#include "lib/text/strings.h"
#include "samples/evening.h"
#include "samples/level3_products.h"
#include "samples/scene.h"

namespace samples {

namespace {

unsigned five_dbz(double dbz) {
    constexpr double kTopLevel = 15;
    return static_cast<unsigned>(std::clamp(std::floor(dbz / 5), 0.0, kTopLevel));
}

std::int64_t time_of(double minutes) {
    return kFirstVolume + static_cast<std::int64_t>(minutes * 60);
}

std::string nowrad_time(double minutes) {
    constexpr std::array<const char *, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::int64_t time = time_of(minutes);
    DateRecord date;
    DATE_get_gmdate(&time, date);
    return format_text("%02d:%02d %02d-%s-%02d", date.hour, date.minute, date.day,
                       months[static_cast<std::size_t>(date.month - 1)], date.year % 100);
}

struct Run {
    unsigned level;
    int column, cells;
};
std::vector<Run> runs_of(const LevelOf &level, const EchoWindow &window, int line, int columns) {
    std::vector<Run> runs;
    const auto add = [&runs](unsigned next, int column, int cells) {
        if (cells < 1) return;
        if (runs.empty() || runs.back().level != next)
            runs.push_back({next, column, cells});
        else
            runs.back().cells += cells;
    };
    const bool within = line >= window.first_line && line < window.end_line;
    const int begin = within ? std::min(window.first_column, columns) : columns;
    const int end = within ? std::min(window.end_column, columns) : columns;
    add(window.outside, 0, begin);
    for (int column = begin; column < end; ++column) add(level(line, column), column, 1);
    add(window.outside, end, columns - end);
    return runs;
}

/// Lines and columns of a grid that lie within six degrees of the radar.
EchoWindow window_around(const Site &site, double top, double left, double dy, double dx, unsigned outside) {
    constexpr double kDegrees = 6;
    const auto index = [](double from, double step) { return std::max(static_cast<int>(from / step), 0); };
    return {index(top - site.lat - kDegrees, dy), index(top - site.lat + kDegrees, dy),
            index(site.lon - kDegrees - left, dx), index(site.lon + kDegrees - left, dx), outside};
}

void low_first(ByteWriter &out, int value) {
    out.u8(static_cast<unsigned>(value)).u8(static_cast<unsigned>(value) >> 8);
}

void nowrad_run(ByteWriter &out, const Run &run) {
    constexpr unsigned kWordRun = 0xD0, kByteRun = 0xE0;
    constexpr int kMostInByte = 256, kMostInPacket = 13, kMostInWord = 65536;
    for (int left = run.cells, cells = 0; left > 0; left -= cells) {
        cells = std::min(left, kMostInWord);
        if (cells <= kMostInPacket) {
            out.u8(static_cast<unsigned>(cells - 1) << 4 | run.level);
        } else if (cells <= kMostInByte) {
            out.u8(kByteRun | run.level).u8(static_cast<unsigned>(cells - 1));
        } else {
            out.u8(kWordRun | run.level);
            low_first(out, cells - 1);
        }
    }
}

/// Lambert conformal conic, on the sphere (Snyder, chapter 15), kilometres.
struct Lambert {
    double lat1, lat2, lon0, n, f;
    Lambert(double first, double second, double lon)
        : lat1(first * kRadian), lat2(second * kRadian), lon0(lon) {
        const auto cone = [](double lat) { return std::tan(std::numbers::pi / 4 + lat / 2); };
        n = std::log(std::cos(lat1) / std::cos(lat2)) / std::log(cone(lat2) / cone(lat1));
        f = std::cos(lat1) * std::pow(cone(lat1), n) / n;
    }
    void forward(double lat, double lon, double &x, double &y) const {
        const double rho = kEarthKm * f / std::pow(std::tan(std::numbers::pi / 4 + lat * kRadian / 2), n);
        x = rho * std::sin(n * (lon - lon0) * kRadian);
        y = -rho * std::cos(n * (lon - lon0) * kRadian);
    }
    void inverse(double x, double y, double &lat, double &lon) const {
        lat = (2 * std::atan(std::pow(kEarthKm * f / std::hypot(x, y), 1 / n)) - std::numbers::pi / 2) /
              kRadian;
        lon = lon0 + std::atan2(x, -y) / n / kRadian;
    }
};

} // namespace

Bytes nowrad_file(const NowradFile &file) {
    constexpr unsigned kMark = 0xF0, kText = 0x09, kSize = 0x0A, kDescription = 0x03, kMap = 0x0B,
                       kLine = 0x0C, kEnd = 0x02;
    constexpr std::string_view kTextBlock = "composite of the simulated evening";
    constexpr std::size_t kDescriptionBytes = 80;
    ByteWriter out;
    const auto marker = [&out](unsigned code) -> ByteWriter & { return out.u8(0).u8(kMark).u8(code); };
    marker(kText).u8(static_cast<unsigned>(kTextBlock.size())).text(kTextBlock).u8(0);
    marker(kSize).text(format_text("%d %d", file.lines, file.columns));
    std::string description = file.description;
    description.resize(kDescriptionBytes, ' ');
    marker(kDescription).text(description);
    marker(kMap).u8(static_cast<unsigned char>(file.map));
    std::string numbers;
    for (const double number : file.numbers)
        numbers += format_text("%s%.9f", numbers.empty() ? "" : " ", number);
    out.text(numbers);
    for (int line = 0; line < file.lines; ++line) {
        marker(kLine);
        low_first(out, line + 1);
        for (const Run &run : runs_of(file.level, file.window, line, file.columns)) nowrad_run(out, run);
    }
    marker(kEnd);
    return out.take();
}

Bytes kavrad_file(const KavradFile &file) {
    constexpr std::size_t kHeaderBytes = 2048, kTypeAt = 2010, kDateAt = 2012, kSizeAt = 2034;
    constexpr unsigned kHalf = 10, kToLineEnd = 0x23, kByteRun = 0x24, kDataEnd = 0x21;
    constexpr int kMostPlain = 0x20, kMostInByte = 255, kMostWithLevel = 3;
    const int columns = file.half ? 2560 : 5120, lines = file.half ? 2880 : 5760;
    DateRecord date;
    DATE_get_gmdate(&file.time, date);
    std::string header(kHeaderBytes, ' ');
    header[kTypeAt] = file.composite ? 'C' : 'S';
    header.replace(kDateAt, 12,
                   format_text("%02d%02d%02d%02d%02d%02d", date.hour, date.minute, date.second, date.day,
                               date.month, date.year % 100));
    header[kSizeAt] = file.half ? static_cast<char>(kHalf) : ' ';
    ByteWriter out;
    out.text(header);
    unsigned current = 0x40; // no level
    for (int line = 0; line < lines; ++line) {
        // A line ends with its last column but one, or where a run goes on to its end.
        for (const Run &run : runs_of(file.level, file.window, line, columns - 1)) {
            int left = run.cells;
            if (run.level != current || run.column == 0) {
                const int now = std::min(left, kMostWithLevel);
                out.u8(static_cast<unsigned>(now) << 6 | run.level);
                left -= now;
                current = run.level;
            }
            if (left > 0 && run.column + run.cells == columns - 1) {
                out.u8(kToLineEnd);
                left = 0;
            }
            for (int now = 0; left > 0; left -= now) {
                now = std::min(left, kMostInByte);
                if (now > kMostPlain) out.u8(kByteRun);
                out.u8(static_cast<unsigned>(now));
            }
        }
    }
    return out.u8(kDataEnd).take();
}

NowradFile nowrad_latlon(double minutes) {
    constexpr int kLines = 1837, kColumns = 3661;
    constexpr double kTop = 53, kLon = -96, kDy = 33.0 / kLines, kDx = 62.0 / kColumns;
    NowradFile file{'C', kLines, kColumns, "NOWrad Master       " + nowrad_time(minutes), {}, {}};
    file.numbers = {kLon * kRadian, kTop * kRadian, 0, kDy * kRadian, kDx * kRadian};
    file.level = [evening = Evening(minutes)](int line, int column) {
        const double lat = kTop - (line + 0.5) * kDy,
                     lon = kLon + (column + 0.5 - (kColumns - 1) / 2.0) * kDx;
        return five_dbz(evening.dbz(lat, lon));
    };
    file.window = window_around(Site(), kTop, kLon - (kColumns - 1) / 2.0 * kDx, kDy, kDx, 0);
    return file;
}

NowradFile nowrad_lambert(double minutes) {
    constexpr int kLines = 480, kColumns = 700;
    constexpr double kFirst = 33, kSecond = 45, kLat = 39, kLon = -96;
    // The grid that belongs to the map, whatever the file says.
    constexpr double kCentreLat = 38.69, kCentreLon = -96.03, kDxKm = 7.22, kDyKm = 8.59;
    NowradFile file{'L', kLines, kColumns, "USRAD High             " + nowrad_time(minutes), {}, {}};
    file.numbers = {kSecond * kRadian,    kFirst * kRadian,     kLat * kRadian, kLon * kRadian,
                    kCentreLat * kRadian, kCentreLon * kRadian, kDxKm,          kDyKm};
    const Lambert map(kFirst, kSecond, kLon);
    double x0 = 0, y0 = 0;
    map.forward(kCentreLat, kCentreLon, x0, y0);
    file.level = [=, evening = Evening(minutes)](int line, int column) {
        double lat = 0, lon = 0;
        map.inverse(x0 + (column + 0.5 - (kColumns - 1) / 2.0) * kDxKm,
                    y0 - (line + 0.5 - (kLines - 1) / 2.0) * kDyKm, lat, lon);
        return evening.near(lat, lon) ? five_dbz(evening.dbz(lat, lon)) : 0U;
    };
    return file;
}

KavradFile kavrad(double minutes, bool composite, bool half) {
    KavradFile file{composite, half, time_of(minutes), {}};
    const double dx = half ? 0.0257812 : 0.0128906, dy = half ? 0.0171874 : 0.0085937;
    const double top = 39.0 + 0.5 * (half ? 2879 : 5759) * dy, left = -96.0 - 0.5 * (half ? 2559 : 5119) * dx;
    const unsigned none = composite ? 0 : kKavradPlainNoEcho;
    file.level = [=, evening = Evening(minutes)](int line, int column) {
        // The first line lies one line below the upper edge of the grid.
        const double lat = top - (line + 1.5) * dy, lon = left + (column + 0.5) * dx;
        const double dbz = evening.dbz(lat, lon);
        if (composite) return summary_level(dbz);
        const unsigned level = five_dbz(dbz);
        return level > 0 ? level : none;
    };
    file.window = window_around(Site(), top - 1.5 * dy, left, dy, dx, none);
    return file;
}

} // namespace samples
