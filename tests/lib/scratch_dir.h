#pragma once
/// A directory of its own for one test, removed at its end.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

class ScratchDir {
public:
    ScratchDir() {
        umask(022); // settings that a group may write are not read
        std::string pattern = (std::filesystem::temp_directory_path() / "vyx_test_XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::filesystem::filesystem_error(pattern, {});
        path_ = pattern;
    }
    ScratchDir(const ScratchDir &) = delete;
    ScratchDir &operator=(const ScratchDir &) = delete;
    ~ScratchDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    /// The full name of a file in the directory.
    [[nodiscard]] std::string at(std::string_view name) const { return (path_ / name).string(); }
    /// Writes a file (and the directories above it) and returns its full name.
    std::string write(std::string_view name, std::string_view content) const {
        const std::filesystem::path file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};
