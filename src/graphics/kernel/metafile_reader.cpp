#include "graphics/kernel/metafile_reader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <vector>

#include "graphics/kernel/kernel.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"

namespace {

constexpr std::size_t kMostBytes = std::size_t{256} << 20;
constexpr std::size_t kMostTextBytes = 100;

/// The text of a file, and how far it has been taken.
class Records {
    /// Takes what `take` reads; nothing is taken when it fails.
    template <typename Take> auto with(Take take) {
        Scanner scan(text_);
        auto value = take(scan);
        if (value) text_ = scan.rest();
        return value;
    }

public:
    explicit Records(std::string_view text) : text_(text) {}

    std::optional<std::string_view> keyword() {
        constexpr std::size_t kLetters = 9;
        return with([](Scanner &scan) { return scan.word(kLetters); });
    }
    std::optional<int> integer() {
        return with([](Scanner &scan) { return scan.integer(); });
    }
    std::optional<float> real() {
        return with([](Scanner &scan) { return scan.real(); });
    }
    std::optional<Point> point() {
        return with([](Scanner &scan) -> std::optional<Point> {
            const auto x = scan.real();
            scan.literal(',');
            const auto y = scan.real();
            if (scan.failed()) return std::nullopt;
            return Point{*x, *y};
        });
    }
    std::string_view rest_of_line() {
        const std::size_t end = std::min(text_.find('\n'), text_.size());
        const std::string_view line = text_.substr(0, end);
        text_.remove_prefix(std::min(end + 1, text_.size()));
        return line;
    }

private:
    std::string_view text_;
};

std::optional<Rect> take_rect(Records &records) {
    std::array<float, 4> side{};
    for (float &value : side) {
        const auto read = records.real();
        if (!read) return std::nullopt;
        value = *read;
    }
    return Rect{side[0], side[2], side[1], side[3]};
}

/// The points that are there of those announced.
std::vector<Point> take_points(Records &records, bool &whole) {
    const std::optional<int> count = records.integer();
    std::vector<Point> points;
    for (int i = 0; count && i < *count; ++i) {
        const auto point = records.point();
        if (!point) break;
        points.push_back(*point);
    }
    whole = count && *count >= 0 && points.size() == static_cast<std::size_t>(*count);
    return points;
}

struct PointRecord {
    std::string_view keyword;
    int (*draw)(std::span<const Point>);
};
constexpr std::array kPointRecords{PointRecord{"PL", gpolyline}, PointRecord{"FA", gfill_area},
                                   PointRecord{"PM", gpolymarker}};

struct IntegerRecord {
    std::string_view keyword;
    int (*set)(int);
};
constexpr std::array kIntegerRecords{
    IntegerRecord{"TR", gsel_norm_tran},           IntegerRecord{"PL_TYPE", gset_linetype},
    IntegerRecord{"PL_CLR", gset_line_colr_ind},   IntegerRecord{"PM_TYPE", gset_marker_type},
    IntegerRecord{"PM_CLR", gset_marker_colr_ind}, IntegerRecord{"FA_INT", gset_fill_int_style},
    IntegerRecord{"FA_ST", gset_fill_style_ind},   IntegerRecord{"FA_CLR", gset_fill_colr_ind},
    IntegerRecord{"TE_CLR", gset_text_colr_ind}};

struct RealRecord {
    std::string_view keyword;
    int (*set)(float);
};
constexpr std::array kRealRecords{
    RealRecord{"PL_LW", gset_linewidth},      RealRecord{"PM_SIZE", gset_marker_size},
    RealRecord{"PM_WDTH", gset_marker_width}, RealRecord{"TE_HGHT", gset_char_ht},
    RealRecord{"TE_EXP", gset_expan},         RealRecord{"TE_WDTH", gset_text_width},
    RealRecord{"TE_SPC", gset_space},         RealRecord{"TE_CSPC", gset_char_space}};

struct PairRecord {
    std::string_view keyword;
    int (*set)(int, int);
};
constexpr std::array kPairRecords{PairRecord{"TE_ALGN", gset_text_align},
                                  PairRecord{"TE_FNT", gset_fontprec}};

bool take_rectangle(std::string_view keyword, Records &records) {
    const auto number = records.integer();
    const auto rect = take_rect(records);
    if (!number || !rect) return false;
    if (keyword == "WIN") gset_win(*number, *rect);
    if (keyword == "VP") gset_vp(*number, *rect);
    return true; // the workstation's window is that of the device
}

bool take_color(Records &records) {
    const auto workstation = records.integer(), index = records.integer();
    std::array<float, 3> component{};
    bool whole = workstation && index;
    for (float &value : component) {
        const auto read = records.real();
        whole = whole && read;
        value = read.value_or(0);
    }
    if (whole) gset_colr_rep(1, *index, {component[0], component[1], component[2]});
    return whole;
}

bool take_text(Records &records) {
    const auto place = records.point();
    if (!place) return false;
    std::string_view text = records.rest_of_line();
    if (text.starts_with(' ')) text.remove_prefix(1);
    gtext(*place, text.substr(0, kMostTextBytes));
    return text.size() <= kMostTextBytes;
}

/// Carries out the record of a keyword. False when it is cut; nothing for a word that begins none.
std::optional<bool> take_record(std::string_view keyword, Records &records) {
    for (const auto &[word, draw] : kPointRecords)
        if (word == keyword) {
            bool whole = false;
            const std::vector<Point> points = take_points(records, whole);
            if (points.size() > 1 || (whole && !points.empty())) draw(points);
            return whole;
        }
    for (const auto &[word, set] : kIntegerRecords)
        if (word == keyword) {
            const auto value = records.integer();
            if (value) set(*value);
            return value.has_value();
        }
    for (const auto &[word, set] : kRealRecords)
        if (word == keyword) {
            const auto value = records.real();
            if (value) set(*value);
            return value.has_value();
        }
    for (const auto &[word, set] : kPairRecords)
        if (word == keyword) {
            const auto first = records.integer(), second = records.integer();
            if (first && second) set(*first, *second);
            return first && second;
        }
    if (keyword == "WIN" || keyword == "VP" || keyword == "WS_WIN") return take_rectangle(keyword, records);
    if (keyword == "CLR") return take_color(records);
    if (keyword == "TE") return take_text(records);
    if (keyword == "TE_UP") {
        const auto up = records.point();
        if (up) gset_char_up_vec(up->x, up->y);
        return up.has_value();
    }
    return std::nullopt;
}

} // namespace

int gread_metafile(const std::string &path) {
    Stream file = FILE_open(path, "rb");
    if (!file) {
        const int fault = errno;
        MESS_print(kWarn, "gread_metafile: Unable to open image file: %s\n", path.c_str());
        MESS_print_fault(kWarn, "gread_metafile", path, fault);
        return 0;
    }
    const std::vector<std::byte> bytes = file.read_all(kMostBytes + 1);
    Records records({reinterpret_cast<const char *>(bytes.data()), std::min(bytes.size(), kMostBytes)});
    records.rest_of_line(); // what it is
    gset_attributes({});    // what it was drawn with when it began
    int cut = 0;
    while (const auto keyword = records.keyword()) {
        const auto whole = take_record(*keyword, records);
        if (!whole) records.rest_of_line();
        cut += whole && !*whole ? 1 : 0;
    }
    if (cut > 0)
        MESS_print(kWarn, "gread_metafile: %s: %d records are cut or cannot be read\n", path.c_str(), cut);
    if (bytes.size() > kMostBytes)
        MESS_print(kWarn, "gread_metafile: %s: What is beyond %zu MB is not read\n", path.c_str(),
                   kMostBytes >> 20);
    return 0;
}
