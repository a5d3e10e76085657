// Level II volumes: any bytes as a plain file, as one of bzip2 records, or gzipped, every radial and gate.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/report/message.h"
#include "radar/lev2/reader.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    const ScratchFile file({reinterpret_cast<const char *>(data), size});
    if (LEV2_open_file(file.name()) != 1) return 0;
    Lev2Info info;
    (void)LEV2_get_header(info); // messages are sought behind a damaged one, too
    Lev2Radial radial;
    for (; LEV2_get_block(radial) == 1; LEV2_next_block())
        for (int type = 0; type < static_cast<int>(kLev2Types); ++type)
            if (LEV2_set_data_type(type) == 1)
                while (!is_missing(LEV2_get_data())) {
                }
    if (LEV2_rewind_file() == 1) LEV2_list_cuts();
    LEV2_close_file();
    return 0;
}
