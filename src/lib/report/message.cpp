#include "lib/report/message.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "lib/options/flags.h"
#include "lib/system/calendar.h"
#include "lib/system/stream.h"
#include "lib/system/version.h"
#include "lib/text/strings.h"

namespace {

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
    Stream copy;           ///< the stream of MESS_file
};
State state;

unsigned with_lower_bits(unsigned mask) {
    return static_cast<unsigned>((std::uint64_t{1} << std::bit_width(mask)) - 1);
}

void write(std::FILE *file, const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), file);
}

/// Once for a log.
void tell_log_fault() {
    if (std::exchange(state.log_lost, true)) return;
    const char *cause = std::strerror(errno);
    MESS_print(kWarn, "-me (message): Unable to open log file: %s: %s\n", state.log_name.c_str(), cause);
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
        if (!state.log) tell_log_fault();
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
    constexpr int kFirstNeutral = 5;
    constexpr int kFirstDefault = 16;
    if (operation < kFirstNeutral) ++state.set_count;
    if (operation >= kFirstDefault && state.set_count > 0) return 0;
    switch (operation) {
    case kSetLevels:
    case 10:
    case 20: state.mask = with_lower_bits(mask); break;
    case kAddLevels:
    case 11:
    case 21: state.mask |= mask; break;
    case kRemoveLevels:
    case 9:
    case 19: state.mask &= ~mask; break;
    default: break;
    }
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

bool MESS_open_log(std::string_view name, const char *mode) {
    close_log();
    state.log_name = name;
    state.log_lost = false;
    if (mode == nullptr) return true;
    state.log = FILE_open(name, mode);
    return static_cast<bool>(state.log);
}

bool MESS_end_log() {
    close_log();
    return !state.log_lost;
}

void MESS_set_max_lines(int lines) {
    state.max_lines = lines < 1 ? kDefaultMaxLines : lines;
}

void MESS_set_page(int mode) {
    state.paging = mode;
}

int MESS_file(std::string_view name, const char *mode) {
    state.copy = Stream(); // what it holds is written before the file is opened again
    state.copy = FILE_open(name, mode);
    return state.copy ? 0 : -1;
}

void MESS_file_close() {
    state.copy = Stream();
}
