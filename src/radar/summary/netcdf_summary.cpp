#include "radar/summary/netcdf_summary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "lib/time/date.h"
#include "radar/summary/text_file.h"

namespace {

using Type = NetcdfFile::Type;

constexpr int kColumns = 120, kRows = 90;
constexpr std::uint8_t kHighestLevel = 10;
constexpr float kNmPerKm = 0.53996F, kKnotsPerMs = 1.944F, kFeetPerMetre = 3.2808F;
/// Fill values of netCDF lie far beyond anything measured.
constexpr float kFillValue = 1e30F;
constexpr float kNegativeMissing = -999;
constexpr std::size_t kMostEntries = 64; ///< of a kind in one report
constexpr std::size_t kMostTextBytes = 4096;

struct Variable {
    const char *name;
    Type type;
    std::vector<const char *> dimensions;
};

} // namespace

SummaryNetcdf::SummaryNetcdf(std::vector<std::byte> bytes) : file_(std::move(bytes)) {
    if (!file_.is_open()) return;
    const bool stations = file_.dimension("station").has_value();
    if (stations ? check_stations() : check_reports()) kind_ = stations ? kRadStations : kRadReports;
}

bool SummaryNetcdf::need_dimension(const char *name, std::size_t least) {
    const auto length = file_.dimension(name);
    if (!length) return file_.fail(std::string("there is no dimension ") + name);
    return *length >= least || file_.fail(std::string("dimension ") + name + " is too small");
}

bool SummaryNetcdf::need(const char *variable, Type type, std::span<const char *const> dimensions) {
    // What is stored in bytes is a number, too.
    return file_.has_variable(variable, type, dimensions) ||
           (type == Type::number && file_.has_variable(variable, Type::byte, dimensions)) ||
           file_.fail(std::string("variable ") + variable + " is missing, or has another type or size");
}

bool SummaryNetcdf::check_grid(const char *variable) {
    grid_ = variable;
    constexpr std::array<const char *, 2> columns_first{"mdr_x", "mdr_y"}, rows_first{"mdr_y", "mdr_x"};
    x_first_ = file_.has_variable(variable, Type::byte, columns_first);
    return need_dimension("mdr_x", kColumns) && need_dimension("mdr_y", kRows) &&
           (x_first_ || need(variable, Type::byte, rows_first));
}

bool SummaryNetcdf::check_stations() {
    static const std::array<Variable, 14> variables{{{"id", Type::text, {"station", "string_len"}},
                                                     {"region", Type::text, {"station", "string_len"}},
                                                     {"mdr_x", Type::number, {"station"}},
                                                     {"mdr_y", Type::number, {"station"}},
                                                     {"type", Type::text, {"station", "string_len"}},
                                                     {"config", Type::text, {"station", "string_len"}},
                                                     {"prec", Type::text, {"station", "string_len"}},
                                                     {"trend", Type::text, {"station", "string_len"}},
                                                     {"move_type", Type::text, {"station", "reports"}},
                                                     {"move_dir", Type::number, {"station", "reports"}},
                                                     {"move_spd", Type::number, {"station", "reports"}},
                                                     {"max_tops", Type::number, {"station"}},
                                                     {"max_tops_dir", Type::number, {"station"}},
                                                     {"max_tops_rad", Type::number, {"station"}}}};
    if (!check_grid("summary") || !need_dimension("string_len", 1) ||
        !need_dimension("reports", MdrReport().movements.size()))
        return false;
    for (const Variable &row : variables)
        if (!need(row.name, row.type, row.dimensions)) return false;
    count_ = file_.dimension("station").value_or(0);
    missing_ = file_.number_attribute("missing_val_f").value_or(kMissingF);
    missing_integer_ = file_.number_attribute("missing_val_i").value_or(kMissingF);
    missing_text_ = file_.text_attribute("missing_val_c").value_or("");
    return true;
}

bool SummaryNetcdf::check_reports() {
    static const std::array<Variable, 20> variables{
        {{"mdr_time", Type::text, {"time_len"}},
         {"id", Type::text, {"report", "id_len"}},
         {"opstat", Type::number, {"report"}},
         {"object", Type::number, {"report"}},
         {"ncover", Type::number, {"report"}},
         {"coverage", Type::number, {"report", "maxcover"}},
         {"nprecip", Type::number, {"report", "maxcover"}},
         {"precip_type", Type::number, {"report", "maxcover", "maxprecip"}},
         {"intensity", Type::number, {"report", "maxcover", "maxprecip"}},
         {"trend", Type::number, {"report"}},
         {"nazran", Type::number, {"report"}},
         {"azimuth", Type::number, {"report", "maxazran"}},
         {"range", Type::number, {"report", "maxazran"}},
         {"nwidth", Type::number, {"report"}},
         {"width", Type::number, {"report", "maxwidth"}},
         {"nmove", Type::number, {"report"}},
         {"nheight", Type::number, {"report"}},
         {"height", Type::number, {"report", "maxheight"}},
         {"move_dir", Type::number, {"report", "maxmove"}},
         {"move_speed", Type::number, {"report", "maxmove"}}}};
    constexpr std::array<const char *, 6> others{"lon",      "lat",        "rpt_date",
                                                 "rpt_time", "radar_type", "rpt_type"};
    if (!check_grid("mdr")) return false;
    for (const char *name : {"id_len", "radar_len", "time_len", "rpt_type_len", "maxprecip", "maxcover",
                             "maxazran", "maxwidth", "maxmove", "maxheight"})
        if (!need_dimension(name, 1)) return false;
    if (!need_dimension("report", 0)) return false;
    for (const Variable &row : variables)
        if (!need(row.name, row.type, row.dimensions)) return false;
    for (const char *name : others)
        if (!file_.exists(name)) return file_.fail(std::string("there is no variable ") + name);
    count_ = file_.dimension("report").value_or(0);
    return true;
}

float SummaryNetcdf::given(float value) const {
    const bool none = !std::isfinite(value) || std::abs(value) > kFillValue || value == missing_ ||
                      value == missing_integer_ || value <= kNegativeMissing;
    return none ? kMissingF : value;
}

bool SummaryNetcdf::read_grid(SummaryGrid &grid) {
    const std::array<std::size_t, 2> start{0, 0},
        count{x_first_ ? std::size_t{kColumns} : kRows, x_first_ ? std::size_t{kRows} : kColumns};
    std::vector<signed char> levels(std::size_t{kColumns} * kRows);
    if (!file_.read(grid_, start, count, levels)) return false;
    for (int x = 0; x < kColumns; ++x)
        for (int y = 0; y < kRows; ++y) {
            const int place = x_first_ ? x * kRows + y : y * kColumns + x;
            const auto level = static_cast<std::uint8_t>(levels[static_cast<std::size_t>(place)]);
            grid.set(x, y, level > kHighestLevel ? kSummaryMissing : level);
        }
    return true;
}

bool SummaryNetcdf::read_info(RadarInfo &info) {
    info.kind = SummaryKind::digitized;
    info.date = DateRecord();
    if (kind_ == kRadStations) {
        info.label = file_.text_attribute("datetime").value_or("");
        RAD_decode_label(info.label, info.date);
    } else {
        constexpr std::size_t kTimeBytes = 16;
        const std::array<std::size_t, 1> start{0},
            count{std::min(kTimeBytes, file_.dimension("time_len").value_or(0))};
        std::string sequence;
        if (!file_.read("mdr_time", start, count, sequence)) return false;
        (void)DATE_decode_seq(sequence.c_str(), info.date); // no null text
        info.label = DATE_make_label(info.date);
    }
    if (is_missing(info.date.year)) (void)file_.fail("the file has no date");
    return read_grid(info.grid);
}

float SummaryNetcdf::number(const char *variable, std::size_t index) {
    float value = kMissingF;
    const std::array<std::size_t, 1> start{index}, count{1};
    read_whole_ = file_.read(variable, start, count, std::span(&value, 1)) && read_whole_;
    return given(value);
}

std::vector<float> SummaryNetcdf::numbers(const char *variable, const char *counter, std::size_t index,
                                          std::size_t most) {
    const float told = number(counter, index);
    if (!(told >= 1)) return {};
    std::vector<float> values(static_cast<std::size_t>(std::min(told, static_cast<float>(most))));
    const std::array<std::size_t, 2> start{index, 0}, count{1, values.size()};
    read_whole_ = file_.read(variable, start, count, std::span(values)) && read_whole_;
    for (float &value : values) value = given(value);
    return values;
}

std::string SummaryNetcdf::text(const char *variable, const char *length, std::size_t index) {
    const std::array<std::size_t, 2> start{index, 0},
        count{1, std::min(file_.dimension(length).value_or(0), kMostTextBytes)};
    std::string words;
    read_whole_ = file_.read(variable, start, count, words) && read_whole_;
    return !missing_text_.empty() && words == missing_text_ ? std::string() : words;
}

bool SummaryNetcdf::read_station(std::size_t index, MdrReport &report) {
    const auto words = [this, index](const char *variable) { return text(variable, "string_len", index); };
    report.id = words("id");
    report.region = words("region");
    report.grid_x = number("mdr_x", index);
    report.grid_y = number("mdr_y", index);
    report.configuration = words("config");
    MdrReport::Coverage coverage;
    const std::string precipitation = words("prec");
    MDR_take_precipitation(precipitation, coverage);
    if (coverage.types.empty() && coverage.intensity > 0)
        MDR_take_precipitation(words("type") + precipitation, coverage);
    report.coverage.push_back(std::move(coverage));
    report.trend = words("trend");
    const std::string types = text("move_type", "reports", index);
    for (std::size_t i = 0; i < report.movements.size(); ++i) {
        const std::array<std::size_t, 2> start{index, i}, count{1, 1};
        MdrReport::Movement &movement = report.movements[i];
        if (i < types.size() && types[i] != '*') movement.type = types[i];
        read_whole_ = file_.read("move_dir", start, count, std::span(&movement.direction, 1)) &&
                      file_.read("move_spd", start, count, std::span(&movement.speed_kt, 1)) && read_whole_;
        movement.direction = given(movement.direction);
        movement.speed_kt = given(movement.speed_kt);
    }
    report.top = number("max_tops", index);
    if (report.top < 0) report.top = kMissingF;
    report.top_way = {number("max_tops_dir", index), number("max_tops_rad", index)};
    return read_whole_;
}

namespace {

/// Letters of the precipitation bits, in the order in which they are written.
std::string precipitation_letters(unsigned bits) {
    constexpr std::array<std::pair<unsigned, char>, 7> kLetters{{{1U << 6, 'T'},
                                                                 {1U << 7, 'Z'},
                                                                 {1U << 0, 'R'},
                                                                 {1U << 0 | 1U << 1, 'S'},
                                                                 {1U << 2, 'P'},
                                                                 {1U << 0 | 1U << 2, 'L'},
                                                                 {1U << 5, 'W'}}};
    std::string letters;
    for (const auto &[mask, letter] : kLetters)
        if ((bits & mask) == mask) letters += letter;
    return letters;
}

float converted(float value, float offset, float factor) {
    return is_missing(value) ? kMissingF : std::round((value + offset) * factor);
}

float to_nm(float km) {
    return converted(km, 0, kNmPerKm);
}

float whole_degrees(float degrees) {
    return converted(degrees, 0.01F, 1);
}

/// Element of a code list that counts from 1.
template <std::size_t N> std::string code_text(const std::array<const char *, N> &texts, float code) {
    const bool known = code >= 1 && code < static_cast<float>(N + 1);
    return known ? texts[static_cast<std::size_t>(code) - 1] : "";
}

} // namespace

bool SummaryNetcdf::read_coverage(std::size_t index, MdrReport &report) {
    const std::vector<float> covered =
        numbers("coverage", "ncover", index, std::min(kMostEntries, file_.dimension("maxcover").value_or(0)));
    const std::size_t most = std::min(kMostEntries, file_.dimension("maxprecip").value_or(0));
    for (std::size_t i = 0; i < covered.size(); ++i) {
        MdrReport::Coverage coverage;
        coverage.tenths = covered[i];
        float told = 0;
        const std::array<std::size_t, 2> place{index, i}, one{1, 1};
        read_whole_ = file_.read("nprecip", place, one, std::span(&told, 1)) && read_whole_;
        const auto kinds = told >= 1 ? static_cast<std::size_t>(std::min(told, static_cast<float>(most))) : 0;
        std::vector<float> types(kinds), intensities(kinds);
        const std::array<std::size_t, 3> start{index, i, 0}, count{1, 1, kinds};
        if (kinds > 0)
            read_whole_ = file_.read("precip_type", start, count, std::span(types)) &&
                          file_.read("intensity", start, count, std::span(intensities)) && read_whole_;
        for (std::size_t k = 0; k < kinds; ++k) {
            constexpr float kMostBits = 255;
            const float bits = types[k] < 0 ? types[k] + kMostBits + 1 : types[k]; // a signed byte
            if (bits > 0 && bits <= kMostBits)
                coverage.types += precipitation_letters(static_cast<unsigned>(bits));
            const bool known = intensities[k] >= 0 && intensities[k] <= 9;
            if (coverage.intensity == 0 && known) coverage.intensity = static_cast<int>(intensities[k]);
        }
        report.coverage.push_back(std::move(coverage));
    }
    return read_whole_;
}

bool SummaryNetcdf::read_places(std::size_t index, MdrReport &report) {
    const auto room = [this](const char *dimension, std::size_t most) {
        return std::min(most, file_.dimension(dimension).value_or(0));
    };
    const std::size_t ways = room("maxazran", report.ways.size());
    const std::vector<float> azimuths = numbers("azimuth", "nazran", index, ways),
                             ranges = numbers("range", "nazran", index, ways);
    for (std::size_t i = 0; i < std::min(azimuths.size(), ranges.size()); ++i)
        report.ways[i] = {whole_degrees(azimuths[i]), to_nm(ranges[i])};
    const std::vector<float> widths = numbers("width", "nwidth", index, room("maxwidth", 1));
    if (!widths.empty()) report.width_nm = to_nm(widths.front());
    const std::vector<float> heights = numbers("height", "nheight", index, room("maxheight", 1));
    if (heights.empty() || heights.front() < 0) return read_whole_;
    constexpr float kHundreds = 100;
    report.top = std::floor(converted(heights.front(), 1, kFeetPerMetre) / kHundreds);
    report.top_way = report.ways.front();
    return read_whole_;
}

bool SummaryNetcdf::read_movements(std::size_t index, char type, MdrReport &report) {
    const std::size_t most = std::min(report.movements.size(), file_.dimension("maxmove").value_or(0));
    const std::vector<float> directions = numbers("move_dir", "nmove", index, most),
                             speeds = numbers("move_speed", "nmove", index, most);
    for (std::size_t i = 0; i < std::min(directions.size(), speeds.size()); ++i)
        report.movements[i] = {type, whole_degrees(directions[i]), converted(speeds[i], 0.1F, kKnotsPerMs)};
    return read_whole_;
}

bool SummaryNetcdf::read_report(std::size_t index, MdrReport &report) {
    constexpr std::array<const char *, 3> kStatus{"NE", "OM", "NA"}, kObject{"AREA", "LINE", "CELL"};
    constexpr std::array<const char *, 4> kTrend{"+", "-", "NC", "NEW"};
    report = MdrReport();
    read_whole_ = true;
    if (kind_ == kRadStations) return read_station(index, report);
    report.id = text("id", "id_len", index);
    report.configuration = code_text(kStatus, number("opstat", index));
    const std::string object = code_text(kObject, number("object", index));
    if (!object.empty()) report.configuration = object;
    report.trend = code_text(kTrend, number("trend", index));
    const bool covered = read_coverage(index, report), placed = read_places(index, report);
    // What moves is what is reported; without an object the whole area.
    return read_movements(index, object.empty() ? 'A' : object.front(), report) && covered && placed;
}
