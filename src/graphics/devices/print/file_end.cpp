#include "graphics/devices/print/file_end.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "lib/system/stream.h"

bool file_is_absent(const std::string &name) {
    return FILE_exist(name) == 0 || FILE_size(name) == 0;
}

bool file_is_finished(const std::string &name, std::string_view begin, std::string_view end) {
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

bool file_take_off(const std::string &name, std::size_t bytes) {
    std::error_code error;
    const std::int64_t size = FILE_size(name);
    std::filesystem::resize_file(FILE_add_user_path(name),
                                 static_cast<std::uintmax_t>(std::max<std::int64_t>(size, 0)) - bytes, error);
    errno = error.value();
    return !error;
}
