// Text metafiles: any bytes, replayed onto the memory of a page.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "graphics/kernel/kernel.h"
#include "graphics/kernel/metafile_reader.h"
#include "lib/report/message.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const int opened = [] {
        MESS_set(0, 0);
        (void)gopen_gks("/dev/null", 0);
        return gopen_ws(1, "/dev/null", DeviceKind::meta);
    }();
    if (opened != 0) __builtin_trap();
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    (void)gread_metafile(file.name());
    return 0;
}
