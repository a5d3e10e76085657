/// The file of a current-time specification: "la", "cu-2:30", "#200307041830-1la#10".

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/fixed_time.h"

namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kDay = 86400;

constexpr int kUsualSearch = 500;      ///< files that "la" looks for
constexpr int kLongestSearch = 100000; ///< ten weeks of minutes; a larger count only takes time

constexpr unsigned kTraceLevel = 0xF0000000;

bool starts_with_digit(std::string_view text) {
    return !text.empty() && is_digit(text.front());
}

std::int64_t seconds_of(const DateRecord &date) {
    DateRecord copy = date;
    return DATE_num_sec(copy);
}

DateRecord date_of(std::int64_t seconds) {
    DateRecord date;
    DATE_get_gmdate(&seconds, date);
    return date;
}

/// The time that the text begins with, or the environment's, or now.
std::int64_t take_base_time(std::string_view &spec) {
    if (spec.starts_with('#')) {
        spec.remove_prefix(1);
        DateRecord date;
        if (const std::size_t used = FILE_read_time_digits(spec, date)) {
            spec.remove_prefix(used);
            return seconds_of(date);
        }
    }
    if (const char *variable = std::getenv("vyxcurtime")) {
        std::string_view text = variable;
        if (text.starts_with('#')) text.remove_prefix(1);
        DateRecord date;
        if (FILE_read_time_digits(text, date) > 0) return seconds_of(date);
        if (!text.empty()) WORD_not("vyxcurtime", text, "YYYYMMDDhhmm");
    }
    return DATE_get_time();
}

/// Pulls the base back to the most recent time with the fields that are set. Negative hours and minutes are
/// cycles, which the expansion of the template knows.
std::int64_t most_recent(std::int64_t base, const DateRecord &set) {
    DateRecord date = date_of(base);
    if (set.month > date.month) {
        --date.year;
        date.month = set.month;
    }
    if (set.day > date.day) {
        date.year -= date.month == 1;
        date.month = date.month == 1 ? 12 : date.month - 1;
        date.day = set.day;
    }
    if (set.hour >= 0) {
        if (set.hour > date.hour) date = date_of(seconds_of(date) - kDay);
        date.hour = set.hour;
    }
    if (set.minute >= 0) {
        if (set.minute > date.minute) date = date_of(seconds_of(date) - kHour);
        date.minute = set.minute;
    }
    return seconds_of(date);
}

/// 1 forward, -1 backward; `direction` where no sign stands.
int take_sign(std::string_view &spec, int direction) {
    if (!spec.starts_with('+') && !spec.starts_with('-')) return direction;
    direction = spec.front() == '+' ? 1 : -1;
    spec.remove_prefix(1);
    return direction;
}

/// Days, hours and minutes ("1d6:30", "6:30") in seconds; 0 when no digit follows.
std::int64_t take_offset(std::string_view &spec) {
    if (!starts_with_digit(spec)) return 0;
    Scanner scan(spec);
    std::int64_t seconds = 0;
    std::size_t used = 0;
    const auto number = [&](std::int64_t unit) {
        const auto value = scan.integer();
        if (!value) return false;
        seconds += *value * unit;
        used = scan.position();
        return true;
    };
    const bool has_days = spec.find('d') != spec.npos;
    bool more = !has_days || (number(kDay) && scan.literal('d'));
    if (has_days && more) used = scan.position();
    more = more && number(kHour);
    if (more && scan.literal(':')) number(kMinute);
    spec.remove_prefix(used);
    return seconds;
}

/// How many files to look for; nothing when the text does not ask for the latest.
std::optional<int> take_search_count(std::string_view &spec) {
    if (!spec.starts_with('l')) return std::nullopt;
    spec.remove_prefix(spec.starts_with("la") ? 2 : 1);
    if (spec.starts_with('#')) spec.remove_prefix(1);
    if (!starts_with_digit(spec)) return kUsualSearch;
    Scanner scan(spec);
    const int count = scan.integer().value_or(kUsualSearch);
    spec.remove_prefix(scan.position());
    if (count > kLongestSearch)
        WORD_tell("current",
                  format_text("The latest file is looked for at no more than %d times", kLongestSearch));
    return std::min(count, kLongestSearch);
}

/// The first time from `base` on whose file is large enough; `count` periods away when there is none.
std::int64_t search_latest(std::int64_t base, int direction, int count) {
    std::string name;
    MESS_print(kTraceLevel, "LATE:%d %d %d %d %d\n", direction, count, FILE_get_offset(),
               static_cast<int>(FILE_get_min_size()), static_cast<int>(base));
    for (int i = 0; i < count; ++i) {
        const DateRecord date = date_of(base);
        FILE_set_date(&date, name);
        MESS_print(kTraceLevel, "LATE: %s\n", name.c_str());
        const std::int64_t size = FILE_size(name);
        if (size > FILE_get_min_size()) {
            MESS_print(kTraceLevel, "LATEST: %s %s %d\n", name.c_str(), "found", static_cast<int>(size));
            break;
        }
        base += direction * std::int64_t{FILE_get_offset()};
    }
    return base;
}

void trace(const char *format_name, std::int64_t base) {
    const DateRecord date = date_of(base);
    MESS_print(kTraceLevel, "%s:%d %d %d %d\n", format_name, date.month, date.day, date.hour, date.minute);
}

} // namespace

std::int64_t FILE_set_current(const char *spec, std::string &out) {
    std::string_view rest = spec != nullptr ? spec : "la";
    if (rest.starts_with("cu")) rest.remove_prefix(2);
    std::int64_t base = most_recent(take_base_time(rest), FILE_get_time());
    trace("CUR1", base);
    int direction = take_sign(rest, -1);
    base += direction * take_offset(rest);
    direction = take_sign(rest, direction);
    if (const std::optional<int> count = take_search_count(rest)) {
        base = search_latest(base, direction, *count);
        direction = take_sign(rest, -1);
    }
    base += direction * take_offset(rest);
    if (!rest.empty()) WORD_not("current", rest, "a part of a time of the current file");
    trace("CUR2", base);
    const DateRecord date = date_of(base);
    FILE_set_date(&date, out);
    return base - base % FILE_get_offset();
}
