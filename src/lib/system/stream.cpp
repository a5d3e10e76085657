#include "lib/system/stream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <new>
#include <set>
#include <utility>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lib/text/strings.h"

namespace {

struct State {
    std::set<std::string, std::less<>> commands; ///< allowed, with their "|"
    std::array<bool, 2> missing{};               ///< standard input, output: closed when we were started
};
State state;

/// A longer line is given in pieces, so that a device that never ends a line cannot fill the memory.
constexpr std::size_t kLongestLine = std::size_t{1} << 20;
constexpr mode_t kDirectoryMode = 0755;

bool stat_name(std::string_view name, struct stat &info) {
    return stat(FILE_add_user_path(name).c_str(), &info) == 0;
}

bool is_reading(const char *mode) {
    return mode != nullptr && mode[0] == 'r';
}

bool is_writing(const char *mode) {
    return mode != nullptr && (mode[0] == 'w' || mode[0] == 'a');
}

Stream open_pipe(std::string_view command, const char *mode) {
    // The command shares standard output: what the program has said so far comes first.
    std::fflush(stdout);
    std::FILE *pipe = popen(std::string(command).c_str(), is_reading(mode) ? "re" : "we");
    if (pipe == nullptr) return {};
    // A command that ends early must show as a failed write at close, not end the program. Set after the
    // start of the command, which keeps the default.
    if (!is_reading(mode)) std::signal(SIGPIPE, SIG_IGN);
    return {pipe, Stream::Kind::pipe};
}

Stream open_command(std::string_view name, const char *mode) {
    if (FILE_is_command(name)) return open_pipe(name.substr(1), mode);
    errno = EPERM;
    return {};
}

Stream open_standard(bool reading) {
    if (state.missing[reading ? STDIN_FILENO : STDOUT_FILENO]) {
        errno = EBADF;
        return {};
    }
    return {reading ? stdin : stdout, Stream::Kind::standard};
}

std::string current_home() {
    if (const passwd *user = getpwuid(getuid()); user != nullptr && user->pw_dir != nullptr)
        return user->pw_dir;
    const char *home = std::getenv("HOME");
    return home != nullptr ? home : "";
}

bool make_one_dir(const std::string &path) {
    struct stat info {};
    if (stat(path.c_str(), &info) == 0) {
        if (!S_ISDIR(info.st_mode)) errno = ENOTDIR;
        return S_ISDIR(info.st_mode);
    }
    return mkdir(path.c_str(), kDirectoryMode) == 0;
}

} // namespace

Stream::Stream(Stream &&other) noexcept
    : file_(std::exchange(other.file_, nullptr)), kind_(std::exchange(other.kind_, Kind::none)) {}

Stream &Stream::operator=(Stream &&other) noexcept {
    if (this != &other) {
        (void)close();
        file_ = std::exchange(other.file_, nullptr);
        kind_ = std::exchange(other.kind_, Kind::none);
    }
    return *this;
}

bool Stream::close() {
    if (file_ == nullptr) return true;
    std::FILE *file = std::exchange(file_, nullptr);
    const Kind kind = std::exchange(kind_, Kind::none);
    bool good = std::ferror(file) == 0;
    switch (kind) {
    case Kind::pipe: return pclose(file) == 0 && good;
    case Kind::file: return std::fclose(file) == 0 && good;
    case Kind::standard:
        if (file != stdin) good = std::fflush(file) == 0 && good;
        break;
    case Kind::none: break;
    }
    return good;
}

bool Stream::get_line(std::string &line) {
    line.clear();
    if (file_ == nullptr) return false;
    int c = EOF;
    while (line.size() < kLongestLine && (c = getc_unlocked(file_)) != EOF && c != '\n')
        line.push_back(static_cast<char>(c));
    if (c == EOF && line.empty()) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

std::vector<std::byte> Stream::read_all(std::size_t limit) {
    std::vector<std::byte> bytes;
    if (file_ == nullptr) return bytes;
    std::array<std::byte, 65536> part{};
    while (bytes.size() < limit) {
        const std::size_t count =
            std::fread(part.data(), 1, std::min(part.size(), limit - bytes.size()), file_);
        if (count == 0) break;
        bytes.insert(bytes.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return bytes;
}

Stream FILE_open(std::string_view name, const char *mode) {
    if (!is_reading(mode) && !is_writing(mode)) return {};
    if (FILE_is_stdio(name)) return open_standard(is_reading(mode));
    if (name.front() == '|') return open_command(name, mode);
    const std::string path = FILE_add_user_path(name);
    // A directory can be opened for reading but gives no byte: an open that fails is the clearer answer.
    if (is_reading(mode) && FILE_is_dir(path)) {
        errno = EISDIR;
        return {};
    }
    if (is_writing(mode) && FILE_make_dir(path, 1) != 0) return {};
    std::FILE *file = std::fopen(path.c_str(), (mode + std::string("e")).c_str());
    if (file == nullptr && errno == ENOMEM) throw std::bad_alloc();
    if (file == nullptr) return {};
    return {file, Stream::Kind::file};
}

void FILE_allow_command(std::string_view name) {
    if (name.starts_with('|')) state.commands.emplace(name);
}

bool FILE_is_command(std::string_view name) {
    return state.commands.contains(name);
}

void FILE_open_standard_streams() {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(standard, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free number, which is this one.
        if (open("/dev/null", O_RDWR) == standard && standard != STDERR_FILENO)
            state.missing[static_cast<std::size_t>(standard)] = true;
    }
}

int FILE_is_stdio(std::string_view name) {
    return name.empty() || name == "-" || stricmp(name, "std") == 0 || stricmp(name, "stdn") == 0;
}

int FILE_fullpath(std::string_view name) {
    return !name.empty() && (name.front() == '/' || name.front() == '.' || name.front() == '~');
}

std::string FILE_add_path(std::string_view directory, std::string_view name) {
    if (FILE_is_stdio(name) || FILE_fullpath(name)) return std::string(name);
    std::string path(directory);
    FILE_add_path_delim(path);
    path += name;
    return path;
}

void FILE_add_path_delim(std::string &text) {
    if (!text.empty() && text.back() != '/') text += '/';
}

std::string FILE_add_user_path(std::string_view name) {
    if (name.empty() || name.front() != '~') return std::string(name);
    const std::size_t slash = std::min(name.find('/'), name.size());
    const std::string user(name.substr(1, slash - 1));
    if (user.empty()) return current_home().append(name.substr(slash));
    const passwd *entry = getpwnam(user.c_str());
    if (entry == nullptr || entry->pw_dir == nullptr) return std::string(name);
    return std::string(entry->pw_dir).append(name.substr(slash));
}

int FILE_exist(std::string_view name) {
    struct stat info {};
    return FILE_is_stdio(name) || stat_name(name, info);
}

std::int64_t FILE_size(std::string_view name) {
    struct stat info {};
    return stat_name(name, info) ? info.st_size : -1;
}

std::int64_t FILE_modtime(std::string_view name) {
    struct stat info {};
    return stat_name(name, info) ? info.st_mtime : -1;
}

int FILE_delete(std::string_view name) {
    return unlink(FILE_add_user_path(name).c_str()) == 0 ? 0 : -1;
}

int FILE_is_dir(std::string_view name) {
    struct stat info {};
    return stat_name(name, info) && S_ISDIR(info.st_mode);
}

int FILE_is_device(std::string_view name) {
    struct stat info {};
    return stat_name(name, info) && (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode));
}

int FILE_make_dir(std::string_view path, int skip) {
    std::string whole(path);
    fill_string(whole, '\\', '/');
    const std::size_t last_slash = whole.rfind('/');
    if (skip > 0 && (last_slash == std::string::npos || FILE_is_dir(whole.substr(0, last_slash + 1))))
        return 0;

    // Ends of the components, each with all that stands before it.
    std::vector<std::size_t> ends;
    for (std::size_t i = 1; i <= whole.size(); ++i)
        if (i == whole.size() || whole[i] == '/') ends.push_back(i);
    const std::size_t skipped = static_cast<std::size_t>(std::max(skip, 0));
    if (ends.size() <= skipped) return 0;
    ends.resize(ends.size() - skipped);
    for (const std::size_t end : ends)
        if (!make_one_dir(whole.substr(0, end))) return -1;
    return 0;
}
