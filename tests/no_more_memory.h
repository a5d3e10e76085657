#pragma once
/// A process that gets no more memory of the size of a picture.

#include <cstddef>
#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

class NoMoreMemory {
public:
    NoMoreMemory() {
        getrlimit(RLIMIT_AS, &before_);
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        constexpr std::size_t kSmallThings = std::size_t{1} << 19; // bytes
        const rlimit now{pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + kSmallThings,
                         before_.rlim_max};
        setrlimit(RLIMIT_AS, &now);
    }
    NoMoreMemory(const NoMoreMemory &) = delete;
    NoMoreMemory &operator=(const NoMoreMemory &) = delete;
    ~NoMoreMemory() { setrlimit(RLIMIT_AS, &before_); }

private:
    rlimit before_{};
};
