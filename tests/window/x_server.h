#pragma once
/// An X server of a test's own, without a screen that anybody sees. Tests skip where none can be started.

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

class XServer {
public:
    /// `screen`: "800x700x24" or the like. DISPLAY names the server while it lives.
    explicit XServer(const std::string &screen) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return;
        pid_ = fork();
        if (pid_ == 0) serve(screen, ends);
        close(ends[1]);
        const std::string number = read_number(ends[0]);
        close(ends[0]);
        if (number.empty()) {
            stop();
            return;
        }
        display_ = ":" + number;
        setenv("DISPLAY", display_.c_str(), 1);
    }
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;
    ~XServer() {
        stop();
        unsetenv("DISPLAY");
    }

    [[nodiscard]] bool runs() const { return !display_.empty(); }
    [[nodiscard]] const std::string &display() const { return display_; }
    /// Ends the server as a crash would.
    void kill_now() { stop(SIGKILL); }

private:
    [[noreturn]] static void serve(const std::string &screen, const std::array<int, 2> &ends) {
        close(ends[0]);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        dup2(nowhere, STDOUT_FILENO);
        prctl(PR_SET_PDEATHSIG, SIGTERM); // no server outlives a test that crashed
        const std::string channel = std::to_string(ends[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", channel.c_str(), "-screen", "0", screen.c_str(), "-nolisten",
               "tcp", "-noreset", static_cast<char *>(nullptr));
        _exit(127);
    }

    /// Empty when the server ended or did not answer in time.
    static std::string read_number(int channel) {
        constexpr int kStartMilliseconds = 15000;
        std::string number;
        for (;;) {
            pollfd wait{channel, POLLIN, 0};
            if (poll(&wait, 1, kStartMilliseconds) <= 0) return {};
            char digit = 0;
            if (read(channel, &digit, 1) <= 0) return {};
            if (digit == '\n') return number;
            number += digit;
        }
    }

    void stop(int signal = SIGTERM) {
        if (pid_ <= 0) return;
        kill(pid_, signal);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

    pid_t pid_ = -1;
    std::string display_;
};

#define NEEDS_X_SERVER(server)                                                                               \
    if (!(server).runs()) GTEST_SKIP() << "no X server: Xvfb is not installed or does not start"
