// A file to which a PostScript page is added: any bytes, since it is not ours. What stood there stays, apart
// from the ending, and a page follows.

#include <cstdint>
#include <string>
#include <string_view>

#include "graphics/kernel/kernel.h"
#include "lib/report/message.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const int quiet = MESS_set(0, 0);
    static_cast<void>(quiet);
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    // A file that is not finished by us is refused, after a message.
    (void)gopen_gks("", 0);
    if (gopen_ws(1, "p,+" + file.name() + ",color", DeviceKind::ps) >= 0) {
        gactivate_ws(1);
        gdeactivate_ws(1);
        (void)gclose_ws(1);
    }
    gclose_gks();
    return 0;
}
