// RRWDS site files: any bytes as header and radials.

#include <cstddef>
#include <cstdint>
#include <span>

#include "radar/rrwds/file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::byte> bytes = std::as_bytes(std::span(data, size));
    RrwdsHeader header;
    if (!RRWDS_decode_header(bytes, header)) return 0;
    for (std::size_t at = kRrwdsHeaderBytes; at < size && at < kRrwdsFileBytes; at += kRrwdsRecordBytes)
        for (const std::uint8_t level : RRWDS_decode_radial(bytes.subspan(at)))
            if (level > 7) __builtin_trap();
    if (!is_missing(header.date.month)) {
        DateRecord near;
        near.year = 2000 + static_cast<int>(data[0] % 100);
        near.month = near.day = 1;
        near.hour = near.minute = 0;
        const int year = RRWDS_year(header.date, near);
        if (year < near.year - 1 || year > near.year + 1) __builtin_trap();
    }
    return 0;
}
