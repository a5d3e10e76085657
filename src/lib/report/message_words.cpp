#include "lib/report/message_words.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    LogRefusal refuse_log = nullptr;
};
State state;

struct LevelWord {
    std::string_view name;
    unsigned mask;
};
constexpr std::array kLevelWords{
    LevelWord{"none", 0},       LevelWord{"print", kPrint}, LevelWord{"error", kError},
    LevelWord{"warn", kWarn},   LevelWord{"mess", kMess},   LevelWord{"out1", kOut1},
    LevelWord{"out2", kOut2},   LevelWord{"out3", kOut3},   LevelWord{"out4", kOut4},
    LevelWord{"debug", kDebug},
};

/// The bit of each group that the sub-level letters "a" to "d" keep.
constexpr std::array kSubLevels{0x11111111U, 0x22222222U, 0x44444444U, 0x88888888U};

/// How a log file item of a "message" value is opened.
struct LogWord {
    std::string_view name;
    const char *mode; ///< null: opened for each message
    MessageOutput output;
};
constexpr std::array kLogWords{
    LogWord{"@fi", "a", MessageOutput::log_stamped}, LogWord{"+fi", "a", MessageOutput::terminal},
    LogWord{"-fi", "w", MessageOutput::terminal},    LogWord{"dfi", nullptr, MessageOutput::log_reopened},
    LogWord{"fi", "a", MessageOutput::log_only},
};

/// Mask of a level word, which may end in a sub-level letter. An unknown word is "none".
unsigned level_mask(std::string_view word) {
    unsigned mask = 0;
    for (const LevelWord &level : kLevelWords)
        if (begins_with(word, level.name)) mask = level.mask;
    const std::string last = lower_case(word.substr(word.empty() ? 0 : word.size() - 1));
    if (last >= "a" && last <= "d") mask &= kSubLevels[static_cast<std::size_t>(last[0] - 'a')];
    return mask;
}

/// A word that is none has the meaning of "none": it is told before it silences all.
void tell_unknown_word(std::string_view word) {
    for (const LevelWord &level : kLevelWords)
        if (begins_with(word, level.name)) return;
    std::vector<std::string_view> known{"page", "nopage", "line"};
    for (const LevelWord &level : kLevelWords) known.push_back(level.name);
    for (const LogWord &log : kLogWords) known.push_back(log.name);
    WORD_unknown("message", word, known, "it counts as \"none\"");
    WORD_flush();
}

void apply_level_word(std::string_view item) {
    tell_unknown_word(item.substr(item.starts_with('+') || item.starts_with('-') ? 1 : 0));
    if (item.starts_with('+'))
        MESS_set(kAddLevels, level_mask(item.substr(1)));
    else if (item.starts_with('-'))
        MESS_set(kRemoveLevels, level_mask(item.substr(1)));
    else
        MESS_set(kSetLevels, level_mask(item));
}

/// Sentences that wait are told where the user sees them.
void open_log(const LogWord &word, std::string_view name) {
    const char *refusal = name.starts_with('|') ? "A log file is no command: " : nullptr;
    if (state.refuse_log != nullptr && state.refuse_log(name)) refusal = "A log file is no input file: ";
    if (refusal != nullptr) {
        WORD_tell("message", refusal + std::string(name));
        WORD_flush();
        return;
    }
    if (!MESS_open_log(name, word.mode)) {
        const std::string cause = std::strerror(errno);
        WORD_tell("message", "Unable to open log file: " + std::string(name) + ": " + cause);
        WORD_flush();
    }
    MESS_set_out(word.output);
}

bool apply_log_word(std::string_view item) {
    for (const LogWord &word : kLogWords) {
        if (!begins_with(item, word.name)) continue;
        open_log(word, keyword_value(item, word.name).value_or(""));
        return true;
    }
    return false;
}

void apply_item(std::string_view item) {
    if (apply_log_word(item)) return;
    if (begins_with(item, "nopage")) {
        MESS_set_page(kNeverPause);
    } else if (begins_with(item, "page")) {
        MESS_set_page(kPauseAtScreenful);
    } else if (begins_with(item, "line")) {
        const std::string_view number = keyword_value(item, "line").value_or("");
        if (!WORD_is_integer(number)) WORD_not("message", number, "a number of lines");
        MESS_set_max_lines(Scanner(number).integer().value_or(0));
    } else {
        apply_level_word(item);
    }
}

} // namespace

int MESS_set_str(std::string_view text) {
    MESS_set(kMarkAsSet, 0);
    for (const std::string &item : parse_string(text, ',')) apply_item(trimmed(item));
    return 0;
}

void MESS_refuse_log(LogRefusal refuses) {
    state.refuse_log = refuses;
}
