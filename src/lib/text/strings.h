#pragma once
/// Text helpers: splitting, comparing without case, formatting into a std::string.

#include <cstdarg>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Splits at every `delimiter`. Trailing delimiters are dropped, empty items between two delimiters are
/// kept. An empty text gives no items.
std::vector<std::string> parse_string(std::string_view text, char delimiter);

/// Compare ignoring ASCII case; below, equal to or above 0. `strnicmp` compares the first `n` characters, so
/// a text shorter than n must match to its end.
int stricmp(std::string_view a, std::string_view b);
int strnicmp(std::string_view a, std::string_view b, std::size_t n);

/// True when `text` begins with `prefix`, ignoring ASCII case.
[[nodiscard]] bool begins_with(std::string_view text, std::string_view prefix);

/// The value of "keyword, separator, value", whatever the one character between them: "2" of "scale=2" and of
/// "scale:2" for "scale". Case is ignored. Nothing when the item does not begin with the keyword or ends with
/// it; empty when it ends with the separator.
[[nodiscard]] std::optional<std::string_view> keyword_value(std::string_view item, std::string_view keyword);

/// Replaces every `from` by `to`.
void fill_string(std::string &text, char from, char to);

/// Removes every line feed and carriage return, then the trailing blanks.
void wstrim_string(std::string &text);

/// Without the blanks, tabs and line ends at both sides.
std::string_view trimmed(std::string_view text);

/// "0" to "9", whatever the locale.
constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

std::string lower_case(std::string_view text);

/// printf into a string of the needed length.
std::string format_text(const char *format, ...) __attribute__((format(printf, 1, 2)));
std::string vformat_text(const char *format, std::va_list arguments) __attribute__((format(printf, 1, 0)));

/// A number with at least `decimals` decimals and no more than `significant` significant digits, the number
/// format "<significant>.<field>.<decimals>" of bar and map labels: set_num(0.25F, 2, 0) is "0.25",
/// set_num(10, 2, 0) is "10", set_num(-31.5F, 2, 0) is "-32". Never "-0"; digits before the point always
/// stand.
std::string set_num(float value, int significant, int decimals);
