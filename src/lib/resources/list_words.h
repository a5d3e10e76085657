#pragma once
/// Lists of words such as those of "plot_param": a word alone, or a word, one separator and a value.

#include <span>
#include <string_view>

/// One word that a list may hold.
struct WordRule {
    std::string_view word;
    /// Whether the value fits; null for a word that takes none. An empty value always fits.
    bool (*fits)(std::string_view value) = nullptr;
    std::string_view wanted = {};    ///< what the value must be, as in "a number"
    std::string_view no_effect = {}; ///< why a word that is known does nothing
};

/// Rules for values: any text; a whole number; a number; 1 to 2, 1 to 4, or 2 numbers joined by ":".
[[nodiscard]] bool PARAM_text(std::string_view value);
[[nodiscard]] bool PARAM_integer(std::string_view value);
[[nodiscard]] bool PARAM_number(std::string_view value);
[[nodiscard]] bool PARAM_one_or_two(std::string_view value);
[[nodiscard]] bool PARAM_up_to_four(std::string_view value);
[[nodiscard]] bool PARAM_two(std::string_view value);

/// Tells of every word of a list resource that no list knows and of every value that does not fit.
void PARAM_check(std::string_view resource, std::span<const std::span<const WordRule>> lists);
