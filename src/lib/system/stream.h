#pragma once
/// Opening streams and joining paths: plain files, standard streams and pipes. Stands below messages.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

/// Owns an open C stream: a file, a pipe or (not closed) a standard stream.
class Stream {
public:
    enum class Kind { none, file, pipe, standard };
    Stream() = default;
    Stream(std::FILE *file, Kind kind) : file_(file), kind_(kind) {}
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;
    Stream(Stream &&other) noexcept;
    Stream &operator=(Stream &&other) noexcept;
    ~Stream() { (void)close(); } // who wants to know closes before

    explicit operator bool() const { return file_ != nullptr; }
    [[nodiscard]] std::FILE *get() const { return file_; }
    [[nodiscard]] Kind kind() const { return kind_; }
    /// Flushes and closes. False when a write failed, now or earlier, or a piped command ended with an error.
    [[nodiscard]] bool close();
    /// The next line without its line end; false at the end of the stream.
    [[nodiscard]] bool get_line(std::string &line);
    /// Everything up to the end of the stream, at most `limit` bytes.
    std::vector<std::byte> read_all(std::size_t limit);

private:
    std::FILE *file_ = nullptr;
    Kind kind_ = Kind::none;
};

/// Opens a standard stream for a standard-stream name, a pipe for a "|command" that is allowed, else the
/// file, with "~" expanded; for modes beginning with "w" or "a" missing directories are made. An empty Stream
/// on failure, whose cause errno holds. No other command inherits what is opened.
[[nodiscard]] Stream FILE_open(std::string_view name, const char *mode);

/// Whoever takes a name that the user gave as an input or an output calls this: when it begins with "|",
/// FILE_open runs it. A "|" that comes to the beginning of any other name (a path, a log, what a naming
/// convention makes, what is found in a directory) opens nothing.
void FILE_allow_command(std::string_view name);
/// True for an allowed command.
[[nodiscard]] bool FILE_is_command(std::string_view name);

/// Opens standard streams that the process was started without on the null device, lest a file of ours gets
/// their number. As an input or output such a stream cannot be opened.
void FILE_open_standard_streams();

/// 1 for an empty name, "-", "std" or "stdn" (case ignored).
[[nodiscard]] int FILE_is_stdio(std::string_view name);
/// 1 when the name begins with "/", "." or "~".
[[nodiscard]] int FILE_fullpath(std::string_view name);
/// `name` itself when it is a standard stream or full path, else directory, "/" when missing, name.
std::string FILE_add_path(std::string_view directory, std::string_view name);
/// Appends "/" unless the text is empty or already ends in it.
void FILE_add_path_delim(std::string &text);
/// Replaces a leading "~" or "~user" by the home directory; an unknown user leaves the name unchanged.
std::string FILE_add_user_path(std::string_view name);

/// Standard streams count as existing.
[[nodiscard]] int FILE_exist(std::string_view name);
/// Bytes; -1 when missing.
std::int64_t FILE_size(std::string_view name);
/// Seconds since 1970; -1 when missing.
std::int64_t FILE_modtime(std::string_view name);
/// 0, or -1 when the file could not be removed.
[[nodiscard]] int FILE_delete(std::string_view name);
[[nodiscard]] int FILE_is_dir(std::string_view name);
[[nodiscard]] int FILE_is_device(std::string_view name);
/// Turns "\" into "/" and makes every missing component but the last `skip` with mode 0755. 0, or -1 on
/// failure.
[[nodiscard]] int FILE_make_dir(std::string_view path, int skip);
