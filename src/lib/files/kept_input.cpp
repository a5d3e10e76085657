#include "lib/files/kept_input.h"

#include <array>
#include <optional>
#include <span>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lib/report/message.h"
#include "lib/text/strings.h"

namespace {

/// A file without a name, in memory, that holds the bytes of an input.
class KeptBytes {
public:
    KeptBytes() : descriptor_(memfd_create("input", MFD_CLOEXEC)) {}
    KeptBytes(const KeptBytes &) = delete;
    KeptBytes &operator=(const KeptBytes &) = delete;
    ~KeptBytes() {
        if (descriptor_ >= 0) close(descriptor_);
    }

    bool append(std::span<const std::byte> bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = write(descriptor_, bytes.data(), bytes.size());
            if (count <= 0) return false;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }

    /// A stream with a read position of its own.
    [[nodiscard]] Stream open() const {
        std::FILE *file = std::fopen(format_text("/proc/self/fd/%d", descriptor_).c_str(), "rbe");
        if (file != nullptr) return {file, Stream::Kind::file};
        // Without that directory the position is shared, and set back.
        const int copy = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
        if (copy < 0) return {};
        lseek(copy, 0, SEEK_SET);
        file = fdopen(copy, "rb");
        if (file == nullptr) close(copy);
        return {file, Stream::Kind::file};
    }

    bool whole = false; ///< nothing is missing at the end

private:
    int descriptor_;
};

struct State {
    std::optional<KeptBytes> standard; ///< standard input
    std::optional<KeptBytes> other;    ///< the command or pipe `name`
    std::string name;
};
State state;

bool is_pipe(std::string_view name) {
    struct stat info {};
    return stat(FILE_add_user_path(name).c_str(), &info) == 0 &&
           (S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode));
}

/// False when memory is out.
bool copy_bytes(std::FILE *from, const KeptBytes &to, bool &whole) {
    std::array<std::byte, 65536> part{};
    std::size_t total = 0;
    for (std::size_t count = 0; (count = std::fread(part.data(), 1, part.size(), from)) > 0; total += count) {
        if (total + count > kMostInputBytes) return true;
        if (!to.append(std::span(part).first(count))) return false;
    }
    whole = true;
    return true;
}

bool fill(std::string_view name, KeptBytes &kept) {
    const std::string text(name);
    Stream source = FILE_open(name, "rb");
    if (!source) return false;
    bool whole = false;
    if (!copy_bytes(source.get(), kept, whole)) {
        MESS_print(kWarn, "FILE_open_input: No memory for what is read from: %s\n", text.c_str());
        return false;
    }
    const bool ended_well = source.close();
    if (!whole)
        MESS_print(kWarn, "FILE_open_input: Only the first %zu bytes are read of: %s\n", kMostInputBytes,
                   text.c_str());
    else if (!ended_well)
        MESS_print(kWarn, "FILE_open_input: Ended with an error: %s\n", text.c_str());
    kept.whole = whole && ended_well;
    return true;
}

Stream open_kept(std::string_view name, std::optional<KeptBytes> &kept) {
    if (!kept) {
        kept.emplace();
        if (!fill(name, *kept)) kept.reset();
    }
    return kept ? kept->open() : Stream();
}

} // namespace

Stream FILE_open_input(std::string_view name) {
    if (FILE_is_stdio(name) != 0) return open_kept(name, state.standard);
    if (!FILE_is_command(name) && !is_pipe(name)) return FILE_open(name, "rb");
    if (state.name != name) {
        state.other.reset();
        state.name = name;
    }
    return open_kept(name, state.other);
}

bool FILE_can_reread(std::string_view name) {
    if (FILE_is_stdio(name) != 0) return state.standard.has_value();
    if (!FILE_is_command(name) && !is_pipe(name)) return true;
    return state.name == name && state.other.has_value();
}

bool FILE_input_is_whole(std::string_view name) {
    if (FILE_is_stdio(name) != 0) return !state.standard || state.standard->whole;
    return state.name != name || !state.other || state.other->whole;
}
