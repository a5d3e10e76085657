// Real products against tables of what independent programs read from them.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

#include <gtest/gtest.h>
#include <zlib.h>

#include "lib/text/strings.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

std::string samples() {
    return shared_dir() + "/samples/";
}

/// Everything the fact table counts over one packet.
struct Counted {
    int elements = 0;
    unsigned long raw_bytes = 0, data_bytes = 0;
    unsigned long bins = 0, level_sum = 0, bins_ge2 = 0, bins_nonzero = 0;
    int level_max = 0;
    unsigned long crc = crc32(0, nullptr, 0);
    std::map<int, unsigned long> histogram;
    std::string first_values;
    float first_start = 0, first_delta = 0, last_start = 0;
};

void count_element(Counted &counted) {
    NidsReader &reader = NIDS_reader();
    // Padding stands between the data and what comes next.
    const std::byte *const begin = reader.packet.element.data();
    const std::span raw(begin, reader.stream.bytes().peek(0).data());
    counted.crc =
        crc32(counted.crc, reinterpret_cast<const Bytef *>(raw.data()), static_cast<uInt>(raw.size()));
    counted.raw_bytes += raw.size();
    counted.data_bytes += reader.packet.element.size();
    ++counted.elements;
    NidsRun run;
    int result = 0, runs = 0;
    while ((result = NIDS_get_data(run)) == 1) {
        const auto length = static_cast<unsigned long>(run.length);
        counted.bins += length;
        counted.level_sum += length * static_cast<unsigned long>(run.level);
        if (run.level >= 2) counted.bins_ge2 += length;
        if (run.level != 0) counted.bins_nonzero += length;
        if (length > 0) counted.histogram[run.level] += length;
        if (length > 0) counted.level_max = std::max(counted.level_max, run.level);
        if (counted.elements > 1 || ++runs > 8) continue;
        if (!counted.first_values.empty()) counted.first_values += ' ';
        if (reader.packet.code != kPacketDigitalRadial) counted.first_values += std::to_string(length) + "x";
        counted.first_values += std::to_string(run.level);
    }
    EXPECT_EQ(result, 0);
}

bool is_radial(int code) {
    return code == kPacketRadial || code == kPacketDigitalRadial;
}

bool is_image(int code) {
    return is_radial(code) || code == kPacketRaster || code == kPacketDigitalPrecip;
}

Counted count_packet(int code) {
    Counted counted;
    int result = 0;
    float start = 0, delta = 0;
    while ((result = is_radial(code) ? NIDS_get_radial(start, delta) : NIDS_get_rastor()) == 1) {
        if (counted.elements == 0) {
            counted.first_start = start;
            counted.first_delta = delta;
        }
        counted.last_start = start;
        count_element(counted);
    }
    EXPECT_EQ(result, 0);
    return counted;
}

std::string date_text(const DateRecord &date) {
    return format_text("%04d-%02d-%02dT%02d:%02d:%02dZ", date.year, date.month, date.day, date.hour,
                       date.minute, date.second);
}

/// The number behind "name=" in a text of such pairs, or 0.
int named_number(const std::string &text, const std::string &name) {
    const std::size_t at = (" " + text).find(" " + name + "=");
    return at == std::string::npos ? 0 : std::stoi(text.substr(at + name.size() + 1));
}

/// Packet codes stand in hexadecimal with four digits, or in decimal with two at most.
int packet_code(const std::string &text) {
    const int code = std::stoi(text, nullptr, text.size() == 4 ? 16 : 10);
    return code == kPacketRaster7 ? int{kPacketRaster} : code;
}

/// The packets that the reader knows; any other one ends the loop.
bool is_known(int code) {
    static const std::set<int> kKnown{
        1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, kPacketRadial, kPacketRaster};
    return kKnown.contains(code);
}

void expect_header(TsvRow &row, const NidsInfo &info) {
    const NidsDescription &description = NIDS_get_prod_desc();
    EXPECT_EQ(std::to_string(info.code), row["code"]);
    EXPECT_EQ(std::to_string(info.source), row["source"]);
    EXPECT_EQ(std::to_string(info.mode), row["mode"]);
    EXPECT_EQ(date_text(info.date), row["volume_time"]);
    EXPECT_EQ(std::to_string(description.latitude), row["lat_millideg"]);
    EXPECT_EQ(std::to_string(description.longitude), row["lon_millideg"]);
    EXPECT_EQ(std::to_string(description.height_ft), row["height_ft"]);
    EXPECT_EQ(std::to_string(description.sequence), row["sequence"]);
    EXPECT_EQ(std::to_string(description.elevation_number), row["elevation_number"]);
    EXPECT_EQ(std::to_string(NIDS_get_mess().length), row["message_length"]);
    for (std::size_t i = 1; i <= 10; ++i) {
        const std::string name = "P" + std::to_string(i);
        EXPECT_EQ(std::to_string(description.p[i]), row[name]) << name;
    }
    std::string words;
    for (const unsigned word : description.threshold)
        words += (words.empty() ? "" : " ") + format_text("%04X", word);
    EXPECT_EQ(words, row["T1_T16_hex"]);
    EXPECT_EQ(std::to_string(description.symbology), row["off_symbology"]);
    EXPECT_EQ(std::to_string(description.graphic), row["off_graphic"]);
    if (info.code == 48) return; // drawn on a screen, not a map
    EXPECT_FLOAT_EQ(info.domain.clat, static_cast<float>(description.latitude) / 1000);
    EXPECT_FLOAT_EQ(info.domain.clon, static_cast<float>(description.longitude) / 1000);
}

void expect_image(TsvRow &row, const NidsInfo &info) {
    const Counted counted = count_packet(info.packet);
    const bool radial = is_radial(info.packet);
    const std::string &geometry = row["geometry"];
    EXPECT_EQ(counted.elements, named_number(geometry, radial ? "radials" : "rows"));
    EXPECT_EQ(info.rows, radial ? 2 * named_number(geometry, "bins") : named_number(geometry, "rows"));
    EXPECT_EQ(std::to_string(counted.raw_bytes), row["data_bytes"].substr(0, row["data_bytes"].find(' ')));
    EXPECT_EQ(std::to_string(counted.bins), row["bins"]);
    EXPECT_EQ(std::to_string(counted.level_sum), row["level_sum"]);
    EXPECT_EQ(std::to_string(counted.bins_ge2), row["bins_ge2"]);
    EXPECT_EQ(std::to_string(counted.bins_nonzero), row["bins_nonzero"]);
    EXPECT_EQ(std::to_string(counted.level_max), row["level_max"]);
    EXPECT_EQ(std::stoul(row["data_crc32"], nullptr, 16), counted.crc);
    EXPECT_EQ(counted.first_values, row["first_values"]);
    if (info.packet == kPacketDigitalRadial) {
        EXPECT_EQ(std::to_string(counted.raw_bytes - counted.data_bytes), row["pad_bytes"]);
    }
    if (radial) {
        EXPECT_FLOAT_EQ(counted.first_start, std::stof(row["first_start_deg"]));
        EXPECT_FLOAT_EQ(counted.first_delta, std::stof(row["first_delta_deg"]));
        EXPECT_FLOAT_EQ(counted.last_start, std::stof(row["last_start_deg"]));
    }
    if (row["level_histogram"].empty()) return;
    std::string histogram;
    for (const auto &[level, bins] : counted.histogram)
        histogram += (histogram.empty() ? "" : " ") + std::to_string(level) + ":" + std::to_string(bins);
    EXPECT_EQ(histogram, row["level_histogram"]);
}

/// The text of a table row as the reader delivers it: at most 99 characters, up to a binary zero (written
/// "\0").
std::string expected_text(const std::string &content) {
    const std::string text = content.substr(content.find("text=") + 5);
    return text.substr(0, std::min<std::size_t>(99, text.find("\\0")));
}

void expect_text(const std::string &content) {
    NidsText text;
    ASSERT_EQ(NIDS_get_text(text), 1);
    const std::string numbers = content.substr(0, content.find("text="));
    EXPECT_EQ(text.i, static_cast<float>(named_number(numbers, "i")));
    EXPECT_EQ(text.j, static_cast<float>(named_number(numbers, "j")));
    EXPECT_EQ(text.value, NIDS_get_thres().at(static_cast<std::size_t>(named_number(numbers, "value"))));
    EXPECT_EQ(text.text, expected_text(content));
    EXPECT_EQ(NIDS_get_text(text), 0);
}

std::string joined(std::initializer_list<float> numbers) {
    std::string text;
    for (const float number : numbers)
        text += (text.empty() ? "" : ",") + format_text("%.0f", static_cast<double>(number));
    return text;
}

void expect_vectors(const std::string &content) {
    NidsVector vector{};
    int count = 0;
    std::string first;
    while (NIDS_get_vector(vector) == 1)
        if (count++ == 0) first = joined({vector.i1, vector.j1, vector.i2, vector.j2});
    EXPECT_EQ(count, named_number(content, "vectors"));
    EXPECT_EQ("first=" + first, content.substr(content.find("first=")));
    EXPECT_EQ(vector.value, static_cast<float>(named_number(content, "value")));
}

void expect_barbs(const std::string &content) {
    NidsWind wind{};
    int count = 0;
    const std::string expected = content.substr(content.find("first=") + 6);
    while (NIDS_get_wind(wind) == 1) {
        if (count++ != 0) continue;
        EXPECT_EQ(joined({wind.i, wind.j, wind.direction, wind.speed}),
                  expected.substr(expected.find(',') + 1));
        EXPECT_EQ(wind.value, NIDS_get_thres().at(std::stoul(expected)));
    }
    EXPECT_EQ(count, named_number(content, "barbs"));
}

/// Compares the packets of one layer or page; `code` is that of the first one, whose header has been read.
void expect_packets(std::vector<TsvRow> &rows, int code) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        TsvRow &row = rows[i];
        SCOPED_TRACE(row["where"] + " at " + row["offset"]);
        const int expected = packet_code(row["packet"]);
        if (i > 0) {
            ASSERT_EQ(NIDS_packet(code), is_known(expected) ? 1 : 0);
        }
        if (!is_known(expected)) return;
        ASSERT_EQ(code, expected);
        if (code == kPacketText || code == kPacketTextValue) expect_text(row["content"]);
        if (code == kPacketVector || code == kPacketVectorValue) expect_vectors(row["content"]);
        if (code == kPacketWind) expect_barbs(row["content"]);
    }
    EXPECT_LT(NIDS_packet(code), 1);
}

} // namespace

TEST(NidsRealFiles, HeadersAndImagesAreAsTheFactsSay) {
    SKIP_WITHOUT_REAL_FILES();
    const auto rows = read_tsv(samples() + "level3-facts.tsv");
    ASSERT_GT(rows.size(), 50U);
    for (TsvRow row : rows) {
        SCOPED_TRACE(row["file"]);
        ASSERT_TRUE(NIDS_open_stream(samples() + "level3/" + row["file"]));
        NidsInfo info;
        // Bulletins of text and the status message describe no product.
        const bool product = row["code"] != "text" && row["code"] != "2";
        ASSERT_EQ(NIDS_get_header(info), product ? 1 : 0);
        if (!product) continue;
        expect_header(row, info);
        const bool listed = row["first_packet"].size() == 4;
        const int first = listed ? packet_code(row["first_packet"]) : 0;
        EXPECT_EQ(info.packet, is_known(first) ? first : 0);
        if (is_image(info.packet)) expect_image(row, info);
        // A second reading gives the same, from the bytes already decompressed.
        NidsInfo again;
        ASSERT_EQ(NIDS_get_header(again), 1);
        EXPECT_EQ(again.label, info.label);
        EXPECT_EQ(again.packet, info.packet);
    }
}

TEST(NidsRealFiles, NamesAndLabels) {
    SKIP_WITHOUT_REAL_FILES();
    const std::vector<std::array<std::string, 3>> expected{
        {"KLSX_SDUS53_N0RLSX_202105041639", "Base reflectivity (Dbz)", "Md=pr Rng=124(0.5) El=0.5 Mx=49"},
        {"KLSX_SDUS23_N1ULSX_202112110200", "Base velocity (knt)",
         "Md=pr Rng=124(0.1) El=1.3 Mn,Mx=-123,115"},
        {"KLSX_SDUS23_N2SLSX_202112110109", "Stm rel mn rad velocity (knt)",
         "Md=pr El=2.4 Stm=233-58 Mn,Mx=-103,93"},
        {"KLSX_SDUS53_NTPLSX_202112110114", "Sfc storm total rainfall acc. (in)",
         "Md=pr Rng=124(1.1) B=10/15:46 Mx=1.6"},
        {"KLSX_SDUS53_DSPLSX_202112110109", "Digital storm precip (in)",
         "Md=pr Rng=124(1.1) B=10/15:46 Mx=1.60"},
        {"KLSX_SDUS63_NMLLSX_202112110119", "Layer 2 comp refl (max Dbz)",
         "Md=pr Rng=124(2.2) Lyr=24-33 Mx=57"},
        {"KLSX_SDUS83_N0XLSX_202112110212", "Digital diff refl (dBZ)",
         "Md=pr Rng=162(0.1) El=0.5 Mn,Mx=-7.9,7.9"},
        {"KLSX_SDUS83_HHCLSX_202112110140", "Hybrid hydro class", "Md=pr Rng=124(0.1)"},
        {"LSX_N0B_2022_03_30_15_40_41", "Base reflectivity (Dbz)", "Md=pr Rng=248(0.1) El=0.5 Mx=58"},
        {"LSX_N0G_2022_03_30_15_40_41", "Base velocity (knt)", "Md=pr Rng=162(0.1) El=0.5 Mn,Mx=-123,111"},
        {"Level3_STL_TZL_20211211_0200.nids", "Base reflectivity (Dbz)", "Md=pr Rng=224(0.2) Mx=50"},
    };
    for (const auto &[file, name, label] : expected) {
        SCOPED_TRACE(file);
        ASSERT_TRUE(NIDS_open_stream(samples() + "level3/" + file));
        NidsInfo info;
        ASSERT_EQ(NIDS_get_header(info), 1);
        EXPECT_EQ(info.name, name);
        EXPECT_EQ(info.label, label);
    }
}

TEST(NidsRealFiles, PacketsAndPagesAreAsTheFactsSay) {
    SKIP_WITHOUT_REAL_FILES();
    std::map<std::string, std::map<std::string, std::vector<TsvRow>>> packets;
    for (TsvRow row : read_tsv(samples() + "level3-packets.tsv"))
        packets[row["file"]][row["where"]].push_back(row);
    int compared = 0;
    for (TsvRow row : read_tsv(samples() + "level3-facts.tsv")) {
        SCOPED_TRACE(row["file"]);
        ASSERT_TRUE(NIDS_open_stream(samples() + "level3/" + row["file"]));
        NidsInfo info;
        if (NIDS_get_header(info) == 0) continue;
        auto &places = packets[row["file"]];
        if (info.packet != 0) expect_packets(places["L1"], info.packet);
        const int pages = row["graphic_pages"].empty() ? 0 : std::stoi(row["graphic_pages"]);
        ASSERT_EQ(NIDS_graphic(), pages > 0 ? 1 : 0);
        for (int page = 1; page <= pages; ++page) {
            ASSERT_EQ(NIDS_graphic_layer(), page);
            int code = 0;
            ASSERT_EQ(NIDS_packet(code), 1);
            expect_packets(places["G" + std::to_string(page)], code);
            ++compared;
        }
        EXPECT_EQ(NIDS_graphic_layer(), 0);
    }
    EXPECT_GT(compared, 30);
}

TEST(NidsRealFiles, LevelsHaveTheValuesOfTheFormulas) {
    SKIP_WITHOUT_REAL_FILES();
    std::string open;
    NidsInfo info;
    std::array<float, 256> values{};
    int compared = 0;
    for (TsvRow row : read_tsv(samples() + "level3-points.tsv")) {
        SCOPED_TRACE(row["file"] + " level " + row["level"]);
        if (row["file"] != open) {
            open = row["file"];
            ASSERT_TRUE(NIDS_open_stream(samples() + "level3/" + open));
            ASSERT_EQ(NIDS_get_header(info), 1);
            NIDS_level_values(info.packet, values);
        }
        const float expected = std::stof(row["value_formula_A"]);
        EXPECT_NEAR(values.at(std::stoul(row["level"])), expected, 0.001F + 0.001F * std::abs(expected));
        ++compared;
    }
    EXPECT_GT(compared, 3000);
}
