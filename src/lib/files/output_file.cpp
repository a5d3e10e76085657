#include "lib/files/output_file.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lib/report/message.h"
#include "lib/system/unfinished.h"

namespace {

constexpr int kCommandFailed = -1;
/// So many links one behind the other are a circle.
constexpr int kMostLinks = 40;
constexpr mode_t kUsualMode = 0666; ///< less what the user's mask takes away
constexpr mode_t kPermissions = 0777;

std::string directory_of(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos) return ".";
    return path.substr(0, slash == 0 ? 1 : slash);
}

/// Fits every file system, and cannot be guessed by who would like to be there first.
std::string unpredictable_name() {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::array<unsigned char, 16> random{};
    if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) return {};
    std::string name = ".vyx-";
    for (const unsigned char byte : random) name += kLetters[byte % kLetters.size()];
    return name;
}

/// In a directory where everybody may write, a link that someone else has laid leads astray.
bool is_foreign_link(const std::string &link) {
    struct stat own {
    }, directory{};
    if (lstat(link.c_str(), &own) != 0 || stat(directory_of(link).c_str(), &directory) != 0) return false;
    const bool shared = (directory.st_mode & S_ISVTX) != 0 && (directory.st_mode & S_IWOTH) != 0;
    return shared && own.st_uid != geteuid() && own.st_uid != directory.st_uid;
}

/// Where a name leads over symbolic links, whether or not something is there. 0, or an errno value.
int follow_links(std::string &path) {
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(path, error); ++links) {
        if (links == kMostLinks) return ELOOP;
        if (is_foreign_link(path)) return EACCES;
        const std::string leads_to = std::filesystem::read_symlink(path, error).string();
        if (error) return error.value();
        path = leads_to.starts_with('/') ? leads_to : directory_of(path).append("/").append(leads_to);
    }
    return 0;
}

/// Another file in the place of one that we have open as a standard stream would part the two.
bool is_standard_stream(const std::string &path, const struct stat &info) {
    if (path.starts_with("/dev/fd/") || path.starts_with("/proc/")) return true;
    for (const int standard : {STDOUT_FILENO, STDERR_FILENO}) {
        struct stat open {};
        if (fstat(standard, &open) == 0 && open.st_dev == info.st_dev && open.st_ino == info.st_ino)
            return true;
    }
    return false;
}

/// As far as we may: who could read the old file can read the new one.
void take_over_permissions(int descriptor, const struct stat &replaced) {
    struct stat own {};
    if (fstat(descriptor, &own) != 0) return;
    const bool other_owner = own.st_uid != replaced.st_uid || own.st_gid != replaced.st_gid;
    if (other_owner && fchown(descriptor, replaced.st_uid, replaced.st_gid) != 0 &&
        fchown(descriptor, own.st_uid, replaced.st_gid) != 0)
        return; // what was for a group must not become another group's
    fchmod(descriptor, replaced.st_mode & kPermissions);
}

/// 0, or an errno value.
int copy_into(const std::string &from, const std::string &to) {
    Stream source = FILE_open(from, "rb");
    if (!source) return errno;
    Stream target(std::fopen(to.c_str(), "we"), Stream::Kind::file);
    if (!target) return errno;
    std::array<char, 65536> part{};
    std::size_t count = 0;
    while ((count = std::fread(part.data(), 1, part.size(), source.get())) > 0)
        if (std::fwrite(part.data(), 1, count, target.get()) != count) return errno;
    if (std::ferror(source.get()) != 0) return EIO;
    return target.close() ? 0 : errno;
}

} // namespace

OutputFile::Aside::~Aside() {
    if (path.empty()) return;
    unlink(path.c_str());
    UNFINISHED_take_out(path.c_str());
}

OutputFile::OutputFile(OutputFile &&other) noexcept
    : stream_(std::move(other.stream_)), aside_(std::move(other.aside_)),
      fault_(std::exchange(other.fault_, 0)) {}

OutputFile &OutputFile::operator=(OutputFile &&other) noexcept {
    if (this != &other) {
        discard();
        stream_ = std::move(other.stream_);
        aside_ = std::move(other.aside_);
        fault_ = std::exchange(other.fault_, 0);
    }
    return *this;
}

OutputFile OutputFile::create(std::string_view name) {
    OutputFile file;
    if (FILE_is_stdio(name) != 0 || name.starts_with('|')) {
        file.stream_ = FILE_open(name, "w");
        if (!file.stream_) file.fail(errno);
        return file;
    }
    if (!file.open_path(FILE_add_user_path(name))) file.stream_ = Stream();
    return file;
}

OutputFile OutputFile::append(std::string_view name) {
    OutputFile file;
    file.stream_ = FILE_open(name, "a");
    if (!file.stream_) file.fail(errno);
    return file;
}

bool OutputFile::open_path(const std::string &path) {
    if (FILE_make_dir(path, 1) != 0) fail(errno);
    struct stat info {};
    const bool exists = !failed() && stat(path.c_str(), &info) == 0;
    if (!exists && !failed() && errno != ENOENT) fail(errno);
    if (exists && S_ISDIR(info.st_mode)) fail(EISDIR);
    if (failed()) return false;
    if (exists && (!S_ISREG(info.st_mode) || is_standard_stream(path, info))) return open_in_place(path);
    // A file that must not be written is not replaced either.
    if (exists && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) fail(errno);
    std::string target = path;
    fail(follow_links(target));
    if (failed()) return false;
    if (open_aside(target, exists ? &info : nullptr)) return true;
    const bool closed_directory = fault_ == EACCES || fault_ == EPERM || fault_ == EROFS;
    if (!exists || !closed_directory) return false;
    MESS_print(kWarn, "OutputFile: Written in place, no file can be made beside it: %s: %s\n", path.c_str(),
               fault().c_str());
    fault_ = 0;
    return open_in_place(path);
}

bool OutputFile::open_in_place(const std::string &path) {
    stream_ = Stream(std::fopen(path.c_str(), "we"), Stream::Kind::file);
    if (!stream_) fail(errno);
    return !failed();
}

bool OutputFile::open_aside(const std::string &target, const struct stat *replaced) {
    auto aside = std::make_unique<Aside>();
    aside->target = target;
    std::string path = directory_of(target) + "/" + unpredictable_name();
    int descriptor = -1;
    {
        const SignalPause pause;
        descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kUsualMode);
        if (descriptor < 0) {
            fail(errno);
            return false;
        }
        aside->path = std::move(path);
        if (!UNFINISHED_add(aside->path.c_str())) fail(EMFILE);
    }
    if (replaced != nullptr) take_over_permissions(descriptor, *replaced);
    std::FILE *const file = failed() ? nullptr : fdopen(descriptor, "w");
    if (file == nullptr) {
        fail(errno);
        close(descriptor);
        return false;
    }
    stream_ = Stream(file, Stream::Kind::file);
    aside_ = std::move(aside);
    return true;
}

void OutputFile::write(std::string_view bytes) {
    if (!stream_ || failed()) return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream_.get()) != bytes.size()) fail(errno);
}

void OutputFile::put_in_place() {
    if (std::rename(aside_->path.c_str(), aside_->target.c_str()) == 0) return;
    const int fault = errno;
    // A file that may be written but not replaced: another user's in a directory for all, or a mounted one.
    const bool stays = fault == EPERM || fault == EACCES || fault == EBUSY;
    if (!stays || FILE_exist(aside_->target) == 0) {
        fail(fault);
        return;
    }
    MESS_print(kWarn, "OutputFile: Written in place, it cannot be replaced: %s: %s\n", aside_->target.c_str(),
               std::strerror(fault));
    if (const int copy_fault = copy_into(aside_->path, aside_->target); copy_fault != 0) fail(copy_fault);
}

bool OutputFile::commit() {
    if (!stream_) return false;
    const bool command = stream_.kind() == Stream::Kind::pipe;
    if (!failed() && std::fflush(stream_.get()) != 0) fail(errno);
    errno = 0;
    if (!stream_.close()) fail(errno != 0 ? errno : command ? kCommandFailed : EIO);
    if (aside_ && !failed()) put_in_place();
    aside_.reset();
    return !failed();
}

void OutputFile::discard() {
    stream_ = Stream();
    aside_.reset();
}

std::string OutputFile::fault() const {
    return fault_ == kCommandFailed ? "the command ended with an error" : std::strerror(fault_);
}
