#include "plot/symbols/watch_text.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "lib/system/calendar.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kMaxCorners = 100;
constexpr std::size_t kMinCorners = 3;
constexpr std::int64_t kHour = 3600, kDay = 86400;
constexpr std::int64_t kUsualDuration = 8 * kHour;

/// How a bulletin writes the kind of its watch.
struct KindName {
    std::string_view written, kind;
};
constexpr std::array kPublicNames{KindName{"TORNADO WATCH", "TORNADO"},
                                  KindName{"SEVERE THUNDERSTORM WATCH", "SEVERE THUNDERSTORM"}};
constexpr std::array kShortNames{KindName{"TORNADO", "TORNADO"},
                                 KindName{"SEVERE TSTM", "SEVERE THUNDERSTORM"}};
constexpr std::string_view kCorners = "LAT...LON";

/// The number that `text` begins with when exactly `digits` digits stand there.
std::optional<int> fixed_number(std::string_view text, std::size_t digits) {
    if (text.size() < digits ||
        !std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(digits), is_digit))
        return std::nullopt;
    return Scanner(text).integer(digits);
}

std::optional<DayTime> day_time(std::string_view text) {
    const auto number = fixed_number(text, 6);
    if (!number) return std::nullopt;
    const DayTime time{*number / 10000, *number / 100 % 100, *number % 100};
    if (time.day < 1 || time.day > 31 || time.hour > 23 || time.minute > 59) return std::nullopt;
    return time;
}

/// "WWUS20 KWNS 102034": type and area, station, time of the issue.
std::optional<DayTime> heading_time(std::string_view line) {
    Scanner words(line);
    const auto type = words.word(), station = words.word(), time = words.word();
    if (words.failed() || type->size() != 6 || station->size() != 4 || time->size() != 6) return std::nullopt;
    if (!fixed_number(type->substr(4), 2) || is_digit(type->front())) return std::nullopt;
    return day_time(*time);
}

/// Corner of 8 digits: latitude and western longitude in hundredths of a degree, the longitude without its
/// hundred.
std::optional<WatchPoint> corner(std::string_view word) {
    if (word.size() != 8) return std::nullopt;
    const auto lat = fixed_number(word, 4), lon = fixed_number(word.substr(4), 4);
    if (!lat || !lon || *lat > 9000) return std::nullopt;
    const int west = *lon < 5000 ? *lon + 10000 : *lon;
    return WatchPoint{static_cast<float>(*lat) / 100, static_cast<float>(-west) / 100};
}

class BulletinParser {
public:
    void line(std::string_view text) {
        if (const auto time = heading_time(text)) {
            finish();
            current_.begin = time;
        }
        if (const std::size_t at = text.find(kCorners); at != std::string_view::npos) {
            in_corners_ = true;
            text.remove_prefix(at + kCorners.size());
        }
        if (in_corners_)
            in_corners_ = take_corners(text);
        else
            take_name(text);
        take_period(text);
    }

    /// Ends the bulletin that is being read.
    void finish() {
        if (!current_.box.kind.empty() && current_.box.corners.size() >= kMinCorners)
            found_.push_back(current_);
        current_ = WatchBulletin{};
        in_corners_ = false;
    }

    std::vector<WatchBulletin> take() { return std::move(found_); }

private:
    /// False when the line holds anything else than corners.
    bool take_corners(std::string_view text) {
        Scanner words(text);
        while (const auto word = words.word()) {
            const auto point = corner(*word);
            if (!point) return false;
            if (current_.box.corners.size() < kMaxCorners) current_.box.corners.push_back(*point);
        }
        return true;
    }

    /// The first watch named is the bulletin's own; it may mention others that it replaces.
    void take_name(std::string_view text) {
        if (!current_.box.kind.empty()) return;
        for (const KindName &name : kPublicNames) {
            const std::size_t at = text.find(name.written);
            if (at == std::string_view::npos) continue;
            Scanner rest(text.substr(at + name.written.size()));
            rest.skip_blanks();
            constexpr std::string_view word = "NUMBER";
            if (rest.rest().starts_with(word)) rest = Scanner(rest.rest().substr(word.size()));
            name_it(name.kind, rest.integer());
        }
        Scanner words(text);
        if (words.word().value_or("") != "WW") return;
        const auto number = words.integer();
        words.skip_blanks();
        for (const KindName &name : kShortNames)
            if (number && words.rest().starts_with(name.written)) name_it(name.kind, number);
    }

    void name_it(std::string_view kind, std::optional<int> number) {
        if (!number || *number < 1) return;
        current_.box.kind = kind;
        current_.box.number = *number;
    }

    /// "032035Z - 040400Z"
    void take_period(std::string_view text) {
        constexpr std::string_view between = "Z - ";
        const std::size_t at = text.find(between);
        if (at == std::string_view::npos || at < 6) return;
        const auto begin = day_time(text.substr(at - 6)), end = day_time(text.substr(at + between.size()));
        if (!begin || !end) return;
        current_.begin = begin;
        current_.end = end;
    }

    WatchBulletin current_;
    std::vector<WatchBulletin> found_;
    bool in_corners_ = false;
};

/// The time nearest to `now` that has this day of the month; nothing when no day nearby has.
std::optional<std::int64_t> nearest(const DayTime &time, std::int64_t now) {
    constexpr std::int64_t days_around = 31;
    std::optional<std::int64_t> best;
    for (std::int64_t day = -days_around; day <= days_around; ++day) {
        const std::int64_t midnight = (now / kDay + day) * kDay;
        DateRecord date;
        DATE_get_gmdate(&midnight, date);
        if (date.day != time.day) continue;
        const std::int64_t seconds = midnight + time.hour * kHour + time.minute * 60;
        if (!best || std::abs(seconds - now) < std::abs(*best - now)) best = seconds;
    }
    return best;
}

} // namespace

std::vector<WatchBulletin> parse_watch_text(std::string_view text) {
    BulletinParser parser;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        parser.line(trimmed(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    parser.finish();
    return parser.take();
}

bool watch_in_force(const WatchBulletin &bulletin, std::int64_t now) {
    if (!bulletin.begin) return true;
    const auto begin = nearest(*bulletin.begin, now);
    if (!begin) return false;
    const auto end = bulletin.end ? nearest(*bulletin.end, now) : std::optional(*begin + kUsualDuration);
    return end && *begin <= now && now < *end;
}
