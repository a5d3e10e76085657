#include "lib/system/unfinished.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>

#include <unistd.h>

namespace {

/// A page, an image and a grid are more than are ever open at once.
constexpr std::size_t kMostFiles = 16;

/// What ends a process by default and can be caught.
constexpr std::array kEndingSignals{SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGPIPE, SIGALRM,
                                    SIGXCPU, SIGSEGV, SIGBUS,  SIGFPE,  SIGILL,  SIGABRT};

using Path = std::atomic<const char *>;
static_assert(Path::is_always_lock_free, "a signal handler reads the paths");

/// For the handlers: a stack that has overflowed has no room for them.
constexpr std::size_t kStackBytes = 16384;

struct State {
    std::array<Path, kMostFiles> paths{};
    std::array<std::byte, kStackBytes> stack{};
    bool at_exit = false; ///< the end of the process removes the files
};
State state;

void remove_all() {
    for (Path &path : state.paths)
        if (const char *const name = path.exchange(nullptr); name != nullptr) unlink(name);
}

// Only what a signal handler may call: the signal waits until the handler returns, and then ends the process
// as if it had never been caught.
extern "C" void end_by_signal(int signal_number) {
    remove_all();
    std::signal(signal_number, SIG_DFL);
    raise(signal_number);
}

extern "C" void let_the_write_fail(int /*signal_number*/) {}

void catch_by_default(int signal_number, void (*handler)(int)) {
    struct sigaction present {};
    if (sigaction(signal_number, nullptr, &present) != 0) return;
    const bool is_default = (present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler == SIG_DFL;
    if (!is_default) return;
    struct sigaction wanted {};
    wanted.sa_handler = handler;
    wanted.sa_flags = SA_ONSTACK;
    sigfillset(&wanted.sa_mask);
    sigaction(signal_number, &wanted, nullptr);
}

/// Unless there is one already, as checking tools bring it.
void use_own_stack() {
    stack_t stack{};
    if (sigaltstack(nullptr, &stack) != 0 || (stack.ss_flags & SS_DISABLE) == 0) return;
    stack = {};
    stack.ss_sp = state.stack.data();
    stack.ss_size = state.stack.size();
    sigaltstack(&stack, nullptr);
}

/// Again for each file: what a signal does may have been set back meanwhile.
void catch_signals() {
    use_own_stack();
    for (const int signal_number : kEndingSignals) catch_by_default(signal_number, end_by_signal);
    catch_by_default(SIGXFSZ, let_the_write_fail);
    if (!state.at_exit) state.at_exit = std::atexit(remove_all) == 0;
}

} // namespace

bool UNFINISHED_add(const char *path) {
    catch_signals();
    for (Path &slot : state.paths) {
        if (slot.load() != nullptr) continue;
        slot.store(path);
        return true;
    }
    return false;
}

void UNFINISHED_take_out(const char *path) {
    for (Path &slot : state.paths)
        if (slot.load() == path) slot.store(nullptr);
}

SignalPause::SignalPause() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalPause::~SignalPause() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}
