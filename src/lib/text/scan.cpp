#include "lib/text/scan.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>

#include "lib/text/strings.h"

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

} // namespace

void Scanner::skip_blanks() {
    position_ = std::min(text_.find_first_not_of(kBlanks, position_), text_.size());
}

std::optional<std::int64_t> Scanner::long_integer(std::size_t width) {
    if (failed_) return std::nullopt;
    skip_blanks();
    const std::string_view field = rest().substr(0, width);
    const bool negative = field.starts_with('-');
    std::size_t at = negative || field.starts_with('+') ? 1 : 0;
    failed_ = at >= field.size() || !is_digit(field[at]);
    if (failed_) return std::nullopt;
    // Counted downwards, since the most negative number has no positive twin.
    constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t value = 0;
    for (; at < field.size() && is_digit(field[at]); ++at) {
        const int digit = field[at] - '0';
        value = value < (kLowest + digit) / 10 ? kLowest : value * 10 - digit;
    }
    position_ += at;
    if (negative) return value;
    return value == kLowest ? std::numeric_limits<std::int64_t>::max() : -value;
}

std::optional<int> Scanner::integer(std::size_t width) {
    const auto value = long_integer(width);
    if (!value) return std::nullopt;
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(*value, Limits::min(), Limits::max()));
}

std::optional<float> Scanner::real() {
    if (failed_) return std::nullopt;
    skip_blanks();
    std::string_view field = rest();
    const std::size_t plus = field.starts_with('+') && !field.substr(1).starts_with('-') ? 1 : 0;
    field.remove_prefix(plus);
    // Words such as "inf" and "nan" are names here, never numbers.
    const std::size_t first = field.starts_with('-') ? 1 : 0;
    failed_ = first >= field.size() || !(is_digit(field[first]) || field[first] == '.');
    if (failed_) return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    failed_ = error == std::errc::invalid_argument;
    if (failed_) return std::nullopt;
    const auto length = static_cast<std::size_t>(end - field.data());
    if (error == std::errc::result_out_of_range)
        value = std::strtod(std::string(field, 0, length).c_str(), nullptr);
    position_ += plus + length;
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}

std::optional<std::string_view> Scanner::word(std::size_t width) {
    if (failed_) return std::nullopt;
    skip_blanks();
    return until(kBlanks, width);
}

std::optional<std::string_view> Scanner::until(std::string_view stops, std::size_t width) {
    if (failed_) return std::nullopt;
    std::string_view found = rest().substr(0, width);
    found = found.substr(0, found.find_first_of(stops));
    failed_ = found.empty();
    if (failed_) return std::nullopt;
    position_ += found.size();
    return found;
}

bool Scanner::literal(char expected) {
    failed_ = failed_ || at_end() || text_[position_] != expected;
    if (!failed_) ++position_;
    return !failed_;
}

bool Scanner::skip(std::string_view passed) {
    const std::size_t end = std::min(text_.find_first_not_of(passed, position_), text_.size());
    failed_ = failed_ || end == position_;
    if (!failed_) position_ = end;
    return !failed_;
}
