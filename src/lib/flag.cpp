#include "lib/flag.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "lib/missing.h"
#include "lib/text.h"
#include "lib/words.h"

namespace {

struct State {
    std::array<std::int64_t, kFlagCount> slots{};
    /// The two sums are 1 like the rest until the first change of a component.
    std::array<int, kPlotComponentCount> components{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
};
State state;

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

bool is_slot(int id) {
    return id >= 0 && id < kFlagCount;
}
bool is_component(int index) {
    return index >= 0 && index < kPlotComponentCount;
}

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
    for (const Word &word : words) known.push_back(word.name);
    if (!further.empty()) known.push_back(further);
    WORD_unknown(resource, text, known);
}

void switch_component(std::string_view name, int value) {
    constexpr std::string_view nothing = "none";
    if (name.empty()) return;
    if (stricmp(name, nothing) == 0) {
        FLAG_setplot(kPlotAny, 0);
        return;
    }
    const Word *word = find_word(kDrawWords, name);
    if (word == nullptr) {
        tell_unknown("draw", name, kDrawWords, nothing);
        return;
    }
    FLAG_setplot(word->value, value);
    if (word->value == kPlotText) FLAG_setplot(kPlotBorder, value);
}

} // namespace

int FLAG_get(int id) {
    return static_cast<int>(static_cast<std::uint32_t>(FLAG_getl(id)));
}

std::int64_t FLAG_getl(int id) {
    return is_slot(id) ? state.slots[static_cast<std::size_t>(id)] : 0;
}

int FLAG_set(int id, int value) {
    return FLAG_setl(id, value);
}

int FLAG_setl(int id, std::int64_t value) {
    if (!is_slot(id)) return -1;
    state.slots[static_cast<std::size_t>(id)] = value;
    return 0;
}

void FLAG_reset(int value) {
    FLAG_resetl(value);
}

void FLAG_resetl(std::int64_t value) {
    state.slots.fill(value);
}

int FLAG_batch() {
    return FLAG_get(kFlagBatch) > 0 ? 1 : 0;
}

int FLAG_help() {
    return FLAG_get(kFlagHelp) > 0 ? 1 : 0;
}

void FLAG_set_batch(int value) {
    FLAG_set(kFlagBatch, value);
}

void FLAG_setplot(int index, int value) {
    if (!is_component(index)) return;
    auto &components = state.components;
    components[static_cast<std::size_t>(index)] = value;
    if (index == kPlotAny) std::fill_n(components.begin(), kPlotAny, value);
    if (index == kPlotText) std::fill_n(components.begin() + kPlotTextUL, 6, value);
    components[kPlotText] =
        std::accumulate(components.begin() + kPlotTextUL, components.begin() + kPlotData, 0);
    components[kPlotAny] = std::accumulate(components.begin(), components.begin() + kPlotAny, 0);
}

int FLAG_getplot(int index) {
    return is_component(index) ? state.components[static_cast<std::size_t>(index)] : 0;
}

void FLAG_resetplot(int value) {
    state.components.fill(value);
}

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
