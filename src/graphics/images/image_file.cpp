#include "graphics/images/image_file.h"

#include <algorithm>
#include <cerrno>
#include <string>

#include "graphics/images/formats.h"
#include "graphics/images/pixels.h"
#include "lib/files/output_name.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"

namespace {

/// More than any picture within the limits needs: four bytes a pixel, a header and a colour table.
constexpr std::size_t kMaxFileBytes = 4 * kMaxImagePixels + (1U << 20);

bool begins(std::span<const std::byte> bytes, std::string_view text, std::size_t offset = 0) {
    return bytes.size() >= offset + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char c, std::byte b) { return static_cast<std::byte>(c) == b; });
}

std::span<const std::byte> without_comment_line(std::span<const std::byte> bytes) {
    if (!begins(bytes, "** ")) return bytes;
    const auto end = std::find(bytes.begin(), bytes.end(), std::byte{'\n'});
    return bytes.subspan(std::min(static_cast<std::size_t>(end - bytes.begin()) + 1, bytes.size()));
}

int read_any(std::span<const std::byte> bytes, ImageRecord &record) {
    if (begins(bytes, "GIF")) return GIF_read(bytes, record);
    if (begins(bytes, "PNG", 1)) return PNG_read(bytes, record);
    if (begins(bytes, "VYXIMG")) return IMG_read_vyx(bytes, record);
    return XWD_read(bytes, record);
}

} // namespace

bool can_write(const char *operation, const ImageRecord &record) {
    if (is_complete(record)) return true;
    MESS_print(kWarn, "%s: No picture to write: %d x %d, %d bits, %d bytes a line\n", operation, record.width,
               record.height, record.bits_per_pixel, record.bytes_per_line);
    return false;
}

OutputFile create_image(const char *operation, std::string_view path) {
    const std::string name(path);
    if (FILE_is_input(path)) {
        MESS_print(kWarn, "%s: Not written: %s: it is an input file\n", operation, name.c_str());
        return {};
    }
    OutputFile file = OutputFile::create(path);
    if (!file)
        MESS_print(kWarn, "%s: Unable to open: %s: %s\n", operation, name.c_str(), file.fault().c_str());
    return file;
}

bool write_and_close(const char *operation, std::string_view path, OutputFile &file,
                     std::string_view content) {
    file.write(content);
    return close_written(operation, path, file);
}

bool close_written(const char *operation, std::string_view path, OutputFile &file) {
    if (file.commit()) return true;
    MESS_print(kWarn, "%s: Unable to write: %s: %s\n", operation, std::string(path).c_str(),
               file.fault().c_str());
    return false;
}

bool check_size(const char *operation, std::int64_t width, std::int64_t height) {
    if (is_possible_size(width, height)) return true;
    MESS_print(kWarn, "%s: Invalid size: %lld x %lld\n", operation, static_cast<long long>(width),
               static_cast<long long>(height));
    return false;
}

bool check_indices(const char *operation, const ImageRecord &record) {
    std::uint32_t highest = 0;
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        highest = std::max(highest, *std::max_element(values.begin(), values.end()));
    }
    if (highest < record.colors.size()) return true;
    MESS_print(kWarn, "%s: Invalid colour index: %u of %zu\n", operation, highest, record.colors.size());
    return false;
}

int IMG_read(std::string_view path, ImageRecord &record, int /*flag*/) {
    IMG_init(record);
    Stream file = FILE_open(path, "rb");
    if (!file) {
        const int fault = errno;
        MESS_print(kWarn, "IMG_read: Unable to open image file: %s\n", std::string(path).c_str());
        MESS_print_fault(kWarn, "IMG_read", path, fault);
        return 0;
    }
    const std::vector<std::byte> bytes = file.read_all(kMaxFileBytes);
    file = Stream();
    if (read_any(without_comment_line(bytes), record) == 1) return 1;
    IMG_free(record);
    return 0;
}

int gread_image_file(std::string_view path, ImageRecord &record) {
    return IMG_read(path, record, 0);
}
