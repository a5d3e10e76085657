#include "radar/common/input.h"

#include <cerrno>
#include <cstdio>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "radar/common/inflate.h"

namespace {

/// The bytes as a file without a name, at its first byte.
Stream stream_of(const std::vector<std::byte> &bytes) {
    const int descriptor = memfd_create("gunzipped", MFD_CLOEXEC);
    if (descriptor < 0) return {};
    std::FILE *const file = fdopen(descriptor, "w+b");
    if (file == nullptr) {
        const int fault = errno;
        close(descriptor);
        errno = fault;
        return {};
    }
    Stream stream(file, Stream::Kind::file);
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) < bytes.size()) return {};
    std::rewind(file);
    return stream;
}

const char *damage_of(Inflated result) {
    switch (result) {
    case Inflated::done: break;
    case Inflated::truncated: return "The gzip file is cut";
    case Inflated::damaged: return "The gzip file is damaged";
    case Inflated::too_large: return "The gzip file holds more than is read";
    case Inflated::too_many: return "The gzip file has more pieces than are read";
    }
    return nullptr;
}

} // namespace

Stream RADAR_open_input(const std::string &name) {
    constexpr std::size_t kMagicBytes = 3;
    Stream stream = FILE_open_input(name);
    if (!stream) return stream;
    const bool zipped = INFLATE_is_gzip(stream.read_all(kMagicBytes));
    std::rewind(stream.get());
    if (!zipped) return stream;
    std::vector<std::byte> inside;
    if (const char *const damage =
            damage_of(INFLATE_gzip(stream.read_all(kMostInputBytes), kMostGunzipped, inside)))
        MESS_print(kWarn, "RADAR_open_input: %s: %s\n", name.c_str(), damage);
    return stream_of(inside);
}
