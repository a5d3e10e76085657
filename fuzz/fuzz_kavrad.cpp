// KAVRAD grids: any bytes behind a header, every line and packet. The first byte chooses grid and size.

#include <cstddef>
#include <cstdint>
#include <string>

#include "lib/report/message.h"
#include "radar/kavrad/decoder.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr std::size_t kHeaderBytes = 2048, kTypeAt = 2010, kDateAt = 2012, kDateWidth = 12,
                          kSizeAt = 2034;
    if (size <= kDateWidth) return 0;
    MESS_set(0, 0);
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    std::string content(kHeaderBytes, ' ');
    content[kTypeAt] = (data[0] & 1) != 0 ? 'C' : 'S';
    content[kSizeAt] = (data[0] & 2) != 0 ? '\n' : ' ';
    content.replace(kDateAt, kDateWidth, bytes.substr(1, kDateWidth));
    content += bytes.substr(1);
    const ScratchFile file(content);
    Stream stream = FILE_open(file.name(), "r");
    MosaicInfo info;
    if (!kKavradFormat.read_header(stream, info)) __builtin_trap();
    MosaicLine line;
    while (kKavradFormat.next_line(stream, line))
        for (const MosaicRun &run : line.runs)
            if (run.cells < 1 || run.column < 0 || run.column + run.cells > info.domain.nx ||
                is_missing(kKavradFormat.values()[run.level]) || line.number >= info.domain.ny)
                __builtin_trap();
    return 0;
}
