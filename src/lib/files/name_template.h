#pragma once
/// The template language of file names: "%Dnids/%s/%y%m%d%h%n.nids". Pure functions of a template and what
/// its codes stand for; which template applies is told by file_naming.h.
/// Sources: name_reading.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lib/system/calendar.h"

/// Keys are addressed by a 7-bit character.
inline constexpr std::size_t kKeyCount = 128;

/// One element of a template. Widths are at least 1.
struct NameToken {
    enum class Kind {
        literal,   ///< `text`
        date,      ///< `letter` Y, y, m, b, d, j, h or n
        extension, ///< %e
        path,      ///< the resource `text`; "." when unset
        resource,  ///< the resource `text`; nothing when unset
        key        ///< the key `letter`
    };
    Kind kind;
    char letter;
    int width;
    bool has_width;
    bool braced; ///< stands between "{" and "}": written, but never looked for in a name
    std::string text;
};
std::vector<NameToken> FILE_split_template(std::string_view text);

/// What the codes of a template stand for.
struct NameContext {
    std::string extension;
    std::optional<std::string> path; ///< replaces every path code
    DateRecord set_time;             ///< overrides the date
    const std::array<std::string, kKeyCount> &keys;
};

struct ExpandedName {
    std::string name;
    DateRecord date;       ///< the fields that the name represents
    int period = kMissing; ///< seconds; the smallest time step of the template
};
ExpandedName FILE_expand_template(std::string_view text, const DateRecord &date, const NameContext &context);

/// Shell pattern of all the names that a template can make.
std::string FILE_pattern_of_template(std::string_view text, const NameContext &context);

/// The directory part of a full name that stands for the template's path code; nothing when the template has
/// no path code or the name too few directories.
[[nodiscard]] std::optional<std::string> FILE_path_of_name(std::string_view text, std::string_view name);

struct NameReading {
    std::string name;      ///< the full name
    DateRecord date;       ///< begins as the set time; fields that the name tells replace it
    std::string extension; ///< as given, or read from the name when none was
    bool fits = false;     ///< false: the name is not one of the template and is taken as it stands
    bool dated = false;    ///< a date code was read
};
NameReading FILE_read_by_template(std::string_view text, std::string_view name, const NameContext &context);

/// What the resource behind a path code gives: a directory with "/" at its end ("." when unset), or for
/// "%{name}" the value as it is.
std::string FILE_path_text(const NameToken &token);
/// The value of a key in a name: its first `width` characters when the code has a width, "0" when it is
/// empty.
std::string FILE_key_text(const NameToken &token, const NameContext &context);
/// The separators "/", "\" and ":" in the literal text from token `first` on.
std::size_t FILE_count_separators(const std::vector<NameToken> &tokens, std::size_t first, bool with_braced);
/// The beginning of `name` that leaves `separators` of its separators behind; the remainder begins with a
/// separator when `slash_follows`, else behind one. Nothing when there are too few.
[[nodiscard]] std::optional<std::string_view> FILE_directory_part(std::string_view name,
                                                                  std::size_t separators, bool slash_follows);
