// Real volumes against tables of what independent programs read from them.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

#include <gtest/gtest.h>
#include <zlib.h>

#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "radar/common/file_date.h"
#include "radar/lev2/reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

constexpr std::array kNames{"REF", "VEL", "SW", "ZDR", "PHI", "RHO", "CFP"};

std::string samples_dir() {
    return shared_dir() + "/samples/";
}

struct MomentSum {
    unsigned long radials = 0, gates = 0, zeros = 0, ones = 0, measured = 0, sum = 0;
    unsigned largest = 0;
    unsigned long crc = crc32(0, nullptr, 0);
    Lev2Gates first;
    std::string first_bytes;
};

struct CutSum {
    Lev2Radial first;
    float last_azimuth = 0;
    double elevation = 0;
    int radials = 0, ended = 0; ///< radials, and the number of the one that ends the cut
    std::array<MomentSum, kLev2Types> moments;
};

struct VolumeSum {
    std::map<int, int> types;
    int messages = 0;
    std::map<int, int> block_counts;
    std::map<int, CutSum> cuts;
    float most_dbz = kLev2BelowThreshold;
};

void add_gates(MomentSum &sum, const Lev2Gates &gates) {
    if (gates.count == 0) return;
    if (sum.radials++ == 0) {
        sum.first = gates;
        for (std::size_t i = 0; i < std::min<std::size_t>(12, gates.bytes.size()); ++i)
            sum.first_bytes += (i > 0 ? " " : "") + std::to_string(std::to_integer<unsigned>(gates.bytes[i]));
    }
    sum.crc = crc32(sum.crc, reinterpret_cast<const Bytef *>(gates.bytes.data()),
                    static_cast<uInt>(gates.bytes.size()));
    sum.gates += gates.size();
    for (std::size_t i = 0; i < gates.size(); ++i) {
        const unsigned level = gates.level(i);
        if (level == 0) ++sum.zeros;
        if (level == 1) ++sum.ones;
        if (level < 2) continue;
        ++sum.measured;
        sum.sum += level;
        sum.largest = std::max(sum.largest, level);
    }
}

VolumeSum sum_volume() {
    VolumeSum volume;
    Lev2Radial radial;
    for (; LEV2_get_block(radial) == 1; LEV2_next_block()) {
        ++volume.messages;
        ++volume.types[radial.type];
        if (radial.type != kLev2Legacy && radial.type != kLev2Generic) continue;
        if (radial.type == kLev2Generic) ++volume.block_counts[radial.block_count];
        CutSum &cut = volume.cuts[radial.elevation_number];
        if (cut.radials++ == 0) cut.first = radial;
        cut.last_azimuth = radial.azimuth;
        cut.elevation += static_cast<double>(radial.elevation);
        if (radial.status == kLev2EndOfElevation || radial.status == kLev2EndOfVolume)
            cut.ended = cut.radials;
        for (std::size_t i = 0; i < kLev2Types; ++i)
            add_gates(cut.moments[i], LEV2_get_gates(static_cast<int>(i)));
    }
    for (const auto &[number, cut] : volume.cuts)
        volume.most_dbz = std::max(volume.most_dbz, cut.moments[0].first.value(cut.moments[0].largest));
    return volume;
}

std::string pairs(const std::map<int, int> &counts) {
    std::string text;
    for (const auto &[key, count] : counts)
        text += (text.empty() ? "" : " ") + std::to_string(key) + ":" + std::to_string(count);
    return text;
}

std::string date_text(int days, int milliseconds) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    NIDS_julian_date(days, year, month, day);
    NIDS_dec_time(milliseconds / 1000, hour, minute, second);
    return format_text("%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", year, month, day, hour, minute, second,
                       milliseconds % 1000);
}

void expect_cut(TsvRow &row, const CutSum &cut) {
    SCOPED_TRACE("elevation " + row["elevation_number"]);
    EXPECT_EQ(std::to_string(cut.first.type), row["message_type"]);
    EXPECT_EQ(std::to_string(cut.radials), row["radials"]);
    EXPECT_EQ(cut.ended == 0 ? cut.radials : cut.ended, cut.radials) << "0: the cut is not finished";
    EXPECT_NEAR(cut.first.elevation, std::stof(row["elevation_deg_first"]), 0.0001F);
    EXPECT_NEAR(cut.elevation / cut.radials, std::stod(row["elevation_deg_mean"]), 0.0001);
    EXPECT_NEAR(cut.first.azimuth, std::stof(row["azimuth_deg_first"]), 0.0001F);
    EXPECT_NEAR(cut.last_azimuth, std::stof(row["azimuth_deg_last"]), 0.0001F);
    EXPECT_EQ(std::to_string(cut.first.azimuth_number), row["azimuth_number_first"]);
    EXPECT_EQ(cut.first.azimuth_resolution, std::stof(row["azimuth_resolution_deg"]));
    EXPECT_EQ(std::to_string(cut.first.status), row["radial_status_first"]);
    EXPECT_EQ(date_text(cut.first.collection_date, cut.first.collection_time), row["time_first"]);
    EXPECT_EQ(std::to_string(cut.first.pattern), row["vcp"]);
    EXPECT_NEAR(cut.first.nyquist * 100, std::stof(row["nyquist_cms"]), 0.01F);
    EXPECT_NEAR(cut.first.unambiguous_range * 10, std::stof(row["unambiguous_range_tenths_km"]), 0.01F);
    EXPECT_NEAR(cut.first.attenuation * 1000, std::stof(row["atmos_attenuation_thousandths"]), 0.01F);
    if (!row["radar_lat"].empty()) {
        EXPECT_NEAR(cut.first.lat, std::stof(row["radar_lat"]), 0.00001F);
        EXPECT_NEAR(cut.first.lon, std::stof(row["radar_lon"]), 0.00001F);
        EXPECT_EQ(cut.first.site_height, std::stof(row["site_height_m"]));
    }
    std::set<std::string> present, expected;
    for (std::size_t i = 0; i < kLev2Types; ++i)
        if (cut.moments[i].radials > 0) present.insert(kNames[i]);
    for (const std::string &name : parse_string(row["moments"], ' ')) expected.insert(name);
    EXPECT_EQ(present, expected);
}

void expect_moment(TsvRow &row, const MomentSum &sum) {
    SCOPED_TRACE("elevation " + row["elevation_number"] + " " + row["moment"]);
    EXPECT_EQ(std::to_string(sum.radials), row["radials"]);
    EXPECT_EQ(std::to_string(sum.first.count), row["gates"]);
    EXPECT_NEAR(sum.first.first_km * 1000, std::stof(row["first_gate_m"]), 0.01F);
    EXPECT_NEAR(sum.first.gate_km * 1000, std::stof(row["gate_size_m"]), 0.01F);
    EXPECT_EQ(std::to_string(sum.first.word_bits), row["word_bits"]);
    EXPECT_NEAR(sum.first.scale, std::stof(row["scale"]), 0.0001F);
    EXPECT_NEAR(sum.first.offset, std::stof(row["offset"]), 0.0001F);
    EXPECT_EQ(std::to_string(sum.gates), row["total_gates"]);
    EXPECT_EQ(std::to_string(sum.zeros), row["gates_0"]);
    EXPECT_EQ(std::to_string(sum.ones), row["gates_1"]);
    EXPECT_EQ(std::to_string(sum.measured), row["gates_ge2"]);
    EXPECT_EQ(std::to_string(sum.sum), row["sum_ge2"]);
    EXPECT_EQ(std::to_string(sum.largest), row["max_raw"]);
    if (!row["max_value"].empty()) {
        EXPECT_NEAR(sum.first.value(sum.largest), std::stof(row["max_value"]), 0.001F);
    }
    EXPECT_EQ(std::stoul(row["crc32"], nullptr, 16), sum.crc);
    EXPECT_EQ(sum.first_bytes, row["first_radial_gates"]);
}

} // namespace

TEST(Lev2RealFiles, EveryMessageAndGateIsAsTheFactsSay) {
    SKIP_WITHOUT_REAL_FILES();
    RES_put("file_path", VYX_SOURCE_DIR "/data/");
    RES_put("identifier", "");
    std::map<std::string, std::vector<TsvRow>> cuts, moments;
    for (const TsvRow &row : read_tsv(samples_dir() + "level2-elevations.tsv"))
        cuts[row.at("file")].push_back(row);
    for (const TsvRow &row : read_tsv(samples_dir() + "level2-moments.tsv"))
        moments[row.at("file")].push_back(row);
    const auto files = read_tsv(samples_dir() + "level2-facts.tsv");
    ASSERT_EQ(files.size(), 9U);
    for (TsvRow file : files) {
        SCOPED_TRACE(file["file"]);
        ASSERT_EQ(LEV2_open_file(samples_dir() + "level2/" + file["file"]), 1);
        Lev2Info info;
        ASSERT_EQ(LEV2_get_header(info), 0);
        const bool blank = file["identifier"].starts_with(" ");
        EXPECT_EQ(info.id, blank ? "" : file["identifier"].substr(1));
        EXPECT_EQ(format_text("%04d-%02d-%02dT%02d:%02d:%02d", info.date.year, info.date.month, info.date.day,
                              info.date.hour, info.date.minute, info.date.second),
                  file["volume_date_time"].substr(0, 19));
        VolumeSum volume = sum_volume();
        EXPECT_EQ(std::to_string(volume.messages), file["messages"]);
        EXPECT_EQ(pairs(volume.types), file["messages_by_type"]);
        EXPECT_EQ(pairs(volume.block_counts), file["data_block_counts"]);
        EXPECT_NEAR(volume.most_dbz, std::stof(file["max_dBZ"]), 0.01F);
        EXPECT_EQ(volume.cuts.size(), cuts[file["file"]].size());
        for (TsvRow &row : cuts[file["file"]])
            expect_cut(row, volume.cuts[std::stoi(row["elevation_number"])]);
        for (TsvRow &row : moments[file["file"]]) {
            const auto type =
                static_cast<std::size_t>(std::ranges::find(kNames, row["moment"]) - kNames.begin());
            expect_moment(row, volume.cuts[std::stoi(row["elevation_number"])].moments.at(type));
        }
    }
}
