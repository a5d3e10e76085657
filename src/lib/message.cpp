#include "lib/message.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "lib/calendar.h"
#include "lib/flag.h"
#include "lib/process.h"
#include "lib/scan.h"
#include "lib/stream.h"
#include "lib/text.h"
#include "lib/words.h"

namespace {

enum Paging : int { kNeverPause = 0, kPauseWhereAsked = 1, kPauseAtScreenful = 2 };

constexpr int kDefaultMaxLines = 22;

struct State {
    unsigned mask = kPrint | kError | kWarn | kMess | kOut1 | kOut2;
    int set_count = 0; ///< explicit level settings so far
    MessageOutput output = MessageOutput::terminal;
    int paging = kPauseWhereAsked;
    int max_lines = kDefaultMaxLines;
    int line_count = 0; ///< lines on the terminal since the last pause
    Stream log;         ///< closed between messages when `output` is log_reopened
    std::string log_name;
    bool log_lost = false; ///< the log could not be written to its end, and that was told
    LogRefusal refuse_log = nullptr;
    Stream copy; ///< the stream of MESS_file
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

unsigned with_lower_bits(unsigned mask) {
    return static_cast<unsigned>((std::uint64_t{1} << std::bit_width(mask)) - 1);
}

void write(std::FILE *file, const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), file);
}

void tell_log_fault(std::string_view name) {
    const std::string cause = std::strerror(errno);
    WORD_tell("message", "Unable to open log file: " + std::string(name) + ": " + cause);
}

/// Closes the log. What it lacks is told once, past every sink: nowhere else would it be seen.
void close_log() {
    errno = 0;
    if (state.log.close() || state.log_lost) return;
    state.log_lost = true;
    const char *cause = errno != 0 ? std::strerror(errno) : "a part is lost";
    std::fprintf(stderr, "MESS_print: Error writing log file: %s: %s\n", state.log_name.c_str(), cause);
}

void write_log(const std::string &text) {
    if (state.output == MessageOutput::log_reopened) {
        state.log = FILE_open(state.log_name, "a");
        // Once: this message, too, tries to open the log.
        if (!state.log) tell_log_fault(state.log_name);
    }
    if (!state.log) return;
    if (state.output == MessageOutput::log_stamped) write(state.log.get(), DATE_get_current_str() + " -- ");
    write(state.log.get(), text);
    if (state.output == MessageOutput::log_reopened) close_log();
}

/// Errors and warnings come behind the plain output that precedes them, also when both go to one pipe.
void write_terminal(std::FILE *file, const std::string &text) {
    if (file == stderr) std::fflush(stdout);
    write(file, text);
}

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
        state.mask |= level_mask(item.substr(1));
    else if (item.starts_with('-'))
        state.mask &= ~level_mask(item.substr(1));
    else
        state.mask = with_lower_bits(level_mask(item));
}

/// What stands behind a keyword and the one separator of any kind.
std::string_view behind(std::string_view item, std::string_view keyword) {
    return item.substr(std::min(keyword.size() + 1, item.size()));
}

/// False, told, for a name that cannot be a log. One that cannot be opened is told too.
bool open_log(const LogWord &word, std::string_view name) {
    const char *refusal = name.starts_with('|') ? "A log file is no command: " : nullptr;
    if (state.refuse_log != nullptr && state.refuse_log(name)) refusal = "A log file is no input file: ";
    if (refusal != nullptr) {
        WORD_tell("message", refusal + std::string(name));
        return false;
    }
    state.log_name = name;
    state.log_lost = false;
    if (word.mode == nullptr) return true;
    state.log = FILE_open(name, word.mode);
    if (!state.log) tell_log_fault(name);
    return true;
}

bool apply_log_word(std::string_view item) {
    for (const LogWord &word : kLogWords) {
        if (!begins_with(item, word.name)) continue;
        close_log();
        if (open_log(word, behind(item, word.name))) state.output = word.output;
        WORD_flush();
        return true;
    }
    return false;
}

void apply_item(std::string_view item) {
    if (apply_log_word(item)) return;
    if (begins_with(item, "nopage")) {
        state.paging = kNeverPause;
    } else if (begins_with(item, "page")) {
        state.paging = kPauseAtScreenful;
    } else if (begins_with(item, "line")) {
        const std::string_view number = behind(item, "line");
        if (!WORD_is_integer(number)) WORD_not("message", number, "a number of lines");
        const int lines = Scanner(number).integer().value_or(0);
        state.max_lines = lines < 1 ? kDefaultMaxLines : lines;
    } else {
        apply_level_word(item);
    }
}

} // namespace

int MESS_print(unsigned level, const char *format, ...) {
    if ((level & state.mask) == 0) return 0;
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = vformat_text(format, arguments);
    va_end(arguments);

    if (state.copy) write(state.copy.get(), text);
    write_log(text);
    if (state.output == MessageOutput::log_only) return 0;
    write_terminal((level & (kError | kWarn)) != 0 ? stderr : stdout, text);

    if (state.paging == kPauseAtScreenful) {
        const std::string_view lines = format;
        state.line_count += static_cast<int>(std::count(lines.begin(), lines.end(), '\n'));
        if (state.line_count > state.max_lines) MESS_hold(level, "Press return to continue\n");
    }
    return 1;
}

MessagePause::MessagePause(unsigned levels) : held_(state.mask & levels) {
    state.mask &= ~held_;
}

MessagePause::~MessagePause() {
    state.mask |= held_;
}

void MESS_flush() {
    std::fflush(stdout);
    for (const Stream *stream : {&state.log, &state.copy})
        if (*stream) std::fflush(stream->get());
}

void MESS_print_fault(unsigned level, const char *operation, std::string_view name, int fault) {
    MESS_print(level, "%s: %s: %s\n", operation, std::string(name).c_str(), std::strerror(fault));
}

void MESS_print_prog(std::string_view title) {
    MESS_print(kMess, "      %s (Ver %s)\n\n", std::string(title).c_str(), VYX_version());
}

int MESS_hold(unsigned level, std::string_view text) {
    const bool asks = (level & state.mask) != 0 && state.output != MessageOutput::log_only &&
                      FLAG_batch() == 0 && state.paging != kNeverPause;
    if (!asks) return 0;
    write_terminal((level & kError) != 0 && (level & kWarn) != 0 ? stderr : stdout, std::string(text));
    std::fflush(stdout);
    std::getchar();
    state.line_count = 0;
    return 0;
}

int MESS_set(int operation, unsigned mask) {
    constexpr int first_neutral = 5;  // operations below are explicit settings
    constexpr int first_default = 16; // operations from here on yield to explicit settings
    if (operation < first_neutral) ++state.set_count;
    if (operation >= first_default && state.set_count > 0) return 0;
    switch (operation) {
    case 0:
    case 10:
    case 20: state.mask = with_lower_bits(mask); break;
    case 1:
    case 11:
    case 21: state.mask |= mask; break;
    case -1:
    case 9:
    case 19: state.mask &= ~mask; break;
    default: break;
    }
    return 0;
}

int MESS_set_str(std::string_view text) {
    ++state.set_count;
    for (const std::string &item : parse_string(text, ',')) apply_item(trimmed(item));
    return 0;
}

int MESS_check(unsigned mask) {
    return (mask & state.mask) != 0 ? 1 : 0;
}

unsigned MESS_get() {
    return state.mask;
}

int MESS_check_set() {
    return state.set_count;
}

int MESS_get_max_lines() {
    return state.max_lines;
}

void MESS_set_out(MessageOutput mode) {
    state.output = mode;
}

void MESS_refuse_log(LogRefusal refuses) {
    state.refuse_log = refuses;
}

bool MESS_end_log() {
    close_log();
    return !state.log_lost;
}

void MESS_set_page(int mode) {
    state.paging = mode;
}

int MESS_file(std::string_view name, const char *mode) {
    state.copy.close();
    state.copy = FILE_open(name, mode);
    return state.copy ? 0 : -1;
}

void MESS_file_close() {
    state.copy.close();
}
