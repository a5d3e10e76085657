#pragma once
/// Formatted scanning as file names, date labels and resource values need it: fixed-width numbers and words,
/// taken one after the other, with the rules of the C library's conversions and none of their traps.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// A cursor over a text that must outlive it. A conversion that does not fit gives nullopt (or false) and
/// stops the scanner: everything after it fails too, so a chain of conversions needs one test at its end.
class Scanner {
public:
    static constexpr std::size_t kAnyWidth = std::string_view::npos;

    explicit Scanner(std::string_view text) : text_(text) {}

    /// "%<width>d": skips blanks, then an optional sign and digits, `width` characters at most. A number
    /// outside the range of the type reads as the nearest one inside.
    std::optional<int> integer(std::size_t width = kAnyWidth);
    std::optional<std::int64_t> long_integer(std::size_t width = kAnyWidth);
    /// "%f": skips blanks, then a decimal number. Always finite: beyond the range of float it is the largest
    /// float.
    std::optional<float> real();
    /// "%<width>s": skips blanks, then 1 to `width` characters that are not blank.
    std::optional<std::string_view> word(std::size_t width = kAnyWidth);
    /// "%<width>[^stops]": 1 to `width` characters that are not among `stops`; blanks are not skipped.
    std::optional<std::string_view> until(std::string_view stops, std::size_t width = kAnyWidth);
    /// The next character is `expected`; blanks are not skipped.
    bool literal(char expected);
    /// "%*[passed]": passes over one or more characters that are among `passed`.
    bool skip(std::string_view passed);
    /// A blank of a format: any number of blanks, tabs and line ends.
    void skip_blanks();

    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool at_end() const { return position_ == text_.size(); }
    [[nodiscard]] std::string_view rest() const { return text_.substr(position_); }
    [[nodiscard]] std::size_t position() const { return position_; }

private:
    std::string_view text_;
    std::size_t position_ = 0;
    bool failed_ = false;
};
