// Converted radar summaries: any bytes as text or netCDF, every report and record of them, every field.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lib/report/message.h"
#include "radar/summary/fields.h"
#include "radar/summary/reader.h"
#include "scratch_file.h"

namespace {

/// More reports than any real file has: a netCDF file may speak of any number in a few bytes.
constexpr int kMostReports = 500;

void take_fields(const MdrReport &report, const RcmRecord &record) {
    StationData data;
    for (const std::string_view name : RAD_field_names()) {
        (void)MDR_get_data(report, name, data);
        for (int item = 0; item < 3; ++item) (void)RCM_get_data(record, item, name, data);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    const ScratchFile scratch({reinterpret_cast<const char *>(data), size});
    int kind = 0;
    const int file = RAD_open(scratch.name(), kind);
    if (file < 0) return 0;
    RadarInfo info;
    RAD_getinfo(file, info);
    RcmRecord record;
    MdrReport report;
    while (RCM_read(file, record) == 1) {
        if (record.storms.size() > kRecordMostStorms || record.vortices.size() > kRecordMostVortices)
            __builtin_trap();
        take_fields(report, record);
    }
    for (int next = -1, read = 0; read < kMostReports && MDR_read(file, report, false, next) == 0;
         next = -1, ++read)
        take_fields(report, record);
    int last = 3;
    (void)MDR_read(file, report, true, last);
    (void)RAD_faults(file);
    RAD_close(file);
    return 0;
}
