// Level III products: any bytes, every packet and page.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "lib/report/message.h"
#include "radar/nids/reader.h"

namespace {

void read_elements() {
    float start = 0, delta = 0;
    NidsRun run;
    NidsVector vector{};
    NidsWind wind{};
    NidsText text;
    while (NIDS_get_radial(start, delta) == 1 || NIDS_get_rastor() == 1) {
        (void)NIDS_get_data(run); // one run, the rest as bytes
        NIDS_get_data_bytes();
    }
    while (NIDS_get_vector(vector) == 1 || NIDS_get_wind(wind) == 1 || NIDS_get_text(text) == 1) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    // A first byte with its high bit set asks for the second product of the file.
    NIDS_set_ext_info(size > 0 && (data[0] & 0x80) != 0 ? "#1" : "");
    const auto bytes = std::as_bytes(std::span(data, size));
    NIDS_set_bytes({bytes.begin(), bytes.end()});
    NidsInfo info;
    if (NIDS_get_header(info) != 1) return 0;
    NIDS_print_info(info);
    int code = 0;
    for (int more = info.packet != 0 ? 1 : 0; more == 1; more = NIDS_packet(code)) read_elements();
    if (NIDS_graphic() == 1)
        while (NIDS_graphic_layer() > 0)
            while (NIDS_packet(code) == 1) read_elements();
    return 0;
}
