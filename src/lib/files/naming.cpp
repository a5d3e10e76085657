#include "lib/files/naming.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <limits>
#include <optional>

#include "lib/files/name_template.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/report/text_lines.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/fixed_time.h"

namespace {

constexpr std::size_t kLongestLine = 160; ///< of the convention file
constexpr int kUnknownPeriod = 100000;    ///< seconds; stands in where a step is needed and none is known
constexpr std::int64_t kLargestCount = std::numeric_limits<int>::max();

constexpr unsigned kConventionLevel = 0x10000000;
constexpr unsigned kPathLevel = 0x40000000;
constexpr unsigned kTraceLevel = 0x80000000;

/// What one convention and its current file are; kept and brought back as a whole.
struct Convention {
    std::string name_template;
    std::string header_template;
    std::string extension;      ///< of a key that matched partly
    std::string name;           ///< the current file
    bool name_is_given = false; ///< by the user or a list, not made from the template
    DateRecord date;            ///< of the current file, as its name represents it
    int period = 3600;          ///< seconds, kMissing while unknown
    std::int64_t min_size = 0;  ///< bytes
    std::string expanded_as;    ///< what the template makes of a given name's date, when not the name itself,
    std::string given_as;       ///< and that name
};

struct State {
    Convention now;
    Convention saved;
    std::array<std::string, kKeyCount> saved_keys;
    std::string ext_info;
    DateRecord data_date; ///< of what the current file holds
    std::array<std::string, kKeyCount> keys;
    std::int64_t required_size = 0; ///< bytes, 0 when not set
    bool splits_ext_info = false;   ///< file type 1
};
State state;

bool template_is_stdio() {
    return !state.now.name_template.empty() && FILE_is_stdio(state.now.name_template) != 0;
}

NameContext context() {
    return {state.now.extension, std::nullopt, FILE_get_time(), state.keys};
}

void take_literal_template(std::string_view key) {
    state.now.name_template = key;
    state.now.header_template.clear();
    state.now.min_size = 0;
}

/// Takes the ":c=value" parts off a key and sets those keys.
std::string_view take_embedded_keys(std::string_view key) {
    std::size_t end = key.size();
    for (std::size_t colon = key.find(':'); colon != key.npos; colon = key.find(':', colon + 1)) {
        const std::string_view part = key.substr(colon + 1);
        if (part.size() < 3 || part[1] != '=' || part[2] == ':') continue;
        const std::string value(part.substr(2, std::min(part.find(':', 2), part.size()) - 2));
        FILE_set_key(part.front(), value);
        MESS_print(kTraceLevel, "KEY: %c = %s\n", part.front(), value.c_str());
        end = std::min(end, colon);
    }
    return key.substr(0, end);
}

struct ConventionEntry {
    std::string key;
    std::string name_template;
    std::string header_template;
    std::int64_t min_size = 0;
};

std::optional<ConventionEntry> read_entry(std::string_view line) {
    if (line.starts_with('#')) return std::nullopt;
    Scanner scan(line);
    const auto key = scan.word();
    const auto name_template = scan.word();
    if (!key || !name_template) return std::nullopt;
    ConventionEntry entry{std::string(*key), std::string(*name_template), "", 0};
    if (const auto header = scan.word(); header && *header != "-") entry.header_template = *header;
    entry.min_size = std::max<std::int64_t>(scan.long_integer().value_or(0), 0);
    return entry;
}

void take_entry(const ConventionEntry &entry) {
    state.now.name_template = entry.name_template;
    state.now.header_template = entry.header_template;
    state.now.min_size = entry.min_size;
}

/// True when the entry is meant: its key is the name or the beginning of it.
bool match_entry(const ConventionEntry &entry, const std::string &name) {
    if (!begins_with(name, entry.key)) return false;
    take_entry(entry);
    if (name.size() == entry.key.size()) {
        MESS_print(kConventionLevel, "File name match for: %s\n", name.c_str());
        return true;
    }
    const std::size_t underscore = name.rfind('_');
    if (underscore != name.npos) state.now.extension = name.substr(underscore + 1);
    MESS_print(kConventionLevel, "File name partial match for: %s-%s ext: %s\n", name.c_str(),
               entry.key.c_str(), state.now.extension.c_str());
    return true;
}

std::string convention_file() {
    const char *name = RES_get("name_conv");
    return FILE_find_data(name != nullptr && *name != '\0' ? name : "name_conv");
}

ExpandedName expand(std::string_view name_template, const DateRecord &date) {
    NameContext with_path = context();
    // Of two path codes each brings the path of the whole name: without an end it would double each time.
    const bool possible = state.now.name.size() < PATH_MAX;
    if (state.now.name_is_given && possible && FILE_fullpath(state.now.name) != 0) {
        with_path.path = FILE_path_of_name(name_template, state.now.name);
        if (with_path.path) MESS_print(kPathLevel, "Extracted path: %s\n", with_path.path->c_str());
    }
    return FILE_expand_template(name_template, date, with_path);
}

void take_given(std::string_view name) {
    state.now.name = name;
    state.now.name_is_given = true;
}

bool is_plain_file(std::string_view name) {
    return FILE_exist(name) != 0 && FILE_is_dir(name) == 0;
}

bool all_digits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

/// The position where extra information splits off a name; npos when there is none. A separator is one of a
/// file name when the text up to it names no file but the text up to a later one, or the whole, does. Of a
/// name that no file has, a number behind the last directory is split off.
std::size_t ext_info_position(std::string_view name) {
    constexpr std::string_view kSeparators = "#-+:";
    constexpr std::size_t kFirstPlace = 2;
    const std::size_t first = name.find_first_of(kSeparators, kFirstPlace);
    if (first == name.npos || is_plain_file(name.substr(0, first))) return first;
    if (is_plain_file(name)) return name.npos;
    for (std::size_t i = first; i != name.npos; i = name.find_first_of(kSeparators, i + 1))
        if (is_plain_file(name.substr(0, i))) return i;
    const std::size_t begin = std::max(name.rfind('/') + 1, kFirstPlace); // npos + 1 is 0
    for (std::size_t i = name.find_first_of(kSeparators, begin); i != name.npos;
         i = name.find_first_of(kSeparators, i + 1))
        if (all_digits(name.substr(i + 1))) return i;
    return name.npos;
}

bool is_command(std::string_view name) {
    return name.starts_with('|');
}

/// Takes what is not part of the name off its end: extra information, or a "#" with the digits of a time.
std::string_view split_name(std::string_view name) {
    if (is_command(name)) return name;
    if (state.splits_ext_info) {
        std::size_t split = std::min(ext_info_position(name), name.size());
        // In "la#3" and "cu-0:28" the signs belong to the time, unless a file of that beginning is there.
        if (FILE_is_current_spec(name) && !is_plain_file(name.substr(0, split))) split = name.size();
        state.ext_info = name.substr(split);
        return name.substr(0, split);
    }
    if (FILE_is_current_spec(name))
        return name; // here the "#" stands for a time or a count to look back from
    std::size_t mark = name.find('#');
    while (mark != name.npos && (mark + 1 >= name.size() || !is_digit(name[mark + 1])))
        mark = name.find('#', mark + 1);
    if (mark == name.npos) return name;
    DateRecord time;
    FILE_read_time_digits(name.substr(mark + 1), time);
    FILE_set_time(time);
    return name.substr(0, mark);
}

void take_by_template(std::string_view name) {
    const NameReading reading = FILE_read_by_template(state.now.name_template, name, context());
    take_given(reading.name);
    state.now.date = reading.date;
    state.now.extension = reading.extension;
    MESS_print(kTraceLevel, "FILES:%s:%s:%d\n", state.now.name_template.c_str(), state.now.name.c_str(),
               static_cast<int>(reading.fits));
    if (!reading.dated) return;
    // A name such as "....nids.gz" has a date, but the template makes another name of that date. Whoever asks
    // for the file of that date wants the one that was given.
    std::string expanded = expand(state.now.name_template, reading.date).name;
    if (expanded == state.now.name) return;
    state.now.expanded_as = std::move(expanded);
    state.now.given_as = state.now.name;
}

} // namespace

int FILE_set_name(std::string_view key) {
    state.now.name.clear();
    state.now.name_is_given = false;
    state.now.expanded_as.clear();
    if (key == "none") {
        take_literal_template("");
        return 0;
    }
    if (key.starts_with('@')) {
        take_literal_template(key.substr(1));
        return 1;
    }
    const std::string name(take_embedded_keys(key));
    const std::string file = convention_file();
    TextLines lines(FILE_open(file, "r"), file, kLongestLine);
    if (!lines) {
        const int fault = errno;
        MESS_print(kWarn, "FILE_set_name: No file name convention file: %s\n", file.c_str());
        if (fault != ENOENT) MESS_print_fault(kWarn, "FILE_set_name", file, fault);
        take_literal_template(name);
        return 0;
    }
    MESS_print(kConventionLevel, "Opening name convention file: %s\n", file.c_str());
    state.now.extension.clear();
    std::string line;
    while (lines.next(line))
        if (const auto entry = read_entry(line); entry && match_entry(*entry, name)) return 1;
    MESS_print(kConventionLevel, "No file name conversion for: %s\n", name.c_str());
    take_literal_template(name);
    return 0;
}

std::vector<std::string> FILE_convention_keys() {
    const std::string file = convention_file();
    TextLines lines(FILE_open(file, "r"), file, kLongestLine);
    std::vector<std::string> keys;
    std::string line;
    while (lines && lines.next(line))
        if (auto entry = read_entry(line)) keys.push_back(std::move(entry->key));
    return keys;
}

int FILE_set_date(const DateRecord *date, std::string &out) {
    Convention &now = state.now;
    if (now.name_template.empty()) {
        out = now.name.empty() ? "filename" : now.name;
        now.name_is_given = true;
        return 1;
    }
    if (template_is_stdio()) {
        out = now.name = "-";
        now.name_is_given = false;
        return 1;
    }
    const DateRecord wanted = date != nullptr ? *date : now.date;
    now.period = kMissing;
    if (date != nullptr) now.date = DateRecord{};
    if (is_missing(wanted.year) && !now.name.empty()) {
        out = now.name;
        now.name_is_given = true;
        return 1;
    }
    const ExpandedName expanded = expand(now.name_template, wanted);
    now.date = expanded.date;
    now.period = expanded.period;
    now.name = !now.expanded_as.empty() && expanded.name == now.expanded_as ? now.given_as : expanded.name;
    out = now.name;
    return 0;
}

int FILE_set_date_off(const DateRecord &date, std::int64_t seconds, std::string &out) {
    DateRecord moved = date;
    if (!is_missing(date.year)) { // nothing can be added to no date; the current name then stands
        const std::int64_t time = DATE_num_sec(moved) + seconds;
        DATE_get_gmdate(&time, moved);
    }
    FILE_set_date(&moved, out);
    return static_cast<int>(
        std::clamp<std::int64_t>(seconds / FILE_get_offset(), -kLargestCount, kLargestCount));
}

int FILE_hdr_set_date(const DateRecord *date, std::string &out) {
    const DateRecord wanted = date != nullptr ? *date : state.now.date;
    if (is_missing(wanted.year) || state.now.header_template.empty()) return 0;
    out = expand(state.now.header_template, wanted).name;
    return 1;
}

bool FILE_is_current_spec(std::string_view name) {
    if (name.starts_with('#')) return true;
    if (!name.starts_with("la") && !name.starts_with("cu")) return false;
    constexpr std::string_view kSpecCharacters = "0123456789#+-:dla";
    return name.find_first_not_of(kSpecCharacters, 2) == name.npos || FILE_exist(name) == 0;
}

int FILE_set_file(std::string_view name, std::string &out) {
    Convention &now = state.now;
    now.expanded_as.clear();
    name = split_name(name);
    now.date = FILE_get_time();
    if (name == "exit") VYX_exit(kExitOk);
    if (name.starts_with('@')) {
        take_given(name.substr(1));
    } else if (FILE_is_stdio(name) != 0 || template_is_stdio()) {
        take_given("-");
    } else if (FILE_is_current_spec(name)) {
        FILE_set_current(std::string(name.substr(name.starts_with("cu") ? 2 : 0)).c_str(), out);
        MESS_print(kMess, "Current filename: %s\n", now.name.c_str());
    } else if (name == "none" || is_command(name) || now.name_template.empty() ||
               (FILE_fullpath(name) != 0 && FILE_fullpath(now.name_template) != 0)) {
        take_given(name);
    } else {
        take_by_template(name);
    }
    out = now.name;
    return 0;
}

void FILE_set_key(char letter, std::string_view value) {
    std::string text(value);
    fill_string(text, ' ', '_');
    state.keys[static_cast<unsigned char>(letter) % kKeyCount] = std::move(text);
}

std::string FILE_get_key(char letter) {
    return state.keys[static_cast<unsigned char>(letter) % kKeyCount];
}

DateRecord FILE_get_date() {
    return state.now.date;
}

void FILE_set_data_date(const DateRecord &date) {
    state.data_date = date;
}

DateRecord FILE_get_full_date() {
    DateRecord date = state.now.date;
    for (int DateRecord::*const field :
         {&DateRecord::year, &DateRecord::month, &DateRecord::day, &DateRecord::hour, &DateRecord::minute})
        if (is_missing(date.*field)) date.*field = state.data_date.*field;
    return date;
}

std::string FILE_get_filename() {
    return state.now.name;
}

void FILE_set_filename(std::string_view name) {
    state.now.expanded_as.clear();
    take_given(name);
}

void FILE_set_type(int type) {
    state.splits_ext_info = type == 1;
}

std::string FILE_get_ext_info() {
    return state.ext_info;
}

void FILE_set_ext_info(std::string_view text) {
    state.ext_info = text;
}

int FILE_get_late_off() {
    return state.now.period;
}

void FILE_set_late_off(int seconds) {
    state.now.period = seconds;
}

int FILE_get_offset() {
    return state.now.period < 1 ? kUnknownPeriod : state.now.period;
}

void FILE_set_min_size(std::int64_t bytes) {
    state.required_size = std::max<std::int64_t>(bytes, 0);
}

std::int64_t FILE_get_min_size() {
    return state.required_size > 0 ? state.required_size : state.now.min_size;
}

void FILE_save_name_conv() {
    state.saved = state.now;
    state.saved_keys = state.keys;
}

void FILE_restore_name_conv() {
    state.now = state.saved;
    state.keys = state.saved_keys;
}

std::string FILE_get_name_conv() {
    return format_text("%d %s %s", state.now.period, state.now.name_template.c_str(),
                       state.now.header_template.c_str());
}

void FILE_set_name_conv(std::string_view text) {
    Scanner scan(text);
    const auto period = scan.integer();
    if (!period) return;
    state.now.period = *period;
    state.now.name_template.clear();
    state.now.header_template.clear();
    if (!scan.literal(' ')) return;
    const std::string_view rest = scan.rest();
    const std::size_t blank = std::min(rest.find(' '), rest.size());
    state.now.name_template = rest.substr(0, blank);
    state.now.header_template = rest.substr(std::min(blank + 1, rest.size()));
}

std::string FILE_search_pattern() {
    return FILE_pattern_of_template(state.now.name_template, context());
}
