#include "graphics/devices/print/joined_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "lib/report/message.h"
#include "lib/system/stream.h"

namespace {

bool is_absent(const std::string &name) {
    return FILE_exist(name) == 0 || FILE_size(name) == 0;
}

/// A plain file that begins and ends so.
bool is_finished(const std::string &name, std::string_view begin, std::string_view end) {
    std::error_code error;
    if (FILE_is_stdio(name) == 1 || !std::filesystem::is_regular_file(FILE_add_user_path(name), error))
        return false;
    const std::int64_t size = FILE_size(name);
    if (size < static_cast<std::int64_t>(begin.size() + end.size())) return false;
    Stream file = FILE_open(name, "rb");
    if (!file) return false;
    const auto next_is = [&file](std::string_view text) {
        std::string found(text.size(), '\0');
        return std::fread(found.data(), 1, found.size(), file.get()) == found.size() && found == text;
    };
    return next_is(begin) && std::fseek(file.get(), -static_cast<long>(end.size()), SEEK_END) == 0 &&
           next_is(end);
}

/// False when the file cannot be changed, for the reason in errno.
bool take_off(const std::string &name, std::size_t bytes) {
    std::error_code error;
    const std::int64_t size = FILE_size(name);
    std::filesystem::resize_file(FILE_add_user_path(name),
                                 static_cast<std::uintmax_t>(std::max<std::int64_t>(size, 0)) - bytes, error);
    errno = error.value();
    return !error;
}

} // namespace

OutputFile JoinedFile::open(PrintOutput output, FileEnds ends, const char *operation) {
    kind_ = Kind::alone;
    name_ = output.name;
    ends_ = std::move(ends);
    if (output.kind == PrintOutputKind::append && !join(output, operation)) return {};
    OutputFile file = open_print_output(output);
    if (!file) put_back();
    return file;
}

bool JoinedFile::join(PrintOutput &output, const char *operation) {
    if (is_absent(name_)) {
        output.kind = PrintOutputKind::create;
        return true;
    }
    if (!is_finished(name_, ends_.begin, ends_.end)) {
        if (!ends_.joins_any_file) {
            MESS_print(kError, "%s: Nothing can be appended to what is no %s of this kind: %s\n", operation,
                       ends_.kind, name_.c_str());
            return false;
        }
        MESS_print(kWarn, "%s: Not a file of this program made alike, appended as it is: %s\n", operation,
                   name_.c_str());
        kind_ = Kind::bare;
        return true;
    }
    if (!take_off(name_, ends_.end.size())) {
        MESS_print(kError, "%s: Unable to change (%s): %s\n", operation, std::strerror(errno), name_.c_str());
        return false;
    }
    kind_ = Kind::joined;
    kept_ = FILE_size(name_);
    return true;
}

void JoinedFile::put_back() const {
    if (!is_joined()) return;
    const std::int64_t written = FILE_size(name_) - kept_;
    if (written > 0 && !take_off(name_, static_cast<std::size_t>(written))) return;
    Stream file = FILE_open(name_, "a");
    if (file) std::fwrite(ends_.end.data(), 1, ends_.end.size(), file.get());
}

int JoinedFile::close(PrintWriter &out, const char *operation) const {
    if (!out.close()) {
        MESS_print(kError, "%s: Error writing %s: %s: %s\n", operation, ends_.kind, name_.c_str(),
                   out.fault().c_str());
        put_back();
        return -1;
    }
    MESS_print(kMess, "Created %s\n", ends_.kind);
    return 0;
}

void JoinedFile::abandon(PrintWriter &out) const {
    if (!out.is_open()) return;
    out.abandon();
    put_back();
}
