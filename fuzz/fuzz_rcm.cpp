// Radar Coded Messages: any bytes, every report of them.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "radar/rcm/reader.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    Stream stream = FILE_open(file.name(), "r");
    RcmReport report;
    while (RCM_read_site(stream, report) >= 0) {
        if (report.storms.size() > kRcmMostStorms || report.entries.size() > kRcmMostEntries)
            __builtin_trap();
        RCM_print(kOut2, report);
    }
    return 0;
}
