#include "samples/summary.h"

#include <algorithm>
#include <cmath>

#include "lib/system/calendar.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "samples/evening.h"
#include "samples/level3_products.h"

namespace samples {

namespace {

constexpr double kKmPerNm = 1.852, kKmPerKnot = 1.852;

DateRecord date_of(std::int64_t time) {
    DateRecord date;
    DATE_get_gmdate(&time, date);
    return date;
}

std::string label_of(std::int64_t time) {
    return DATE_make_label(date_of(time));
}

std::string heading_time(std::int64_t time) {
    const DateRecord date = date_of(time);
    return format_text("%02d%02d%02d", date.day, date.hour, date.minute);
}

/// The lines before the sections.
std::string head_of(std::int64_t time, SummaryForm form) {
    switch (form) {
    case SummaryForm::text: return label_of(time) + "\n";
    case SummaryForm::marked: return "*\n";
    case SummaryForm::package: return "VYXRAD\n" + label_of(time) + "\n";
    case SummaryForm::header_w: return "WRADAR summary\n" + label_of(time) + "\n";
    }
    return {};
}

Bytes bytes_of(const std::string &text) {
    return ByteWriter().text(text).take();
}

/// A national grid in the polar plane by its middle and spacing (km).
struct NationalGrid {
    double lat, lon, spacing;
    int columns, rows;

    void place(int column, int row, double &at_lat, double &at_lon) const {
        double x = 0, y = 0;
        Polar::forward(lat, lon, x, y);
        Polar::inverse(x + (column - (columns - 1) / 2.0) * spacing, y - (row - (rows - 1) / 2.0) * spacing,
                       at_lat, at_lon);
    }
    [[nodiscard]] SummaryLevels levels(const Evening &evening) const {
        SummaryLevels grid{columns, rows, {}};
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column) {
                double at_lat = 0, at_lon = 0;
                place(column, row, at_lat, at_lon);
                const bool near = evening.near(at_lat, at_lon);
                grid.levels.push_back(near ? summary_level(evening.dbz(at_lat, at_lon)) : 0);
            }
        return grid;
    }
};
constexpr NationalGrid kDigitizedGrid{40.02738, -96.10690, 47.596, 120, 90};
constexpr NationalGrid kCodedGrid{39.71121, -97.09452, 11.899, 449, 353};

struct Station {
    const char *id;
    double lat, lon;
    const char *status; ///< of one that sees no echo
};
constexpr std::array kStations{
    Station{"LSX", 38.6987, -90.6829, "NE"}, Station{"SGF", 37.2352, -93.4004, "NE"},
    Station{"EAX", 38.8103, -94.2645, "NE"}, Station{"ILX", 40.1505, -89.3368, "NE"},
    Station{"DVN", 41.6116, -90.5810, "NE"}, Station{"PAH", 37.0683, -88.7719, "NE"},
    Station{"MPX", 44.8488, -93.5655, "NE"}, Station{"DMX", 41.7312, -93.7229, "OM"},
    Station{"LZK", 34.8365, -92.2622, "NA"}, Station{"IND", 39.7075, -86.2804, "NE"},
};

/// What a station sees of the evening.
StationReport report_of(const Station &station, const Evening &evening) {
    constexpr double kReachKm = 230;
    StationReport report{.id = station.id, .lat = station.lat, .lon = station.lon};
    const Cell *highest = nullptr;
    double peak = 0, cells = 0;
    for (const Cell &cell : evening.scene().cells()) {
        double lat = 0, lon = 0;
        evening.place(cell, lat, lon);
        if (earth_way(station.lat, station.lon, lat, lon).km > kReachKm) continue;
        cells += 1;
        peak = std::max(peak, cell.peak_dbz);
        if (highest == nullptr || cell.top_kft > highest->top_kft) highest = &cell;
    }
    if (highest == nullptr || std::string(station.status) != "NE") {
        report.configuration = station.status;
        return report;
    }
    double lat = 0, lon = 0;
    evening.place(*highest, lat, lon);
    const EarthWay way = earth_way(station.lat, station.lon, lat, lon);
    report.configuration = cells > 3 ? "LINE" : cells > 1 ? "AREA" : "CELL";
    report.precipitation = peak > 50 ? "TRW" : "RW";
    report.sign = peak > 61 ? "X" : peak > 57 ? "++" : peak > 53 ? "+" : "";
    report.coverage = static_cast<int>(cells);
    report.trend = peak > 60 ? "+" : "NC";
    report.top = static_cast<int>(highest->top_kft * 10);
    report.top_azimuth = static_cast<int>(std::lround(way.azimuth)) % 360;
    report.top_range = static_cast<int>(std::lround(way.km / kKmPerNm));
    report.movement = report.configuration.front();
    report.direction = static_cast<int>(std::lround(Scene::kMotionFromDeg / 10));
    report.speed = static_cast<int>(Scene::kMotionKnots);
    return report;
}

std::string line_of(const StationReport &r) {
    if (r.precipitation.empty())
        return format_text("%-5s%-5s* * * * * *\n", r.id.c_str(), r.configuration.c_str());
    const std::string top = r.top > 0 ? format_text("%d,%03d%03d", r.top, r.top_azimuth, r.top_range) : "*";
    return format_text("%-5s%-5s%s%s %s %s %c%02d%02d * *\n", r.id.c_str(), r.configuration.c_str(),
                       r.precipitation.c_str(), r.sign.c_str(), r.trend.c_str(), top.c_str(), r.movement,
                       r.direction, r.speed);
}

} // namespace

Bytes digitized_text(const DigitizedSummary &summary, SummaryForm form) {
    constexpr int kFirstRow = 20, kFirstColumn = 20, kColumns = 80;
    std::string text = head_of(summary.time, form);
    text += "SDUS00 KWBC " + heading_time(summary.time) + "\n";
    text += format_text("+%d %d\n", kFirstRow, kFirstColumn);
    for (int row = kFirstRow + 1; row < summary.grid.rows; ++row) {
        for (int column = kFirstColumn; column < kFirstColumn + kColumns; ++column)
            text += static_cast<char>('0' + summary.grid.at(column, row));
        text += '\n';
    }
    text += "+\nSDXX STATION CONFIG PREC TREND TOPS MOVEMENT\n";
    for (const StationReport &report : summary.reports) text += line_of(report);
    return bytes_of(text);
}

namespace {

using Type = NetcdfVariable::Type;

NetcdfVariable grid_variable(const char *name, const SummaryLevels &grid) {
    NetcdfVariable variable{name, Type::byte, {"mdr_x", "mdr_y"}, {}};
    for (int column = 0; column < grid.columns; ++column)
        for (int row = 0; row < grid.rows; ++row) variable.values.push_back(grid.at(column, row));
    return variable;
}

/// A number, or a text, of each report.
template <typename Take> std::vector<double> each(const std::vector<StationReport> &reports, Take take) {
    std::vector<double> values;
    for (const StationReport &report : reports) values.push_back(static_cast<double>(take(report)));
    return values;
}
template <typename Take>
std::vector<double> texts(const std::vector<StationReport> &reports, std::size_t length, Take take) {
    std::vector<std::string> words;
    for (const StationReport &report : reports) words.push_back(take(report));
    return netcdf_texts(words, length);
}

constexpr double kMissingNumber = -9999;

double given(int value) {
    return value > 0 ? value : kMissingNumber;
}

} // namespace

NetcdfDescription digitized_stations(const DigitizedSummary &s) {
    constexpr std::size_t kString = 16, kMoves = 3;
    NetcdfDescription nc;
    nc.dimensions = {{"station", s.reports.size()},
                     {"mdr_x", static_cast<std::size_t>(s.grid.columns)},
                     {"mdr_y", static_cast<std::size_t>(s.grid.rows)},
                     {"string_len", kString},
                     {"reports", kMoves}};
    const std::vector<std::string> words{"station", "string_len"}, moves{"station", "reports"},
        one{"station"};
    const auto text = [&](auto take) { return texts(s.reports, kString, take); };
    const auto number = [&](auto take) { return each(s.reports, take); };
    std::vector<double> types, directions, speeds;
    for (const StationReport &r : s.reports)
        for (std::size_t k = 0; k < kMoves; ++k) {
            const bool moves_here = k == 0 && r.speed > 0;
            types.push_back(moves_here ? r.movement : '*');
            directions.push_back(moves_here ? r.direction * 10 : kMissingNumber);
            speeds.push_back(moves_here ? r.speed : kMissingNumber);
        }
    const auto missing = [](const StationReport &) { return kMissingNumber; };
    nc.variables = {
        {"id", Type::text, words, text([](const auto &r) { return r.id; })},
        {"region", Type::text, words, text([](const auto &) { return std::string("C"); })},
        {"mdr_x", Type::real, one, number(missing)},
        {"mdr_y", Type::real, one, number(missing)},
        {"type", Type::text, words, text([](const auto &) { return std::string("RAREP"); })},
        grid_variable("summary", s.grid),
        {"config", Type::text, words, text([](const auto &r) { return r.configuration; })},
        {"prec", Type::text, words, text([](const auto &r) { return r.precipitation + r.sign; })},
        {"trend", Type::text, words, text([](const auto &r) { return r.trend; })},
        {"move_type", Type::text, moves, types},
        {"move_dir", Type::real, moves, directions},
        {"move_spd", Type::real, moves, speeds},
        {"max_tops", Type::integer, one, number([](const auto &r) { return given(r.top); })},
        {"max_tops_dir", Type::integer, one, number([](const auto &r) { return given(r.top_azimuth); })},
        {"max_tops_rad", Type::integer, one, number([](const auto &r) { return given(r.top_range); })}};
    nc.texts = {{"missing_val_c", "*"}, {"datetime", label_of(s.time)}, {"version", "1"}};
    nc.numbers = {{"missing_val_f", -9999.0F}, {"missing_val_i", -9999.0F}};
    return nc;
}

namespace {

int intensity_code(const std::string &sign) {
    constexpr std::array<const char *, 6> kSigns{"-", "", "+", "++", "X", "XX"};
    return static_cast<int>(std::ranges::find(kSigns, sign) - kSigns.begin()) + 1;
}

/// Bits of the letters.
int precipitation_bits(const std::string &letters) {
    int bits = 0;
    for (const char letter : letters) bits |= letter == 'T' ? 64 : letter == 'R' ? 1 : letter == 'W' ? 32 : 0;
    return bits;
}

int code_of(const std::string &word, const std::array<const char *, 4> &words) {
    const auto found = std::ranges::find(words, word);
    return found == words.end() ? 0 : static_cast<int>(found - words.begin()) + 1;
}

} // namespace

NetcdfDescription digitized_reports(const DigitizedSummary &s) {
    NetcdfDescription nc;
    nc.dimensions = {{"mdr_x", static_cast<std::size_t>(s.grid.columns)},
                     {"mdr_y", static_cast<std::size_t>(s.grid.rows)},
                     {"id_len", 8},
                     {"radar_len", 8},
                     {"time_len", 16},
                     {"rpt_type_len", 8},
                     {"maxprecip", 1},
                     {"maxcover", 1},
                     {"maxazran", 1},
                     {"maxwidth", 1},
                     {"maxmove", 1},
                     {"maxheight", 1},
                     {"report", s.reports.size()}};
    const DateRecord date = date_of(s.time);
    const std::string time =
        format_text("%04d%02d%02d%02d%02d", date.year, date.month, date.day, date.hour, date.minute);
    const std::vector<std::string> one{"report"};
    const auto with = [](const char *name) { return std::vector<std::string>{"report", name}; };
    const auto number = [&](auto take) { return each(s.reports, take); };
    const auto text = [&](std::size_t length, auto take) { return texts(s.reports, length, take); };
    const auto has_echo = [](const auto &r) { return r.precipitation.empty() ? 0 : 1; };
    nc.variables = {
        {"mdr_time", Type::text, {"time_len"}, netcdf_texts({time}, 16)},
        {"lon", Type::real, one, number([](const auto &r) { return r.lon; })},
        {"lat", Type::real, one, number([](const auto &r) { return r.lat; })},
        grid_variable("mdr", s.grid),
        {"rpt_date", Type::integer, one, number([&](const auto &) { return date.day; })},
        {"id", Type::text, with("id_len"), text(8, [](const auto &r) { return r.id; })},
        {"rpt_time", Type::text, with("time_len"), text(16, [&](const auto &) { return time; })},
        {"radar_type", Type::text, with("radar_len"),
         text(8, [](const auto &) { return std::string("88D"); })},
        {"opstat", Type::byte, one, number([](const auto &r) {
             return code_of(r.configuration, {"NE", "OM", "NA", ""});
         })},
        {"rpt_type", Type::text, with("rpt_type_len"),
         text(8, [](const auto &) { return std::string("SD"); })},
        {"object", Type::byte, one, number([](const auto &r) {
             return code_of(r.configuration, {"AREA", "LINE", "CELL", ""});
         })},
        {"ncover", Type::integer, one, number(has_echo)},
        {"coverage", Type::integer, with("maxcover"), number([](const auto &r) { return r.coverage; })},
        {"nprecip", Type::integer, with("maxcover"), number(has_echo)},
        {"precip_type", Type::byte, {"report", "maxcover", "maxprecip"}, number([](const auto &r) {
             return precipitation_bits(r.precipitation);
         })},
        {"intensity", Type::byte, {"report", "maxcover", "maxprecip"}, number([](const auto &r) {
             return intensity_code(r.sign);
         })},
        {"trend", Type::byte, one, number([](const auto &r) {
             return code_of(r.trend, {"+", "-", "NC", "NEW"});
         })},
        {"nazran", Type::integer, one, number(has_echo)},
        {"azimuth", Type::real, with("maxazran"), number([](const auto &r) { return r.top_azimuth; })},
        {"range", Type::real, with("maxazran"), number([](const auto &r) { return r.top_range * kKmPerNm; })},
        {"nwidth", Type::integer, one, number([](const auto &) { return 0; })},
        {"width", Type::real, with("maxwidth"), {}},
        {"nmove", Type::integer, one, number([](const auto &r) { return r.speed > 0 ? 1 : 0; })},
        {"move_dir", Type::real, with("maxmove"), number([](const auto &r) { return r.direction * 10; })},
        {"move_speed", Type::real, with("maxmove"),
         number([](const auto &r) { return r.speed * kKmPerKnot / 3.6; })},
        {"nheight", Type::integer, one, number([](const auto &r) { return r.top > 0 ? 1 : 0; })},
        {"height", Type::real, with("maxheight"),
         number([](const auto &r) { return r.top * 100 / 3.2808; })}};
    return nc;
}

Bytes coded_text(const CodedSummary &summary, SummaryForm form) {
    constexpr int kLineBytes = 79;
    std::string text = head_of(summary.time, form);
    text += "RCM " + heading_time(summary.time) + "\n";
    for (int row = 0; row < summary.grid.rows; ++row) {
        std::string levels;
        for (int column = 0; column < summary.grid.columns; ++column)
            levels += static_cast<char>('0' + summary.grid.at(column, row));
        levels.resize(levels.find_last_not_of('0') + 1);
        if (levels.empty()) continue;
        text += format_text("+%d\n", row);
        for (std::size_t at = 0; at < levels.size(); at += kLineBytes)
            text += levels.substr(at, kLineBytes) + "\n";
    }
    for (const SiteRecord &record : summary.records) {
        text += format_text("** %s %d", record.id.c_str(), record.number) + record.words + "\n";
        if (record.top > 0)
            text += format_text("Z %d %.3f %.3f\n", record.top, record.top_lat, record.top_lon);
        for (const StormRecord &s : record.storms) {
            if (s.vortex) text += format_text("T %s %.3f %.3f\n", s.id.c_str(), s.lat, s.lon);
            if (s.rotating) text += format_text("M %s %.3f %.3f\n", s.id.c_str(), s.lat, s.lon);
            text += format_text("S %s %.3f %.3f %d %d %d %d\n", s.id.c_str(), s.lat, s.lon, s.direction,
                                s.speed, s.top, s.hail);
        }
    }
    return bytes_of(text + (summary.closed ? "*\n" : ""));
}

DigitizedSummary digitized(double minutes) {
    const Evening evening(minutes);
    DigitizedSummary summary{.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60),
                             .grid = kDigitizedGrid.levels(evening),
                             .reports = {}};
    for (const Station &station : kStations) summary.reports.push_back(report_of(station, evening));
    return summary;
}

CodedSummary coded(double minutes) {
    const Evening evening(minutes);
    CodedSummary summary{.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60),
                         .grid = kCodedGrid.levels(evening),
                         .records = {}};
    constexpr int kNumber = 308;
    SiteRecord home{.id = "LSX", .number = kNumber, .words = " PCPN"};
    for (const Cell &cell : evening.scene().cells()) {
        StormRecord storm{.id = cell.id,
                          .direction = static_cast<int>(Scene::kMotionFromDeg),
                          .speed = static_cast<int>(Scene::kMotionKnots),
                          .top = static_cast<int>(cell.top_kft * 10),
                          .hail = cell.peak_dbz > 61   ? 2
                                  : cell.peak_dbz > 57 ? 1
                                                       : 0,
                          .rotating = cell.rotating,
                          .vortex = cell.rotating && cell.peak_dbz > 61};
        evening.place(cell, storm.lat, storm.lon);
        if (storm.top > home.top) {
            home.top = storm.top;
            home.top_lat = storm.lat;
            home.top_lon = storm.lon;
        }
        home.storms.push_back(storm);
    }
    summary.records = {home,
                       {.id = "MPX", .number = 348, .words = " CLAR NE"},
                       {.id = "DMX", .number = 342, .words = " OM"}};
    return summary;
}

} // namespace samples
