#include "lib/time/fixed_time.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    DateRecord time; ///< every field unset
};
State state;

int negated(int value) {
    return is_missing(value) ? value : -std::max(value, -std::numeric_limits<int>::max());
}

bool starts_with_digit(std::string_view text) {
    return !text.empty() && is_digit(text.front());
}

/// Fields given one after the other; the first that does not fit ends the reading.
void take(Scanner &scan, std::size_t width, int &field) {
    if (const std::optional<int> value = scan.integer(width)) field = *value;
}

/// "%d:%d". A leading "-" with hour 0 cannot be told from "+0" by the number: then only the minute, negated.
void read_hour_minute(std::string_view text, DateRecord &date) {
    Scanner scan(text);
    take(scan, Scanner::kAnyWidth, date.hour);
    if (scan.literal(':')) take(scan, Scanner::kAnyWidth, date.minute);
    if (text.starts_with('-') && date.hour == 0) {
        date.hour = kMissing;
        date.minute = negated(date.minute);
    }
}

void read_day_hour_minute(std::string_view text, DateRecord &date) {
    Scanner scan(text);
    take(scan, Scanner::kAnyWidth, date.day);
    if (!scan.literal('d')) return;
    take(scan, Scanner::kAnyWidth, date.hour);
    if (scan.literal(':')) take(scan, Scanner::kAnyWidth, date.minute);
}

} // namespace

void FILE_set_time(const DateRecord &date) {
    state.time = date;
}

DateRecord FILE_get_time() {
    return state.time;
}

void FILE_reset_time() {
    state.time = DateRecord{};
}

std::size_t FILE_read_time_digits(std::string_view digits, DateRecord &date) {
    constexpr std::size_t kYearWidth = 4;
    constexpr std::size_t kPairWidth = 2;
    Scanner scan(digits);
    const auto group = [&scan](std::size_t width, int &field) {
        if (!starts_with_digit(scan.rest())) return false;
        field = scan.integer(width).value_or(field);
        return true;
    };
    if (group(kYearWidth, date.year) && group(kPairWidth, date.month) && group(kPairWidth, date.day) &&
        group(kPairWidth, date.hour))
        group(kPairWidth, date.minute);
    return scan.position();
}

namespace {

/// Digits with at most one "#", "d" and ":" in their places, as the hour forms have them.
bool is_hour_text(std::string_view text) {
    if (text.starts_with('#')) return text.find_first_not_of("0123456789", 1) == text.npos;
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    const auto digits = [](std::string_view part) {
        return part.find_first_not_of("0123456789") == part.npos;
    };
    if (const std::size_t day = text.find('d'); day != text.npos) {
        if (day == 0 || !digits(text.substr(0, day))) return false;
        text.remove_prefix(day + 1);
    }
    const std::size_t colon = std::min(text.find(':'), text.size());
    return digits(text.substr(0, colon)) && digits(text.substr(std::min(colon + 1, text.size())));
}

} // namespace

void FILE_set_hour_text(std::string_view text) {
    if (!is_hour_text(text)) WORD_not("hour", text, "a time");
    DateRecord date;
    const bool has_colon = text.find(':') != std::string_view::npos;
    if (text.starts_with('#')) {
        FILE_read_time_digits(text.substr(1), date);
    } else if (text.size() == 6 && !has_colon) {
        Scanner scan(text);
        take(scan, 2, date.month);
        take(scan, 2, date.day);
        take(scan, 2, date.hour);
    } else if ((text.size() == 4 || text.size() == 3) && starts_with_digit(text) && !has_colon) {
        Scanner scan(text);
        take(scan, text.size() - 2, date.day);
        take(scan, 2, date.hour);
    } else if (text.find('d') != std::string_view::npos) {
        read_day_hour_minute(text, date);
    } else if (text.starts_with(':') || text.starts_with("-:")) {
        const bool minus = text.front() == '-';
        Scanner scan(text.substr(minus ? 2 : 1));
        take(scan, Scanner::kAnyWidth, date.minute);
        if (minus) date.minute = negated(date.minute);
    } else {
        read_hour_minute(text, date);
    }
    FILE_set_time(date);
}
