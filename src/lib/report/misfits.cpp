#include "lib/report/misfits.h"

#include <algorithm>
#include <set>

#include "lib/options/table.h"
#include "lib/report/message.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    std::set<std::string, std::less<>> told;
    std::vector<std::string> waiting;
    int holds = 0;
};
State state;

void print(const std::string &line) {
    MESS_print(kWarn, "%s\n", line.c_str());
}

std::size_t common_beginning(const std::string &a, const std::string &b) {
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<std::size_t>(end - a.begin());
}

std::string quoted(std::string_view word) {
    return '"' + std::string(word) + '"';
}

/// How an option is called: "-dr (draw)" for the resource "draw"; any other text as it is.
std::string option_of(std::string_view resource) {
    for (const int id : RES_keyed_ids())
        if (const ResourceDescriptor *row = RES_descriptor(id); row->name == resource)
            return format_text("-%s (%s)", std::string(row->option).c_str(), std::string(row->name).c_str());
    return std::string(resource);
}

/// Letters to be changed, put in, left out, or swapped with their neighbour to make `b` of `a`, ignoring
/// case.
std::size_t distance_of(std::string_view a, std::string_view b) {
    const std::string from = lower_case(a), to = lower_case(b);
    const std::size_t width = to.size() + 1;
    // Rows of the table of distances between beginnings; entry k is that to the first k letters of `to`.
    std::vector<std::size_t> before(width), above(width), row(width);
    for (std::size_t k = 0; k < width; ++k) above[k] = k;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = i;
        for (std::size_t k = 1; k < width; ++k) {
            const std::size_t change = from[i - 1] == to[k - 1] ? 0 : 1;
            row[k] = std::min({above[k] + 1, row[k - 1] + 1, above[k - 1] + change});
            if (i > 1 && k > 1 && from[i - 1] == to[k - 2] && from[i - 2] == to[k - 1])
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
        before.swap(above);
        above.swap(row);
    }
    return above.back();
}

/// The known word at the smallest distance, of several the one with the longest common beginning; empty when
/// none is near: a third of the word's letters may be wrong, and one at least.
std::string_view nearest_of(std::string_view word, KnownWords known) {
    constexpr std::size_t kLettersPerFault = 3;
    // Far more than any word that is known: what is longer is not worth the table.
    constexpr std::size_t kLongest = 64;
    if (word.size() > kLongest) return {};
    const std::string wanted = lower_case(word);
    std::size_t smallest = std::max<std::size_t>(word.size() / kLettersPerFault, 1);
    std::size_t longest_beginning = 0;
    std::string_view nearest;
    for (const std::string_view candidate : known) {
        const std::size_t distance = distance_of(word, candidate);
        // A word of which no letter is right is no likeness.
        if (distance > smallest || distance >= std::max(word.size(), candidate.size())) continue;
        const std::size_t beginning = common_beginning(wanted, lower_case(candidate));
        if (!nearest.empty() && distance == smallest && beginning <= longest_beginning) continue;
        smallest = distance;
        longest_beginning = beginning;
        nearest = candidate;
    }
    return nearest;
}

} // namespace

void WORD_tell(std::string_view resource, std::string_view sentence) {
    std::string line = option_of(resource) + ": " + std::string(sentence);
    if (!state.told.insert(line).second) return;
    if (state.holds > 0)
        state.waiting.push_back(std::move(line));
    else
        print(line);
}

void WORD_unknown(std::string_view resource, std::string_view word, KnownWords known, std::string_view then) {
    std::string sentence = quoted(word) + " is not known";
    if (const std::string_view nearest = nearest_of(word, known); !nearest.empty())
        sentence += ", the nearest is " + quoted(nearest);
    if (!then.empty()) sentence.append("; ").append(then);
    WORD_tell(resource, sentence);
}

void WORD_not(std::string_view resource, std::string_view word, std::string_view wanted) {
    WORD_tell(resource, quoted(word) + " is not " + std::string(wanted));
}

void WORD_forget() {
    state.told.clear();
}

void WORD_flush() {
    for (const std::string &line : state.waiting) print(line);
    state.waiting.clear();
}

WordHold::WordHold() {
    ++state.holds;
}

WordHold::~WordHold() {
    if (--state.holds == 0) WORD_flush();
}

bool WORD_is_number(std::string_view text) {
    Scanner scan(trimmed(text));
    return scan.real().has_value() && scan.at_end();
}

bool WORD_is_integer(std::string_view text) {
    Scanner scan(trimmed(text));
    return scan.long_integer().has_value() && scan.at_end();
}

bool WORD_are_numbers(std::string_view text, std::size_t least, std::size_t most, char separator) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin <= text.size(); ++count) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (!WORD_is_number(text.substr(begin, end - begin))) return false;
        begin = end + 1;
    }
    return count >= least && count <= most;
}
