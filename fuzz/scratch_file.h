#pragma once
/// Bytes as a file with a name, for code that opens files itself. The file lives in memory.

#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

class ScratchFile {
public:
    explicit ScratchFile(std::string_view content) : descriptor_(memfd_create("fuzz", 0)) {
        const ssize_t written = write(descriptor_, content.data(), content.size());
        if (written != static_cast<ssize_t>(content.size())) __builtin_trap();
    }
    ScratchFile(const ScratchFile &) = delete;
    ScratchFile &operator=(const ScratchFile &) = delete;
    ~ScratchFile() { close(descriptor_); }
    [[nodiscard]] std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};
