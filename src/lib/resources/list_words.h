#pragma once
/// Lists of words such as those of "plot_param": a word alone, or a word, one separator and a value.

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "lib/text/strings.h"

/// One word that a list may hold.
struct WordRule {
    std::string_view word;
    /// Whether the value fits; null for a word that takes none. An empty value always fits.
    bool (*fits)(std::string_view value) = nullptr;
    std::string_view wanted = {};    ///< what the value must be, as in "a number"
    std::string_view no_effect = {}; ///< why a word that is known does nothing
};

/// What stands behind a word and its separator; nothing when the word stands alone.
using ParamValue = std::optional<std::string_view>;

/// All that a list knows of one word: what may follow it, and what it does. `Target` is what it sets.
template <typename Target> struct ParamRow {
    WordRule rule;
    void (*take)(Target &target, ParamValue value);
};

/// The rules of a table, for PARAM_check.
template <typename Target, std::size_t Count>
constexpr std::array<WordRule, Count> PARAM_rules(const std::array<ParamRow<Target>, Count> &rows) {
    std::array<WordRule, Count> rules;
    for (std::size_t i = 0; i < Count; ++i) rules[i] = rows[i].rule;
    return rules;
}

/// Carries out the first row whose word the item is, or begins with when a value may follow. False when there
/// is none.
template <typename Target, std::size_t Count>
bool PARAM_take(std::string_view item, const std::array<ParamRow<Target>, Count> &rows, Target &target) {
    for (const auto &[rule, take] : rows) {
        if (rule.fits == nullptr ? stricmp(item, rule.word) != 0 : !begins_with(item, rule.word)) continue;
        take(target, keyword_value(item, rule.word));
        return true;
    }
    return false;
}

/// Rules for values: any text; a whole number; a number; 1 to 2, 1 to 4, or 2 numbers joined by ":".
[[nodiscard]] bool PARAM_text(std::string_view value);
[[nodiscard]] bool PARAM_integer(std::string_view value);
[[nodiscard]] bool PARAM_number(std::string_view value);
[[nodiscard]] bool PARAM_one_or_two(std::string_view value);
[[nodiscard]] bool PARAM_up_to_four(std::string_view value);
[[nodiscard]] bool PARAM_two(std::string_view value);

/// Tells of every word of a list resource that no list knows and of every value that does not fit.
void PARAM_check(std::string_view resource, std::span<const std::span<const WordRule>> lists);
