#pragma once
/// Files that are removed when the process ends, or is ended by a signal, before they are whole.

#include <csignal>

/// `path` must live until it is taken out again. False when so many files are unfinished that there is no
/// room. A signal that would end the process removes the files first; one that is ignored or handled by
/// others stays so. A write beyond the limit of a file's size fails instead of ending the process.
[[nodiscard]] bool UNFINISHED_add(const char *path);
void UNFINISHED_take_out(const char *path);

/// Holds every signal back while it lives, so that none comes between making a file and adding it.
class SignalPause {
public:
    SignalPause();
    SignalPause(const SignalPause &) = delete;
    SignalPause &operator=(const SignalPause &) = delete;
    ~SignalPause();

private:
    sigset_t before_{};
};
