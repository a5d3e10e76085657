#include "lib/files/series.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <limits>
#include <vector>

#include "lib/files/listing.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/resources/prompt.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    std::int64_t default_span = 0; ///< seconds
    std::vector<std::string> list; ///< the names of the "filename" resource
    std::size_t next_in_list = 0;
    DateRecord first_date;
    std::int64_t span = 0;      ///< seconds; negative: backward from the first date
    std::int64_t step = 0;      ///< seconds
    std::int64_t offset = 0;    ///< seconds from the first date to the next file
    bool current_given = false; ///< a series of one file has given it
};
State state;

constexpr std::int64_t kHourSeconds = 3600;
constexpr std::int64_t kMinuteSeconds = 60;
constexpr int kPromptLength = PATH_MAX; ///< one more than the longest answer
constexpr int kMostAttempts = 4;
constexpr unsigned kDateLevel = 0xF0000000;
constexpr unsigned kNextLevel = 0x40000000;

/// "6", "6:30" or ":30", with a sign or without.
bool is_span(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    return !text.empty() && WORD_are_numbers(text.starts_with(':') ? text.substr(1) : text, 1, 2) &&
           text.find_first_not_of("0123456789:") == text.npos;
}

/// A span that is none has the length 0.
void check_hours(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (!is_span(text.substr(0, comma))) WORD_not("num_hour", text.substr(0, comma), "a number of hours");
    if (comma == text.npos || is_span(text.substr(comma + 1))) return;
    WORD_not("num_hour", text.substr(comma + 1), "a step in hours");
}

/// "%d:%d", or ":%d", or a part of it. Negative when the text begins with "-".
std::int64_t read_span(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    Scanner scan(text);
    std::int64_t seconds = 0;
    if (!text.starts_with(':')) seconds = scan.integer().value_or(0) * kHourSeconds;
    if (scan.literal(':')) seconds += scan.integer().value_or(0) * kMinuteSeconds;
    return negative || seconds < 0 ? -std::abs(seconds) : seconds;
}

/// The period, or the multiple of it that the part behind the comma comes nearest to from below.
std::int64_t read_step(std::string_view text) {
    const std::int64_t period = FILE_get_offset();
    const std::size_t comma = text.find(',');
    const std::int64_t skip = comma == text.npos ? period : read_span(text.substr(comma + 1));
    return period * std::max<std::int64_t>(skip / period, 1);
}

/// At most kMostSeriesFiles times, those next to the first date.
std::int64_t limited_span(std::int64_t span, std::int64_t step) {
    const std::int64_t longest = (kMostSeriesFiles - 1) * step;
    if (std::abs(span) <= longest) return span;
    WORD_tell("num_hour", format_text("A series is looked for at no more than %d times, which are %lld hours "
                                      "here",
                                      kMostSeriesFiles, static_cast<long long>(longest / kHourSeconds)));
    return span < 0 ? -longest : longest;
}

void trace_date(const char *what, const DateRecord &date) {
    MESS_print(kDateLevel, "%s%d/%d/%d %02d:%02d\n", what, date.year, date.month, date.day, date.hour,
               date.minute);
}

[[noreturn]] void end_without_file(const std::string &name) {
    const int fault = errno;
    MESS_print(kWarn, "File not found: %s\n", name.c_str());
    if (fault == EACCES || fault == ENOTDIR) MESS_print_fault(kWarn, "FILE_get_file", name, fault);
    VYX_exit(kExitNoFile);
}

void tell_current(const std::string &name) {
    MESS_print(kMess, "Current filename: %s\n", name.c_str());
}

/// A name from the user, who may have written a command.
void take_given(const std::string &name, std::string &out) {
    FILE_allow_command(name);
    FILE_set_file(name, out);
}

/// What the resources, or batch mode, say of the file.
enum class Selection { by_name, by_time, not_at_all };

Selection select_file(std::string &out) {
    if (const std::vector<std::string> names = RES_getvals("filename"); !names.empty()) {
        if (names.front() == "list") {
            FILE_list_file();
            VYX_exit(kExitOk);
        }
        take_given(names.front(), out);
        return Selection::by_name;
    }
    const char *current = RES_get("current");
    if (current == nullptr && FLAG_batch() == 0) return Selection::not_at_all;
    FILE_set_current(current != nullptr ? current : "la", out);
    return Selection::by_time;
}

/// An answer at the terminal, "list" aside.
void take_answer(const std::string &answer, std::string &out) {
    if (answer == "exit") VYX_exit(kExitOk);
    if (FILE_is_current_spec(answer)) {
        FILE_set_current(answer.c_str() + (answer.starts_with("cu") ? 2 : 0), out);
        tell_current(out);
    } else {
        take_given(answer, out);
    }
}

void ask_for_file(std::string_view prompt, std::string &out) {
    MESS_print(kPrint, "List of available files:\n");
    FILE_list_file();
    MESS_print(kPrint, "\n");
    for (int attempt = 0; attempt < kMostAttempts;) {
        const std::string answer = VYX_prompts(prompt, kPromptLength);
        if (answer == "list") {
            FILE_list_file();
            continue;
        }
        take_answer(answer, out);
        if (FILE_exist(out) != 0 || FILE_is_command(out)) return;
        MESS_print(kWarn, "File not found: %s\n", out.c_str());
        ++attempt;
    }
    VYX_exit(kExitNoFile);
}

int limited(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

bool next_of_list(std::string &out) {
    if (state.next_in_list >= state.list.size()) return false;
    take_given(state.list[state.next_in_list++], out);
    return true;
}

} // namespace

int FILE_get_file(std::string_view prompt, std::string &out) {
    switch (select_file(out)) {
    case Selection::by_name: return FILE_exist(out);
    case Selection::by_time: break;
    case Selection::not_at_all: ask_for_file(prompt, out); return 1;
    }
    if (FILE_exist(out) == 0) end_without_file(out);
    tell_current(out);
    return 1;
}

bool FILE_select(std::string &out) {
    return select_file(out) != Selection::not_at_all;
}

void FILE_first(const DateRecord &date) {
    state.list = RES_getvals("filename");
    if (!state.list.empty() && !state.list.front().starts_with('#') &&
        FILE_is_current_spec(state.list.front()))
        state.list.clear();
    state.next_in_list = 0;
    state.current_given = false;
    state.first_date = date;
    const char *hours = RES_get("num_hour");
    if (hours != nullptr) check_hours(hours);
    state.step = read_step(hours != nullptr ? hours : "");
    state.span = limited_span(hours != nullptr ? read_span(hours) : state.default_span, state.step);
    if (hours != nullptr && state.span != 0 && state.list.size() <= 1 && is_missing(date.year)) {
        WORD_tell("num_hour", "The name of the file tells no time from which a series could go on: " +
                                  FILE_get_filename());
        state.span = 0;
    }
    state.offset = state.span < 0 ? (state.span + 1 - state.step) / state.step * state.step : 0;
}

int FILE_get_next(std::string &out) {
    if (state.list.size() > 1 || (state.list.size() == 1 && state.span == 0))
        return next_of_list(out) ? 1 : 0;
    if (state.span == 0) {
        if (state.current_given) return 0;
        state.current_given = true;
        out = FILE_get_filename();
        return 1;
    }
    if (state.offset > std::max<std::int64_t>(state.span, 0)) return 0;
    trace_date(" in: ", state.first_date);
    FILE_set_date_off(state.first_date, state.offset, out);
    trace_date("out: ", FILE_get_date());
    MESS_print(kNextLevel, "NEXT: %d %d %d %d %d %s\n", limited(state.span), limited(state.offset),
               limited(state.step), FILE_get_late_off(),
               limited(static_cast<std::int64_t>(state.list.size())), out.c_str());
    state.offset += state.step;
    return 1;
}

int FILE_get_num_file() {
    if (state.list.size() > 1) return limited(static_cast<std::int64_t>(state.list.size()) - 1);
    return limited(state.span);
}

int FILE_get_num_hour() {
    return limited(state.span / kHourSeconds);
}

std::int64_t FILE_get_nsecs() {
    return state.span;
}

void FILE_set_nsecs(std::int64_t seconds) {
    state.span = seconds;
}

void FILE_set_def_hours(int hours) {
    state.default_span = hours * kHourSeconds;
}

void FILE_list_file() {
    FILE_list_pattern(FILE_search_pattern());
}
