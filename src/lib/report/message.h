#pragma once
/// The message service: which messages are shown, where they go, and pausing after a screenful.

#include <string_view>

/// Message levels. A message is shown when its level shares a bit with the user's mask.
enum MessageLevel : unsigned {
    kPrint = 15,        ///< prompts and plain output
    kError = 48,        ///< errors
    kWarn = 192,        ///< warnings
    kMess = 3840,       ///< progress
    kOut1 = 0xF000,     ///< details, usually shown
    kOut2 = 0xF0000,    ///< more details, usually shown
    kOut3 = 0xF00000,   ///< traces
    kOut4 = 0xF000000,  ///< traces of blocks and fields
    kDebug = 0xF0000000 ///< everything
};

/// Where messages go.
enum class MessageOutput : int {
    log_stamped = -1, ///< log file with time stamps, and the terminal
    log_only = 0,
    terminal = 1,    ///< the terminal, and the log file when one is open
    log_reopened = 2 ///< log file opened for each message, and the terminal
};

/// Prints to every sink. Returns 1 when the message went to the terminal (standard error for error and
/// warning levels, else standard output), 0 when the level is masked out or only the log file is written.
int MESS_print(unsigned level, const char *format, ...) __attribute__((format(printf, 2, 3)));

/// Holds messages of these levels back while it lives.
class MessagePause {
public:
    explicit MessagePause(unsigned levels);
    MessagePause(const MessagePause &) = delete;
    MessagePause &operator=(const MessagePause &) = delete;
    ~MessagePause();

private:
    unsigned held_; ///< levels that were shown before
};

/// Hands every sink what it has been given so far: before waiting for a user who reads it through a pipe or
/// in a log file.
void MESS_flush();

/// Says of a file why it could not be opened or read: "operation: name: No such file or directory". `fault`
/// is an errno value.
void MESS_print_fault(unsigned level, const char *operation, std::string_view name, int fault);

/// Prints the program's banner "      title (Ver version)" at level kMess.
void MESS_print_prog(std::string_view title);

/// Shows `text` and waits for one character, unless masked out, in batch mode, or paging is off. Returns 0.
int MESS_hold(unsigned level, std::string_view text);

/// Changes the level mask: operations 0, 10, 20 set mask and all lower bits; 1, 11, 21 add; -1, 9, 19 remove.
/// Below 5 counts as an explicit setting; above 15 is a default that an explicit setting beats. Returns 0.
int MESS_set(int operation, unsigned mask);
/// The explicit ones; kMarkAsSet changes no level.
enum MessageOperation : int { kRemoveLevels = -1, kSetLevels = 0, kAddLevels = 1, kMarkAsSet = 4 };

/// 1 when the mask shares a bit with the level mask.
[[nodiscard]] int MESS_check(unsigned mask);
unsigned MESS_get();
[[nodiscard]] int MESS_check_set();
/// Lines of a screenful; below 1: 22.
void MESS_set_max_lines(int lines);
int MESS_get_max_lines();
void MESS_set_out(MessageOutput mode);
/// A log file from now on: opened with `mode`, or for each message when that is null. False when it cannot be
/// opened, for the reason in errno.
[[nodiscard]] bool MESS_open_log(std::string_view name, const char *mode);
/// Closes the log file. False when a part of what it was sent could not be written, which has been told.
[[nodiscard]] bool MESS_end_log();
enum MessagePaging : int {
    kNeverPause = 0,
    kPauseWhereAsked = 1, ///< only where MESS_hold is called
    kPauseAtScreenful = 2 ///< after each screenful
};
void MESS_set_page(int mode);

/// Opens (closing any previous) a stream that receives a copy of every shown message. Returns 0, or -1.
[[nodiscard]] int MESS_file(std::string_view name, const char *mode);
void MESS_file_close();
