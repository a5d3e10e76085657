#pragma once
/// A file that is written whole or not at all.

#include <memory>
#include <string>
#include <string_view>

#include "lib/system/stream.h"

/// A plain file is written aside, under a name of its own in the same directory, and takes the place of its
/// target when commit() finds it whole: whoever reads the target sees the old file or the new one. What is
/// never committed, or when the process ends before, is removed. Standard output, commands, devices, pipes
/// and what is appended to are written as they are.
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    OutputFile(OutputFile &&other) noexcept;
    OutputFile &operator=(OutputFile &&other) noexcept;
    ~OutputFile() { discard(); }

    /// Makes missing directories, as FILE_open does. Not open on failure; fault() says why.
    static OutputFile create(std::string_view name);
    /// Opened at its end and written as it is.
    static OutputFile append(std::string_view name);

    explicit operator bool() const { return static_cast<bool>(stream_); }
    /// Nothing is written after a failure; failed() and commit() tell of it.
    void write(std::string_view bytes);
    /// Closes, and puts the file in its place when every write went well. False when it is not there whole.
    [[nodiscard]] bool commit();
    /// Closes; a file written aside is removed.
    void discard();

    [[nodiscard]] bool failed() const { return fault_ != 0; }
    /// Why it could not be opened or written: "No space left on device".
    [[nodiscard]] std::string fault() const;

private:
    struct Aside {
        std::string path;   ///< what is written
        std::string target; ///< what it becomes
        Aside() = default;
        Aside(const Aside &) = delete;
        Aside &operator=(const Aside &) = delete;
        ~Aside(); ///< removes what is still there
    };
    [[nodiscard]] bool open_path(const std::string &path);
    [[nodiscard]] bool open_aside(const std::string &target, const struct stat *replaced);
    [[nodiscard]] bool open_in_place(const std::string &path);
    void put_in_place();
    void fail(int fault) {
        if (fault_ == 0) fault_ = fault;
    }

    Stream stream_;
    std::unique_ptr<Aside> aside_;
    int fault_ = 0; ///< an errno value, or kCommandFailed; the first that occurred
};
