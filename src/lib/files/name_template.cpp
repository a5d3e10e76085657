#include "lib/files/name_template.h"

#include <algorithm>
#include <limits>

#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

using Kind = NameToken::Kind;

constexpr int kWidestCode = 9999;
constexpr int kMinuteSeconds = 60;
constexpr int kHourSeconds = 3600;
constexpr int kDaySeconds = 86400;
constexpr unsigned kTraceLevel = 0xF0000000;

constexpr std::string_view kSeparators = "/\\:";
constexpr std::string_view kDateLetters = "Yymbdjhn";

struct PathCode {
    char letter;
    std::string_view resource;
};
constexpr std::array kPathCodes{
    PathCode{'C', "con_path"},   PathCode{'D', "data_path"}, PathCode{'F', "file_path"},
    PathCode{'R', "raw_path"},   PathCode{'G', "grid_path"}, PathCode{'I', "image_path"},
    PathCode{'W', "watch_path"}, PathCode{'T', "text_path"}, PathCode{'M', "model_path"},
    PathCode{'S', "sat_path"},
};

void add_literal(std::vector<NameToken> &tokens, char c, bool braced) {
    if (tokens.empty() || tokens.back().kind != Kind::literal || tokens.back().braced != braced)
        tokens.push_back({Kind::literal, '\0', 1, false, braced, ""});
    tokens.back().text += c;
}

/// Reads the code behind a "%" and returns what follows it.
std::string_view take_code(std::string_view text, bool braced, std::vector<NameToken> &tokens) {
    const bool has_width = !text.empty() && is_digit(text.front());
    Scanner scan(text);
    const int width = has_width ? std::clamp(scan.integer().value_or(1), 1, kWidestCode) : 1;
    text = scan.rest();
    if (text.empty()) return text;
    const char letter = text.front();
    text.remove_prefix(1);
    NameToken token{Kind::key, letter, width, has_width, braced, ""};
    if (letter == '%') {
        add_literal(tokens, '%', braced);
        return text;
    }
    if (letter == '{') {
        const std::size_t end = std::min(text.find('}'), text.size());
        token.kind = Kind::resource;
        token.text = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
    } else if (kDateLetters.find(letter) != std::string_view::npos) {
        token.kind = Kind::date;
    } else if (letter == 'e') {
        token.kind = Kind::extension;
    } else if (const auto *path =
                   std::find_if(kPathCodes.begin(), kPathCodes.end(),
                                [letter](const PathCode &code) { return code.letter == letter; });
               path != kPathCodes.end()) {
        token.kind = Kind::path;
        token.text = path->resource;
    }
    tokens.push_back(std::move(token));
    return text;
}

bool stands_for_path(const NameToken &token) {
    return token.kind == Kind::path || token.kind == Kind::resource;
}

/// The set time over a date: year, month and day as they are; hour and minute are the codes' work.
DateRecord with_set_time(DateRecord date, const DateRecord &set_time) {
    if (set_time.year >= 0) date.year = set_time.year;
    if (set_time.month >= 0) date.month = set_time.month;
    if (set_time.day >= 0) date.day = set_time.day;
    return date;
}

/// Writes date codes, notes the fields written and the smallest time step.
class DateWriter {
public:
    DateWriter(const DateRecord &date, const DateRecord &set_time)
        : date_(with_set_time(date, set_time)), set_(set_time) {
        if (!is_missing(set_.day) && set_.day < 0 && date_.day > 0) date_.day -= date_.day % day_step();
    }

    std::string write(const NameToken &token, ExpandedName &expanded) {
        switch (token.letter) {
        case 'Y': return year(token.width, expanded);
        case 'y': return short_year(token.width, expanded);
        case 'm': expanded.date.month = date_.month; return number(date_.month, 2);
        case 'b': return month_name(expanded);
        case 'd': return day(token.width, expanded);
        case 'j': return day_of_year(token.width, expanded);
        case 'h': return time(date_.hour, set_.hour, token.width, kHourSeconds, expanded.date.hour, expanded);
        default:
            return time(date_.minute, set_.minute, token.width, kMinuteSeconds, expanded.date.minute,
                        expanded);
        }
    }

private:
    static std::string number(int value, int digits) {
        return format_text("%0*d", digits, std::max(value, 0));
    }

    static void lower_period(std::int64_t seconds, ExpandedName &expanded) {
        const int step = static_cast<int>(std::min<std::int64_t>(seconds, std::numeric_limits<int>::max()));
        if (is_missing(expanded.period) || step < expanded.period) expanded.period = step;
    }

    [[nodiscard]] int day_step() const {
        return set_.day < 0 && !is_missing(set_.day) ? -std::max(set_.day, -kWidestCode) : 1;
    }

    std::string year(int width, ExpandedName &expanded) const {
        if (date_.year < 0) return "0000";
        expanded.date.year = date_.year - date_.year % width;
        return number(expanded.date.year, 4);
    }

    std::string short_year(int width, ExpandedName &expanded) const {
        if (date_.year < 0) return "00";
        const int in_century = date_.year % 100;
        expanded.date.year = date_.year - in_century % width;
        return number(expanded.date.year % 100, 2);
    }

    std::string month_name(ExpandedName &expanded) const {
        expanded.date.month = date_.month;
        const std::string name = DATE_month_lower(date_.month);
        return name.empty() ? "xxx" : name;
    }

    std::string day(int width, ExpandedName &expanded) const {
        expanded.date.day = date_.day;
        lower_period(std::int64_t{kDaySeconds} * (day_step() > 1 ? day_step() : width), expanded);
        return number(date_.day, 2);
    }

    std::string day_of_year(int width, ExpandedName &expanded) const {
        int julian = date_.julian;
        if (date_.year >= 0 && date_.month > 0 && date_.day > 0)
            DATE_monday_julian(date_.year, date_.month, date_.day, julian);
        expanded.date.julian = julian;
        expanded.date.month = date_.month;
        expanded.date.day = date_.day;
        lower_period(std::int64_t{kDaySeconds} * (day_step() > 1 ? day_step() : width), expanded);
        return number(julian, 3);
    }

    /// Hour or minute. A negative set value is -(offset * 100 + step): the time of a cycle, such as 03, 09,
    /// 15 and 21 for -306.
    static std::string time(int value, int set, int width, int unit, int &field, ExpandedName &expanded) {
        if (set < 0 && !is_missing(set)) {
            const std::int64_t cycle = -std::int64_t{set};
            const std::int64_t step = std::max<std::int64_t>(cycle % 100, 1);
            if (value >= 0)
                value = static_cast<int>(value / step * step + std::min<std::int64_t>(cycle / 100, 99));
            lower_period(step * unit, expanded);
        } else {
            if (set >= 0) value = set;
            if (value >= 0) value -= value % width;
            lower_period(std::int64_t{width} * unit, expanded);
        }
        field = value;
        return number(value, 2);
    }

    DateRecord date_;
    DateRecord set_;
};

std::string path_text(const NameToken &token, const NameContext &context) {
    return context.path ? *context.path : FILE_path_text(token);
}

/// A directory brings its own "/" at its end: one that follows in the template is not written twice.
void add_behind(const NameToken *before, const std::string &literal, std::string &name) {
    const bool twice =
        before != nullptr && stands_for_path(*before) && name.ends_with('/') && literal.starts_with('/');
    name += twice ? literal.substr(1) : literal;
}

std::string date_pattern(char letter) {
    switch (letter) {
    case 'Y': return "?[0-9]??";
    case 'b': return "?[a-z]?";
    case 'j': return "?[0-9]?";
    default: return "[0-9]?";
    }
}

const std::string &key_value(const NameToken &token, const NameContext &context) {
    return context.keys[static_cast<unsigned char>(token.letter) % kKeyCount];
}

std::string key_pattern(const NameToken &token, const NameContext &context) {
    const std::string &value = key_value(token, context);
    if (!value.empty()) return FILE_key_text(token, context);
    return token.has_width ? std::string(static_cast<std::size_t>(token.width), '?') : "*";
}

} // namespace

std::vector<NameToken> FILE_split_template(std::string_view text) {
    std::vector<NameToken> tokens;
    bool braced = false;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '%')
            text = take_code(text, braced, tokens);
        else if (c == '{' || c == '}')
            braced = c == '{';
        else
            add_literal(tokens, c == ' ' ? '_' : c, braced);
    }
    return tokens;
}

ExpandedName FILE_expand_template(std::string_view text, const DateRecord &date, const NameContext &context) {
    ExpandedName expanded;
    DateWriter writer(date, context.set_time);
    const NameToken *before = nullptr;
    const std::vector<NameToken> tokens = FILE_split_template(text);
    for (const NameToken &token : tokens) {
        switch (token.kind) {
        case Kind::literal: add_behind(before, token.text, expanded.name); break;
        case Kind::date: expanded.name += writer.write(token, expanded); break;
        case Kind::extension: expanded.name += context.extension; break;
        case Kind::path:
        case Kind::resource: expanded.name += path_text(token, context); break;
        case Kind::key: expanded.name += FILE_key_text(token, context); break;
        }
        before = &token;
    }
    return expanded;
}

std::string FILE_pattern_of_template(std::string_view text, const NameContext &context) {
    std::string pattern;
    const NameToken *before = nullptr;
    const std::vector<NameToken> tokens = FILE_split_template(text);
    for (const NameToken &token : tokens) {
        switch (token.kind) {
        case Kind::literal: add_behind(before, token.text, pattern); break;
        case Kind::date: pattern += date_pattern(token.letter); break;
        case Kind::extension: pattern += context.extension.empty() ? "*" : context.extension; break;
        case Kind::path:
        case Kind::resource: pattern += path_text(token, context); break;
        case Kind::key: pattern += key_pattern(token, context); break;
        }
        before = &token;
    }
    MESS_print(kTraceLevel, "SEARCH: %s\n", pattern.c_str());
    return pattern;
}

std::string FILE_path_text(const NameToken &token) {
    if (token.kind == Kind::path) {
        std::string path;
        return RES_getval(token.text, path, ResourceKind::directory) == 1 ? path : ".";
    }
    const char *value = RES_get(token.text);
    return value != nullptr ? value : "";
}

/// A width beyond the value gives the value: nothing is padded, and what follows in the name stays.
std::string FILE_key_text(const NameToken &token, const NameContext &context) {
    const std::string &value = key_value(token, context);
    if (value.empty()) return "0";
    return token.has_width ? value.substr(0, static_cast<std::size_t>(token.width)) : value;
}

std::size_t FILE_count_separators(const std::vector<NameToken> &tokens, std::size_t first, bool with_braced) {
    std::size_t count = 0;
    for (std::size_t i = first; i < tokens.size(); ++i)
        if (tokens[i].kind == Kind::literal && (with_braced || !tokens[i].braced))
            count += static_cast<std::size_t>(
                std::count_if(tokens[i].text.begin(), tokens[i].text.end(),
                              [](char c) { return kSeparators.find(c) != std::string_view::npos; }));
    return count;
}

std::optional<std::string_view> FILE_directory_part(std::string_view name, std::size_t separators,
                                                    bool slash_follows) {
    const std::size_t wanted = slash_follows ? separators : separators + 1;
    std::size_t position = name.size();
    for (std::size_t i = 0; i < wanted; ++i) {
        if (position == 0) return std::nullopt;
        position = name.find_last_of(kSeparators, position - 1);
        if (position == std::string_view::npos) return std::nullopt;
    }
    return name.substr(0, slash_follows ? position : position + 1);
}

std::optional<std::string> FILE_path_of_name(std::string_view text, std::string_view name) {
    const std::vector<NameToken> tokens = FILE_split_template(text);
    const auto path = std::find_if(tokens.begin(), tokens.end(), stands_for_path);
    if (path == tokens.end()) return std::nullopt;
    const auto next = static_cast<std::size_t>(path - tokens.begin()) + 1;
    const bool slash_follows =
        next < tokens.size() && tokens[next].kind == Kind::literal && tokens[next].text.starts_with('/');
    const auto part = FILE_directory_part(name, FILE_count_separators(tokens, next, true), slash_follows);
    if (!part) return std::nullopt;
    return std::string(*part);
}
