#include "lib/resources/database.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <optional>

#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/missing.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    std::deque<ResourceRecord> records; ///< in the order of creation; never removed
    std::string program;                ///< argv[0]
    std::string program_name;           ///< its base name
};
State state;

constexpr unsigned kListLevel = 8;

ResourceRecord *find(std::string_view name) {
    const auto found = std::find_if(state.records.begin(), state.records.end(),
                                    [name](const ResourceRecord &record) { return record.name == name; });
    return found == state.records.end() ? nullptr : &*found;
}

int limited(std::int64_t value, std::int64_t low, std::int64_t high) {
    return static_cast<int>(std::clamp(value, low, high));
}

std::optional<int> decimal(std::string_view text) {
    return Scanner(text).integer();
}

/// "0x1F" and the like; the digits after the x.
std::optional<int> hexadecimal(std::string_view digits) {
    std::int64_t value = 0;
    std::size_t used = 0;
    for (; used < digits.size() && std::isxdigit(static_cast<unsigned char>(digits[used])) != 0; ++used) {
        const int letter = std::tolower(static_cast<unsigned char>(digits[used]));
        value =
            std::min<std::int64_t>(value * 16 + (is_digit(digits[used]) ? letter - '0' : letter - 'a' + 10),
                                   std::numeric_limits<std::uint32_t>::max());
    }
    if (used == 0) return std::nullopt;
    return static_cast<int>(static_cast<std::uint32_t>(value));
}

std::optional<int> switch_value(const ResourceRecord &record) {
    if (!record.has_value || record.value.empty()) return 1;
    for (const std::string_view word : {"true", "on", "yes"})
        if (stricmp(record.value, word) == 0) return 1;
    for (const std::string_view word : {"false", "off", "no"})
        if (stricmp(record.value, word) == 0) return 0;
    return std::nullopt;
}

std::optional<int> integer_value(std::string_view text, ResourceKind kind) {
    if (text.empty()) return std::nullopt;
    const bool digit = is_digit(text.front());
    switch (kind) {
    case ResourceKind::integer:
        if (!digit && text.front() != '+' && text.front() != '-') return std::nullopt;
        if (text.size() > 1 && (text[1] == 'x' || text[1] == 'X')) return hexadecimal(text.substr(2));
        return decimal(text);
    case ResourceKind::short_integer:
        if (!digit) return std::nullopt;
        return limited(decimal(text).value_or(0), std::numeric_limits<short>::min(),
                       std::numeric_limits<short>::max());
    case ResourceKind::long_integer: return digit ? decimal(text) : std::nullopt;
    case ResourceKind::decimal: return decimal(text);
    default: return std::nullopt; // the texts, and what acts at start-up or belongs to other modules
    }
}

} // namespace

const char *RES_get(std::string_view name) {
    const ResourceRecord *record = find(name);
    if (record == nullptr) return nullptr;
    return record->has_value ? record->value.c_str() : "";
}

std::vector<std::string> RES_getvals(std::string_view name) {
    const ResourceRecord *record = find(name);
    if (record == nullptr) return {};
    return parse_string(record->value, record->kind == ResourceKind::list ? '\n' : ',');
}

int RES_getval(std::string_view name, int &target, ResourceKind kind) {
    const ResourceRecord *record = find(name);
    if (record == nullptr) return 0;
    const std::optional<int> value =
        kind == ResourceKind::switch_ ? switch_value(*record) : integer_value(record->value, kind);
    if (!value) return 0;
    target = *value;
    return 1;
}

int RES_getval(std::string_view name, float &target) {
    const ResourceRecord *record = find(name);
    if (record == nullptr) return 0;
    const std::optional<float> value = Scanner(record->value).real();
    if (!value) return 0;
    target = *value;
    return 1;
}

int RES_getval(std::string_view name, std::string &target, ResourceKind kind) {
    const ResourceRecord *record = find(name);
    if (record == nullptr) return 0;
    const std::string &value = record->value;
    switch (kind) {
    case ResourceKind::directory:
        target = stricmp(value, "none") == 0 ? "" : value;
        FILE_add_path_delim(target);
        return 1;
    case ResourceKind::device:
        FLAG_set(kFlagDevice, RES_set_device(value));
        if (const std::size_t comma = value.find(','); comma != std::string::npos)
            target = value.substr(comma + 1);
        return 1;
    case ResourceKind::text:
    case ResourceKind::text_copy: target = value; return 1;
    default: return 0;
    }
}

int RES_put(std::string_view name, std::string_view value) {
    return RES_new(kMissing, name, std::string(value).c_str(), ResourceKind::text);
}

int RES_new(int index, std::string_view name, const char *value, ResourceKind kind) {
    ResourceRecord *record = find(name);
    if (record == nullptr) record = &state.records.emplace_back();
    *record = {index, std::string(name), value != nullptr ? value : "", value != nullptr, kind};
    return 0;
}

int RES_append(int index, std::string_view name, const char *value, ResourceKind kind) {
    ResourceRecord *record = find(name);
    if (record == nullptr || !record->has_value) return RES_new(index, name, value, kind);
    record->value.append("\n").append(value != nullptr ? value : "");
    return 0;
}

void RES_list() {
    for (const ResourceRecord &record : state.records) {
        if (record.has_value)
            MESS_print(kListLevel, "%s: %s\n", record.name.c_str(), record.value.c_str());
        else
            MESS_print(kListLevel, "%s:\n", record.name.c_str());
    }
}

int RES_set_device(std::string_view text) {
    enum Workstation { own_window = 1, metafile = 3, postscript = 4, hpgl = 5, other_window = 6 };
    switch (text.empty() ? '\0' : std::tolower(static_cast<unsigned char>(text.front()))) {
    case 'p': return postscript;
    case 'h':
    case 'q': return hpgl;
    case 'm': return metafile;
    case 'w': return other_window;
    default: return own_window;
    }
}

const std::string &RES_get_progname() {
    return state.program_name;
}

const std::string &RES_get_prog() {
    return state.program;
}

const std::deque<ResourceRecord> &RES_records() {
    return state.records;
}

void RES_clear() {
    state.records.clear();
}

void RES_set_program(std::string_view argv0) {
    state.program = argv0;
    state.program_name = state.program.substr(state.program.rfind('/') + 1); // npos + 1 is 0
}
