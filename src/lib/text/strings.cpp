#include "lib/text/strings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::vector<std::string> parse_string(std::string_view text, char delimiter) {
    std::vector<std::string> items;
    while (text.ends_with(delimiter)) text.remove_suffix(1);
    if (text.empty()) return items;
    std::size_t start = 0;
    for (std::size_t end = text.find(delimiter); end != std::string_view::npos;
         end = text.find(delimiter, start)) {
        items.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    items.emplace_back(text.substr(start));
    return items;
}

int stricmp(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i)
        if (const int difference =
                static_cast<unsigned char>(lower(a[i])) - static_cast<unsigned char>(lower(b[i])))
            return difference;
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

int strnicmp(std::string_view a, std::string_view b, std::size_t n) {
    return stricmp(a.substr(0, n), b.substr(0, n));
}

bool begins_with(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && strnicmp(text, prefix, prefix.size()) == 0;
}

std::optional<std::string_view> keyword_value(std::string_view item, std::string_view keyword) {
    if (!begins_with(item, keyword) || item.size() == keyword.size()) return std::nullopt;
    return item.substr(keyword.size() + 1);
}

void fill_string(std::string &text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
}

void wstrim_string(std::string &text) {
    std::erase_if(text, [](char c) { return c == '\n' || c == '\r'; });
    text.erase(text.find_last_not_of(' ') + 1);
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lower_case(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string format_text(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = vformat_text(format, arguments);
    va_end(arguments);
    return text;
}

std::string vformat_text(const char *format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    std::string text(127, '\0');
    const int length = std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    const auto needed = static_cast<std::size_t>(std::max(length, 0));
    const bool complete = needed <= text.size();
    text.resize(needed);
    if (!complete) std::vsnprintf(text.data(), needed + 1, format, again);
    va_end(again);
    return text;
}

std::string set_num(float value, int significant, int decimals) {
    if (!std::isfinite(value)) return format_text("%g", static_cast<double>(value));
    // No float needs more: the smallest has its last digit in the 149th decimal, the largest has 39 places.
    constexpr int kMostDecimals = 150;
    significant = std::clamp(significant, 1, kMostDecimals);
    decimals = std::clamp(decimals, 0, kMostDecimals);
    // The exponent is taken after rounding, so that 9.96 in two digits is "10" and not "10.0".
    const std::string scientific = format_text("%.*e", significant - 1, static_cast<double>(value));
    const int exponent = std::atoi(scientific.c_str() + scientific.find('e') + 1);
    const int shown = std::clamp(significant - 1 - exponent, decimals, kMostDecimals);
    std::string text = format_text("%.*f", shown, static_cast<double>(value));
    if (shown > 0) {
        const std::size_t point = text.find('.');
        const std::size_t least = decimals > 0 ? point + 1 + static_cast<std::size_t>(decimals) : point;
        while (text.size() > least && (text.back() == '0' || text.back() == '.')) text.pop_back();
    }
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
    return text;
}
