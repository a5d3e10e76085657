#include "lib/resources/list_words.h"

#include <cctype>
#include <string>
#include <vector>

#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"

namespace {

using ParamLists = std::span<const std::span<const WordRule>>;

/// A letter or digit behind a word belongs to it; it is no separator, though it would be taken for one.
bool ends_word(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_';
}

bool is_begun_by(std::string_view item, const WordRule &row) {
    if (!begins_with(item, row.word)) return false;
    if (item.size() == row.word.size()) return true;
    return row.fits != nullptr && ends_word(item[row.word.size()]);
}

const WordRule *find(std::string_view item, ParamLists lists) {
    for (const auto &list : lists)
        for (const WordRule &row : list)
            if (is_begun_by(item, row)) return &row;
    return nullptr;
}

std::vector<std::string_view> words_of(ParamLists lists) {
    std::vector<std::string_view> words;
    for (const auto &list : lists)
        for (const WordRule &row : list) words.push_back(row.word);
    return words;
}

std::string_view word_of(std::string_view item) {
    std::size_t length = 0;
    while (length < item.size() && !ends_word(item[length])) ++length;
    return item.substr(0, length);
}

void tell_unknown(std::string_view resource, std::string_view item, ParamLists lists) {
    const std::string_view word = word_of(item);
    if (find(word, lists) != nullptr)
        WORD_tell(resource, '"' + std::string(item) + "\" is not known, since \"" + std::string(word) +
                                "\" takes no value");
    else
        WORD_unknown(resource, word.empty() ? item : word, words_of(lists));
}

void check_item(std::string_view resource, std::string_view item, ParamLists lists) {
    const WordRule *row = find(item, lists);
    if (row == nullptr) {
        tell_unknown(resource, item, lists);
        return;
    }
    if (!row->no_effect.empty()) {
        WORD_tell(resource, '"' + std::string(row->word) + "\" " + std::string(row->no_effect));
        return;
    }
    const auto value = keyword_value(item, row->word);
    if (row->fits == nullptr || !value || value->empty()) return;
    if (!row->fits(*value))
        WORD_tell(resource, '"' + std::string(*value) + "\" behind \"" + std::string(row->word) +
                                "\" is not " + std::string(row->wanted));
}

} // namespace

bool PARAM_text(std::string_view /*value*/) {
    return true;
}

bool PARAM_integer(std::string_view value) {
    return WORD_is_integer(value);
}

bool PARAM_number(std::string_view value) {
    return WORD_is_number(value);
}

bool PARAM_one_or_two(std::string_view value) {
    return WORD_are_numbers(value, 1, 2);
}

bool PARAM_up_to_four(std::string_view value) {
    return WORD_are_numbers(value, 1, 4);
}

bool PARAM_two(std::string_view value) {
    return WORD_are_numbers(value, 2, 2);
}

void PARAM_check(std::string_view resource, ParamLists lists) {
    for (const std::string &item : RES_getvals(resource))
        if (const std::string_view word = trimmed(item); !word.empty()) check_item(resource, word, lists);
}
