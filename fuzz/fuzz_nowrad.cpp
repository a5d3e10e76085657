// NOWRad mosaics: any bytes, every line and packet.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/report/message.h"
#include "radar/nowrad/decoder.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    Stream stream = FILE_open(file.name(), "r");
    MosaicInfo info;
    if (!kNowradFormat.read_header(stream, info)) return 0;
    MosaicLine line;
    while (kNowradFormat.next_line(stream, line))
        for (const MosaicRun &run : line.runs)
            if (run.cells < 1 || run.column < 0 || run.column + run.cells > info.domain.nx ||
                run.level > 15 || line.number >= info.domain.ny)
                __builtin_trap();
    if (NOWRad_rewind(stream) != 1) __builtin_trap();
    return 0;
}
