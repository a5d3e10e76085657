#include "lib/resources/flag_words.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "lib/options/flags.h"
#include "lib/report/misfits.h"
#include "lib/text/strings.h"

namespace {

struct Word {
    std::string_view name;
    int value;
};

constexpr std::array kPlotTypes{
    Word{"raw", 0},     Word{"none", kPlotTypeNone},
    Word{"value", 17},  Word{"gvalue", 17},
    Word{"cf", 15},     Word{"lcf", 16},
    Word{"ln", 12},     Word{"dln", 13},
    Word{"ndln", 14},   Word{"vect", 21},
    Word{"barb", 22},   Word{"strm", 23},
    Word{"stream", 23}, Word{"an", 54},
    Word{"number", 54}, Word{"pm", 55},
    Word{"stuve", 61},  Word{"skewt", 62},
    Word{"ema", 63},    Word{"teph", 64},
    Word{"rteph", 65},  Word{"hodo", 69},
};

constexpr std::array kFileParams{
    Word{"use", 3}, Word{"over", 1}, Word{"calc", 1}, Word{"reuse", 3}, Word{"recalc", 1}, Word{"app", 2},
};

constexpr std::array kDrawWords{
    Word{"text_ul", kPlotTextUL}, Word{"text_uc", kPlotTextUC}, Word{"text_ur", kPlotTextUR},
    Word{"text_ll", kPlotTextLL}, Word{"text_lc", kPlotTextLC}, Word{"text_lr", kPlotTextLR},
    Word{"text", kPlotText},      Word{"data", kPlotData},      Word{"map", kPlotMap},
    Word{"grid", kPlotGrid},      Word{"sum", kPlotSummary},    Word{"bord", kPlotBorder},
    Word{"all", kPlotAny},
};

/// The word of the table that `text` is or whose longer form it is: "sum" also as "summary", but never "text"
/// as "text_xx".
template <std::size_t Count>
const Word *find_word(const std::array<Word, Count> &words, std::string_view text) {
    const auto fits = [text](const Word &word) {
        if (!begins_with(text, word.name)) return false;
        const char next = text.size() > word.name.size() ? text[word.name.size()] : 'a';
        return (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z');
    };
    const auto found = std::find_if(words.begin(), words.end(), fits);
    return found == words.end() ? nullptr : &*found;
}

template <std::size_t Count>
void tell_unknown(std::string_view resource, std::string_view text, const std::array<Word, Count> &words,
                  std::string_view further = {}) {
    std::vector<std::string_view> known;
    known.reserve(Count + 1);
    for (const Word &word : words) known.push_back(word.name);
    if (!further.empty()) known.push_back(further);
    WORD_unknown(resource, text, known);
}

void switch_component(std::string_view name, int value) {
    constexpr std::string_view kNothing = "none";
    if (name.empty()) return;
    if (stricmp(name, kNothing) == 0) {
        FLAG_setplot(kPlotAny, 0);
        return;
    }
    const Word *word = find_word(kDrawWords, name);
    if (word == nullptr) {
        tell_unknown("draw", name, kDrawWords, kNothing);
        return;
    }
    FLAG_setplot(word->value, value);
    if (word->value == kPlotText) FLAG_setplot(kPlotBorder, value);
}

} // namespace

void FLAG_set_draw(std::string_view value) {
    bool first = true;
    for (const std::string &item : parse_string(value, ',')) {
        std::string_view name = trimmed(item);
        const bool off = name.starts_with('-');
        if (off || name.starts_with('+'))
            name.remove_prefix(1);
        else if (first)
            FLAG_resetplot(0);
        switch_component(name, off ? 0 : 1);
        first = false;
    }
}

void FLAG_set_plot_type(std::string_view word) {
    const auto found = std::find_if(kPlotTypes.begin(), kPlotTypes.end(),
                                    [word](const Word &w) { return stricmp(w.name, word) == 0; });
    if (found != kPlotTypes.end())
        FLAG_set(kFlagPlotType, found->value);
    else if (!word.empty())
        tell_unknown("plot_type", word, kPlotTypes);
}

void FLAG_set_file_param(std::string_view word) {
    if (const Word *found = find_word(kFileParams, word))
        FLAG_set(kFlagFileParam, found->value);
    else if (!word.empty())
        tell_unknown("file_param", word, kFileParams);
}
