#include "samples/rcm.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lib/system/calendar.h"
#include "lib/text/strings.h"
#include "samples/evening.h"
#include "samples/level3_products.h"
#include "samples/scene.h"

namespace samples {

namespace {

constexpr std::size_t kLineWidth = 70;

DateRecord date_of(std::int64_t time) {
    DateRecord date;
    DATE_get_gmdate(&time, date);
    return date;
}

/// An item, padded with blanks to whole lines.
void add_item(std::string &text, const std::string &item) {
    text += item;
    text.resize((text.size() + kLineWidth - 1) / kLineWidth * kLineWidth, ' ');
}

std::string joined(const std::vector<std::string> &items) {
    std::string text;
    for (const std::string &item : items) text += (text.empty() ? "" : ",") + item;
    return text;
}

/// "/NTVS01: TVS01LOE"
std::string features(const char *item, const char *mark, const std::vector<RcmMark> &marks) {
    std::vector<std::string> texts;
    for (const RcmMark &m : marks) texts.push_back(mark + m.id + rcm_letters(m.column, m.row));
    return format_text("%s%02zu: ", item, marks.size()) + joined(texts);
}

/// The grid of a radar is cut out of the national one.
class Grid {
public:
    explicit Grid(const Site &site) : site_(site) {
        constexpr double kLat = 39.7642, kLon = -97.1467, kBox = 47.596, kRight = 56, kUp = 44, kBefore = 12;
        double xc = 0, yc = 0, x = 0, y = 0;
        Polar::forward(kLat, kLon, xc, yc);
        Polar::forward(site.lat, site.lon, x, y);
        const double left = xc - kRight * kBox, top = yc + kUp * kBox;
        x0_ = left + std::trunc((x - left) / kBox - kBefore) * kBox;
        y0_ = top - std::trunc((top - y) / kBox - kBefore) * kBox;
    }
    /// Kilometres east and north of the radar of a point of the grid, columns and rows from its corner.
    void place(double column, double row, double &east_km, double &north_km) const {
        double lat = 0, lon = 0;
        Polar::inverse(x0_ + column * kCell, y0_ - row * kCell, lat, lon);
        const double a = lat * kRadian, a0 = site_.lat * kRadian, step = (lon - site_.lon) * kRadian;
        const double east = std::cos(a) * std::sin(step);
        const double north = std::cos(a0) * std::sin(a) - std::sin(a0) * std::cos(a) * std::cos(step);
        const double up = std::sin(a0) * std::sin(a) + std::cos(a0) * std::cos(a) * std::cos(step);
        const double sine = std::max(std::hypot(east, north), 1e-9), km = kEarthKm * std::atan2(sine, up);
        east_km = km * east / sine;
        north_km = km * north / sine;
    }

private:
    static constexpr double kCell = 11.899;
    Site site_;
    double x0_ = 0, y0_ = 0;
};

/// The six intensities by the largest reflectivity in a cell.
double largest_dbz(const Scene &scene, const Grid &grid, int column, int row) {
    constexpr int kProbes = 6;
    double best = -99;
    for (int i = 0; i < kProbes * kProbes; ++i) {
        double x = 0, y = 0;
        grid.place(column + (i % kProbes + 0.5) / kProbes, row + (i / kProbes + 0.5) / kProbes, x, y);
        best = std::max(best, scene.dbz(x, y));
    }
    return best;
}

RcmMark cell_of(const Grid &grid, const Cell &storm) {
    RcmMark best;
    double nearest = 1e9;
    for (int column = 0; column < kRcmSide; ++column)
        for (int row = 0; row < kRcmSide; ++row) {
            double x = 0, y = 0;
            grid.place(column + 0.5, row + 0.5, x, y);
            const double away = std::hypot(x - storm.x_km, y - storm.y_km);
            if (away >= nearest) continue;
            nearest = away;
            best = {storm.id, column, row};
        }
    return best;
}

} // namespace

std::string rcm_letters(int column, int row) {
    const auto letter = [](int index) { return static_cast<char>('A' + index); };
    return {letter(row / 4), letter(column / 4), letter(column % 4 * 4 + row % 4)};
}

std::vector<std::string> rcm_groups(const RcmCells &cells) {
    constexpr int kMostRepeated = 26;
    std::vector<std::string> groups;
    for (int row = 0; row < kRcmSide; ++row) {
        const auto at = [&cells, row](int column) {
            return column < kRcmSide ? cells[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)]
                                     : kRcmNotCoded;
        };
        for (int column = 0; column < kRcmSide;) {
            if (at(column) == kRcmNotCoded) {
                ++column;
                continue;
            }
            std::string group = rcm_letters(column, row);
            while (at(column) != kRcmNotCoded) {
                const std::uint8_t level = at(column);
                int more = 0;
                while (at(column + 1 + more) == level && more < kMostRepeated) ++more;
                const auto digit = static_cast<char>('0' + level);
                group += digit;
                if (more == 1) group += digit;
                if (more > 1) group += static_cast<char>('A' + more - 1);
                column += 1 + more;
            }
            groups.push_back(group);
        }
    }
    return groups;
}

std::string rcm_text(const RcmBulletin &b) {
    const DateRecord date = date_of(b.time);
    const std::string when = format_text("%04d %02d%02d%02d%02d%02d", b.number, date.day, date.month,
                                         date.year % 100, date.hour, date.minute);
    std::string text;
    add_item(text, format_text("1234 ROBUU %04d", b.number));
    add_item(text, "/NEXRAA " + when + " " + b.remark);
    if (!b.status.empty()) add_item(text, b.status);
    int coded = 0;
    for (const auto &column : b.cells)
        for (const std::uint8_t level : column) coded += level != 0 && level != kRcmNotCoded ? 1 : 0;
    add_item(text, format_text("/MD%s /SC     /NI%04d:", b.mode.c_str(), coded));
    add_item(text, joined(rcm_groups(b.cells)));
    add_item(text, format_text("/MT%03d:%s", b.top, rcm_letters(b.top_column, b.top_row).c_str()));
    std::vector<std::string> motions, severities;
    for (const RcmCentroid &s : b.storms) {
        const std::string storm = "C" + s.id + rcm_letters(s.column, s.row);
        motions.push_back(storm + format_text(" %03d%03d", s.direction, s.speed));
        severities.push_back(storm + format_text(" S%03dH%c", s.severe, s.hail));
    }
    add_item(text, format_text("/NCEN%02zu: ", b.storms.size()) + joined(motions));
    add_item(text, "/ENDAA");
    add_item(text, "/NEXRBB " + when);
    add_item(text, joined(b.entries));
    add_item(text, "/ENDBB");
    add_item(text, "/NEXRCC " + when);
    add_item(text, features("/NTVS", "TVS", b.vortices));
    add_item(text, features("/NMES", "M", b.mesocyclones));
    add_item(text, format_text("/NCEN%02zu: ", b.storms.size()) + joined(severities));
    return text;
}

Bytes rcm_bulletin(const RcmBulletin &b, RcmForm form) {
    const DateRecord date = date_of(b.time);
    const bool wrapped = form == RcmForm::wrapped;
    const char *end = wrapped ? "\r\r\n" : "\n";
    ByteWriter out;
    out.text(format_text("SDUS43 K%s %02d%02d%02d", b.id.c_str(), date.day, date.hour, date.minute) + end);
    out.text("RCM" + b.id + end);
    const std::string text = rcm_text(b);
    if (form == RcmForm::one_line) return out.text(text + "\n").take();
    if (form == RcmForm::lines) {
        for (std::size_t at = 0; at < text.size(); at += kLineWidth)
            out.text(text.substr(at, kLineWidth) + "\n");
        return out.take();
    }
    if (wrapped) {
        constexpr std::size_t kHeadBytes = 120, kLengthAt = 8;
        Level3Product product;
        product.code = 74;
        product.time = b.time;
        Bytes head = level3_message(product);
        head.resize(kHeadBytes);
        ByteWriter length;
        length.u32(static_cast<std::uint32_t>(kHeadBytes + text.size()));
        std::ranges::copy(length.bytes(), head.begin() + kLengthAt);
        return out.append(head).text(text).take();
    }
    const auto block = [&out](unsigned type, std::string content) {
        if (content.size() % 2 != 0) content += ' ';
        out.u16(static_cast<unsigned>(content.size() / 2 + 2)).u16(type).text(content);
    };
    constexpr unsigned kFirst = 0x0101, kLocation = 0x0110, kOther = 0x0410, kText = 0x0504;
    block(kFirst, "RCM ");
    block(kLocation, format_text("00%8.3f%10.3f%4d%04d%02d%02d%02d%02d", static_cast<double>(b.lat),
                                 static_cast<double>(b.lon), b.feet, date.year, date.month, date.day,
                                 date.hour, date.minute));
    block(kOther, "not for us");
    // A block's length has twelve bits.
    block(kText, text.substr(text.find("/NEXRAA"), 8000));
    return out.take();
}

RcmBulletin rcm(double minutes) {
    const Site site;
    const Scene scene(minutes);
    const Grid grid(site);
    RcmBulletin b;
    b.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60);
    b.lat = static_cast<float>(site.lat);
    b.lon = static_cast<float>(site.lon);
    b.feet = site.height_ft;
    constexpr double kReachKm = 460;
    for (int column = 0; column < kRcmSide; ++column)
        for (int row = 0; row < kRcmSide; ++row) {
            double x = 0, y = 0;
            grid.place(column + 0.5, row + 0.5, x, y);
            const std::uint8_t level =
                std::hypot(x, y) < kReachKm
                    ? static_cast<std::uint8_t>(summary_level(largest_dbz(scene, grid, column, row)))
                    : std::uint8_t{0};
            b.cells[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)] =
                level > 0 ? level : kRcmNotCoded;
        }
    for (const Cell &storm : scene.cells()) {
        const RcmMark mark = cell_of(grid, storm);
        RcmCentroid centroid{mark, static_cast<int>(Scene::kMotionFromDeg),
                             static_cast<int>(Scene::kMotionKnots), static_cast<int>(storm.peak_dbz * 4),
                             'N'};
        if (storm.peak_dbz > 57) centroid.hail = storm.peak_dbz > 61 ? 'H' : 'P';
        b.storms.push_back(centroid);
        if (storm.rotating)
            b.mesocyclones.push_back(
                {format_text("%02zu", b.mesocyclones.size() + 1), mark.column, mark.row});
        if (storm.rotating && storm.peak_dbz > 61) b.vortices.push_back({"01", mark.column, mark.row});
        if (storm.top_kft * 10 > b.top) {
            b.top = static_cast<int>(storm.top_kft * 10);
            b.top_column = mark.column;
            b.top_row = mark.row;
        }
    }
    for (const int kft : {20, 50, 100, 200, 300}) {
        const Wind wind = environment_wind(kft / 10.0, minutes);
        b.entries.push_back(
            format_text("%03dB%03d%03d", kft, static_cast<int>(wind.from_deg), static_cast<int>(wind.knots)));
    }
    return b;
}

} // namespace samples
