#include "lib/report/process.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

#include "lib/report/message.h"

namespace {

/// One that nobody sets: a loop must not stand still because the time of day was put back.
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

struct State {
    Clock::time_point start = Clock::now();
};
State state;

bool deliver_output() {
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    const char *cause = errno != 0 ? std::strerror(errno) : "a part is lost";
    MESS_print(kError, "VYX_exit: Error writing standard output: %s\n", cause);
    return false;
}

/// `status`, unless it tells of success that is none.
int status_unless(int status, bool whole) {
    return status == kExitOk && !whole ? kExitSession : status;
}

} // namespace

void VYX_exit(int status) {
    // What was said on standard output and to the log may lie in a buffer until now, and find no room.
    const bool said = deliver_output();
    const bool logged = MESS_end_log();
    std::exit(status_unless(status, said && logged));
}

int VYX_sleep(float seconds) {
    if (!(seconds > 0.0F)) return -1;
    constexpr double kLongest = 1e9; // keeps an infinite wait within the clock's range
    const double wait = std::min(static_cast<double>(seconds), kLongest);
    std::this_thread::sleep_for(Microseconds(static_cast<Microseconds::rep>(wait * 1e6)));
    return 0;
}

void VYX_init_time() {
    state.start = Clock::now();
}

float VYX_elapse_time() {
    return std::chrono::duration<float>(Clock::now() - state.start).count();
}

int VYX_back_proc(int status) {
    // What is buffered now would be written by both processes.
    status = status_unless(status, deliver_output());
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) return 0;
    // Without exit handlers: the display connection and open files belong to the child from here on.
    if (child > 0) std::_Exit(status);
    std::signal(SIGINT, SIG_DFL);
    setpgid(0, 0);
    const int null_device = open("/dev/null", O_RDWR);
    if (null_device < 0) return 0;
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(null_device, standard);
    if (null_device > STDERR_FILENO) close(null_device);
    return 1;
}
