#include "samples/rrwds.h"

#include <cmath>
#include <numbers>

#include "lib/system/calendar.h"
#include "samples/level3_products.h"
#include "samples/scene.h"

namespace samples {

namespace {

constexpr int kRadials = 360, kBins = 200, kBinsOfGroup = 8, kHeadBytes = 4;

unsigned decimal(int value) {
    return static_cast<unsigned>(value / 10 << 4 | value % 10);
}

} // namespace

Bytes rrwds_file(const RrwdsFile &file) {
    DateRecord date;
    DATE_get_gmdate(&file.time, date);
    const int tenths = static_cast<int>(std::lround(std::abs(file.elevation) * 10));
    const unsigned below = file.elevation < 0 ? 0x80U : 0U;
    ByteWriter out;
    out.text(file.station).u8(file.short_range ? 0x80 : 0).u8(0);
    out.u8(static_cast<unsigned>(date.hour / 10 << 6 | date.hour % 10 << 2));
    out.u8(decimal(date.minute) | below).u8(0);
    out.u8(static_cast<unsigned>(tenths / 100))
        .u8(static_cast<unsigned>(tenths / 10 % 10 << 4 | tenths % 10));
    out.u8(decimal(date.day)).u8(decimal(date.month));
    for (int azimuth = 0; azimuth < kRadials; ++azimuth) {
        for (int i = 0; i < kHeadBytes; ++i) out.u8(0);
        for (int first = 0; first < kBins; first += kBinsOfGroup) {
            unsigned bits = 0;
            for (int i = 0; i < kBinsOfGroup; ++i) bits |= file.level(azimuth, first + i) << (3 * i);
            out.u8(bits).u8(bits >> 8).u8(bits >> 16);
        }
        out.u8(0);
    }
    return out.take();
}

RrwdsFile rrwds(double minutes, bool short_range) {
    constexpr double kKmPerNm = 1.852;
    RrwdsFile file;
    file.short_range = short_range;
    file.time = kFirstVolume + static_cast<std::int64_t>(minutes * 60);
    const double bin_km = (short_range ? 0.5 : 1.0) * kKmPerNm;
    file.level = [bin_km, scene = Scene(minutes)](int azimuth, int bin) {
        const double angle = (azimuth + 0.5) * std::numbers::pi / 180, km = (bin + 0.5) * bin_km;
        const double dbz = scene.dbz(km * std::sin(angle), km * std::cos(angle));
        unsigned level = 0;
        for (const double step : {20, 30, 40, 45, 50, 55}) level += dbz >= step ? 1U : 0U;
        return level;
    };
    return file;
}

} // namespace samples
