#include "lib/time/date.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

enum class ClockStyle { hours_24, hours_12, hours_12_and_universal };

struct State {
    std::string zone_name = "Z"; ///< as printed, with its leading blank once a zone is set
    int zone_offset = 0;         ///< seconds
    ClockStyle clock = ClockStyle::hours_24;
};
State state;

bool same_case(char a, char b) {
    const bool both_upper = a >= 'A' && a <= 'Z' && b >= 'A' && b <= 'Z';
    const bool both_lower = a >= 'a' && a <= 'z' && b >= 'a' && b <= 'z';
    return both_upper || both_lower;
}

// ---- reading labels
// -------------------------------------------------------------------------------------------

/// Adds what an optional field found to the record.
void store(int &field, const std::optional<int> &found) {
    if (found) field = *found;
}

/// "%2d %3s %2d" behind the time of day: day, month name and year. True when the scanner read all so far.
bool read_day(Scanner &scanner, DateRecord &date) {
    store(date.day, scanner.integer(2));
    const auto month = scanner.word(3);
    store(date.year, scanner.integer(2));
    if (scanner.failed()) return false;
    date.month = DATE_decode_month(month.value_or(""));
    return true;
}

/// "18Z  4 JUL 03"
bool read_hour_form(std::string_view text, DateRecord &date) {
    Scanner scanner(text);
    store(date.hour, scanner.integer(2));
    scanner.literal('Z');
    return read_day(scanner, date);
}

/// "1830Z  4 JUL 03"; behind a blank the hour has one digit.
bool read_minute_form(std::string_view text, DateRecord &date) {
    Scanner scanner(text);
    store(date.hour, scanner.integer(2));
    store(date.minute, scanner.integer(2));
    scanner.literal('Z');
    if (!read_day(scanner, date)) return false;
    if (text.starts_with(' ')) {
        Scanner again(text);
        store(date.hour, again.integer(1));
        store(date.minute, again.integer(2));
    }
    return true;
}

/// "18:30:15Z  4 JUL 03"
bool read_second_form(std::string_view text, DateRecord &date) {
    Scanner scanner(text);
    store(date.hour, scanner.integer(2));
    scanner.literal(':');
    store(date.minute, scanner.integer(2));
    scanner.literal(':');
    store(date.second, scanner.integer(2));
    scanner.literal('Z');
    return read_day(scanner, date);
}

/// Four numbers: the last one (else the first) is the year and the third the day. There is no month name to
/// decode.
bool read_number_form(std::string_view text, DateRecord &date) {
    Scanner scanner(text);
    store(date.year, scanner.integer(2));
    scanner.integer(2);
    store(date.day, scanner.integer(2));
    store(date.year, scanner.integer(2));
    date.month = 0;
    return true;
}

/// The last `count` characters, or all of a shorter text.
std::string_view last(std::string_view text, std::size_t count) {
    return text.substr(text.size() - std::min(count, text.size()));
}

// ---- writing labels
// -------------------------------------------------------------------------------------------

/// The record with every set field brought into the range that labels can show.
DateRecord printable(DateRecord date) {
    const auto at_most = [](int value, int most, int otherwise) {
        return value < 0 || value > most ? otherwise : value;
    };
    if (date.year < 0) date.year = 1980;
    if (date.month < 1 || date.month > 12) date.month = 1;
    date.day = at_most(date.day, 31, 1);
    date.hour = at_most(date.hour, 23, 0);
    date.minute = at_most(date.minute, 59, 0);
    return date;
}

/// "18Z", "6 PM CDT" or "6 PM CDT [23Z]"; with the minutes "1830Z", "6:30 PM CDT" or "6:30 PM CDT [2330Z]".
std::string hour_text(const DateRecord &shown, const DateRecord &universal, bool minutes) {
    const char *zone = state.zone_name.c_str();
    if (state.clock == ClockStyle::hours_24)
        return minutes ? format_text("%2.2d%2.2d%s", shown.hour, shown.minute, zone)
                       : format_text("%2.2d%s", shown.hour, zone);
    const char *half = shown.hour < 12 ? "AM" : "PM";
    const int hour = shown.hour % 12 == 0 ? 12 : shown.hour % 12;
    std::string text = minutes ? format_text("%d:%2.2d %s%s", hour, shown.minute, half, zone)
                               : format_text("%d %s%s", hour, half, zone);
    if (state.clock == ClockStyle::hours_12_and_universal)
        text += minutes ? format_text(" [%2.2d%2.2dZ]", universal.hour, universal.minute)
                        : format_text(" [%2.2dZ]", universal.hour);
    return text;
}

/// The date `seconds` later, all fields set.
DateRecord shifted(DateRecord date, std::int64_t seconds) {
    const std::int64_t time = DATE_num_sec(date) + seconds;
    DATE_get_gmdate(&time, date);
    return date;
}

std::string day_text(const DateRecord &date) {
    return format_text("%2d %3s %2.2d", date.day, DATE_month(date.month), date.year % 100);
}

} // namespace

int DATE_decode_month(std::string_view text) {
    if (text.size() < 3 || !same_case(text[0], text[1]) || !same_case(text[0], text[2])) return 0;
    const std::string name = lower_case(text.substr(0, 3));
    switch (name[0]) {
    case 'f': return 2;
    case 's': return 9;
    case 'o': return 10;
    case 'n': return 11;
    case 'd': return 12;
    case 'j': return name[1] == 'a' ? 1 : name[2] == 'n' ? 6 : name[2] == 'l' ? 7 : 0;
    case 'm': return name[2] == 'r' ? 3 : name[2] == 'y' ? 5 : 0;
    case 'a': return name[2] == 'r' ? 4 : name[2] == 'g' ? 8 : 0;
    default: return 0;
    }
}

int DATE_decode_seq(const char *text, DateRecord &date) {
    if (text == nullptr) return -1;
    Scanner scanner(text);
    store(date.year, scanner.integer(4));
    store(date.month, scanner.integer(2));
    store(date.day, scanner.integer(2));
    store(date.hour, scanner.integer(2));
    store(date.minute, scanner.integer(2));
    return 0;
}

int DATE_decode_label(std::string_view text, DateRecord &date) {
    const auto fits = [&date](auto read, std::string_view part) {
        DATE_init(date);
        return read(part, date);
    };
    [[maybe_unused]] const bool read = fits(read_hour_form, text) || fits(read_minute_form, last(text, 15)) ||
                                       fits(read_second_form, last(text, 19)) ||
                                       fits(read_hour_form, last(text, 13)) || fits(read_number_form, text);
    if (is_missing(date.year)) return 0;
    if (date.year < 50) date.year += 2000;
    if (date.year < 200) date.year += 1900;
    return 0;
}

std::string DATE_make_label(const DateRecord &date) {
    const DateRecord universal = printable(date);
    // Without an hour the record names a day, not an instant, and has nothing to shift.
    const bool has_hour = !is_missing(date.month) && !is_missing(date.day) && !is_missing(date.hour);
    const DateRecord shown =
        has_hour && state.zone_offset != 0 ? shifted(universal, state.zone_offset) : universal;
    if (is_missing(date.month)) return format_text("%2.2d", shown.year % 100);
    if (is_missing(date.day)) return format_text("%3s %2.2d", DATE_month(shown.month), shown.year % 100);
    if (!has_hour) return day_text(shown);
    return hour_text(shown, universal, !is_missing(date.minute)) + ' ' + day_text(shown);
}

std::string DATE_make_label_valid_time(int hours, const DateRecord &date) {
    int ahead = is_missing(hours) ? 0 : hours % 1000;
    if (ahead == 900 || ahead == 800) ahead = 0;
    const DateRecord universal = shifted(date, std::int64_t{ahead} * 3600);
    const DateRecord shown = shifted(universal, state.zone_offset);
    const std::string day = std::string(DATE_weekday(shown.weekday)) + ' ' + day_text(shown);
    return is_missing(date.hour) ? day : hour_text(shown, universal, false) + ' ' + day;
}

std::string DATE_fhour_label(int hours, int style) {
    if (hours == 0 || is_missing(hours)) return "";
    if (hours > 900) return format_text("%d month", hours - 900);
    if (hours > 800) return format_text("%d day", hours - 800);
    const bool half_days = hours > 60 || (style != 0 && hours > 0);
    if (!half_days || hours % 12 != 0) return format_text("%d hour", hours);
    return hours % 24 == 0 ? format_text("%d day", hours / 24) : format_text("%d.5 day", hours / 24);
}

void DATE_set_TZ(std::string_view text) {
    state.zone_name.assign(1, ' ');
    state.zone_offset = 0;
    if (text.starts_with('-')) state.clock = ClockStyle::hours_12_and_universal;
    if (text.starts_with('+')) state.clock = ClockStyle::hours_12;
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    Scanner scanner(text);
    state.zone_name += scanner.until(":", 4).value_or("");
    scanner.literal(':');
    constexpr double kMostHours = 10000; // far beyond any zone, far below what seconds in an int can hold
    const std::optional<float> given = scanner.real();
    const bool universal = text.empty() || text == "Z" || text == "UTC" || text == "GMT";
    if (!universal && (!given || !scanner.at_end())) WORD_not("Time zone", text, "NAME:HOURS");
    const double hours = std::clamp(static_cast<double>(given.value_or(0.0F)), -kMostHours, kMostHours);
    state.zone_offset = static_cast<int>(hours * 3600);
}

int DATE_get_tz_off() {
    return state.zone_offset;
}

const std::string &DATE_get_tz_str() {
    return state.zone_name;
}

void DATE_print(unsigned level, const DateRecord &date) {
    MESS_print(level, "%d/%d/%d %2.2d:%2.2d:%2.2d\n", date.year, date.month, date.day, date.hour, date.minute,
               date.second);
}
