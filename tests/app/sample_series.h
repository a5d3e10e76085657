#pragma once
/// Small Level III files, one every five minutes, for runs of the whole program.

#include <string>
#include <vector>

#include "lib/scratch_dir.h"
#include "samples/level3.h"

inline const std::string kData = std::string(VYX_SOURCE_DIR) + "/data";

inline std::vector<std::string> write_series(const ScratchDir &files, int count) {
    constexpr std::int64_t ten_pm = 1057356000; // 4 July 2003, UTC
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        samples::Level3Product product;
        product.code = 19;
        product.time = ten_pm + i * 300;
        product.lat_millideg = 38699;
        product.lon_millideg = -90683;
        product.p = {0, 0, 0, 5, 61, 12, 30, 0, 0, 0, 0};
        for (unsigned level = 0; level < product.thresholds.size(); ++level)
            product.thresholds.at(level) = level == 0 ? 0x8002U : level * 5;
        samples::RadialData radials;
        for (int azimuth = 0; azimuth < 360; ++azimuth) {
            const bool storm = azimuth >= i * 40 && azimuth < i * 40 + 60;
            radials.radials.emplace_back(230, static_cast<std::uint8_t>(storm ? 9 : 0));
        }
        product.packets = {samples::radial_packet(radials)};
        const samples::Bytes bytes =
            samples::level3_file(product, samples::Framing::wmo, samples::Compression::none);
        const std::string minute = std::to_string(100 + i * 5).substr(1);
        names.push_back(files.write("KLSX_N0R_20030704_22" + minute,
                                    {reinterpret_cast<const char *>(bytes.data()), bytes.size()}));
    }
    return names;
}
