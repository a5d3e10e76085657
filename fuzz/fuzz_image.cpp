// Image files of every format: any bytes, read, and written again where they are a picture.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "lib/report/message.h"
#include "scratch_file.h"

namespace {

/// Larger pictures cost time and show nothing new.
constexpr int kLargest = 1 << 16;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    ImageRecord record;
    if (IMG_read(file.name(), record, 0) != 1) return 0;
    if (static_cast<long>(record.width) * record.height > kLargest) return 0;
    GIF_interlace(record.width & 1);
    if (GIF_write("/dev/null", record) != 1 || PNG_write("/dev/null", record) != 1 ||
        XWD_write("/dev/null", record) != 1 || IMG_write("/dev/null", record, record.height & 1) != 1)
        __builtin_trap(); // whatever is read is whole
    return 0;
}
