#pragma once
/// Runs the program as a user does.

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// A child process whose output goes into a file; ended when it goes out of scope.
class Child {
public:
    Child(std::vector<std::string> arguments, const std::string &output) {
        std::vector<char *> words;
        for (std::string &word : arguments) words.push_back(word.data());
        words.push_back(nullptr);
        pid_ = fork();
        if (pid_ != 0) return;
        const int file = open(output.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0644);
        const int null_device = open("/dev/null", O_RDONLY);
        dup2(null_device, STDIN_FILENO);
        dup2(file, STDOUT_FILENO);
        dup2(file, STDERR_FILENO);
        execvp(words[0], words.data());
        std::_Exit(127);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child() {
        if (pid_ <= 0) return;
        kill(pid_, SIGTERM);
        wait_for_end(std::chrono::seconds(5));
        if (pid_ > 0) kill(pid_, SIGKILL);
    }

    /// The exit status; -1 when the child still runs after that time or was ended by a signal.
    int wait_for_end(std::chrono::milliseconds longest) {
        const auto end = std::chrono::steady_clock::now() + longest;
        int status = 0;
        while (waitpid(pid_, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > end) return -1;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    [[nodiscard]] pid_t pid() const { return pid_; }

private:
    pid_t pid_ = 0;
};

/// True as soon as the condition holds, false when it does not within that time.
inline bool comes_true(const std::function<bool()> &condition, std::chrono::seconds longest) {
    const auto end = std::chrono::steady_clock::now() + longest;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}
