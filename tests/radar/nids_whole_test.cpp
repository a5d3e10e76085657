// What of a Level III file is there and what of it is drawn: cut and damaged files, packets passed over,
// files that are no products.

#include <fstream>

#include "gzipped.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "radar/common/file_kind.h"
#include "radar/nids/plot.h"
#include "radar/nids/state.h"
#include "real_files.h"
#include "samples/level3.h"

namespace {

using samples::Bytes;
using samples::ByteWriter;
using samples::Compression;
using samples::Framing;

std::string text_of(const Bytes &bytes) {
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

/// Forty radials of sixty bins.
samples::Level3Product reflectivity(int code) {
    samples::Level3Product p;
    p.code = code;
    p.time = 1057356000;
    p.lat_millideg = 38700;
    p.lon_millideg = -90700;
    for (unsigned i = 0; i < p.thresholds.size(); ++i) p.thresholds[i] = 5 * i;
    samples::RadialData data{0, 1, std::vector(40, std::vector<std::uint8_t>(60, 5))};
    for (std::size_t i = 0; i < data.radials.size(); ++i) data.radials[i][i] = 7;
    p.packets.push_back(code == 19 ? samples::radial_packet(data) : samples::digital_radial_packet(data));
    return p;
}

class NidsWhole : public testing::Test {
protected:
    void SetUp() override { MESS_set(0, kError | kWarn); }
    void TearDown() override {
        NIDS_close_file();
        NIDS_state() = NidsPlotState{};
    }
    /// Opens the bytes under a name of their own; what is said is kept without the name.
    int open(std::string_view bytes) {
        const std::string name = files_.write("product" + std::to_string(++count_), bytes);
        testing::internal::CaptureStderr();
        const int result = NIDS_open_file(name);
        said_ = testing::internal::GetCapturedStderr();
        for (std::size_t at; (at = said_.find(name)) != std::string::npos;)
            said_.replace(at, name.size(), "F");
        return result;
    }
    int open(const Bytes &bytes) { return open(text_of(bytes)); }

    ScratchDir files_;
    int count_ = 0;
    std::string said_;
};

TEST_F(NidsWhole, CutFilesAreToldWhateverTheirCompression) {
    for (const auto compression : {Compression::none, Compression::bzip2, Compression::zlib}) {
        const Bytes whole = samples::level3_file(reflectivity(compression == Compression::none ? 19 : 94),
                                                 Framing::wmo, compression);
        ASSERT_EQ(open(whole), 1);
        EXPECT_EQ(said_, "");
        bool opened = false;
        for (std::size_t size = 0; size < whole.size(); size += 7) {
            const int result = open(text_of(whole).substr(0, size));
            EXPECT_TRUE(result == 0 || said_.starts_with("NIDS_open_file: Incomplete product, ")) << size;
            EXPECT_GE(result, opened ? 1 : 0) << "more of a file is never less";
            opened = result == 1;
        }
        NIDS_state().options.strict = true;
        EXPECT_EQ(open(text_of(whole).substr(0, whole.size() - 9)), 0);
        EXPECT_NE(said_.find("NIDS_open_file: Unable to read file:F\n"), std::string::npos);
        EXPECT_EQ(open(whole), 1);
        NIDS_state().options.strict = false;
    }
    const std::string whole = text_of(samples::level3_message(reflectivity(19)));
    EXPECT_EQ(open(whole.substr(0, whole.size() - 40)), 1);
    const std::string bytes = std::to_string(whole.size() - 40) + " of " + std::to_string(whole.size());
    EXPECT_EQ(said_, "NIDS_open_file: Incomplete product, " + bytes + " bytes, 36 of 40 radials: F\n");
    const std::string zipped = text_of(gzipped(samples::level3_message(reflectivity(19))));
    EXPECT_EQ(open(zipped.substr(0, zipped.size() * 4 / 5)), 1);
    EXPECT_EQ(said_.substr(0, 67), "NIDS_open_file: Incomplete product, its compressed data end early, ");
}

TEST_F(NidsWhole, PacketsPassedOverAreNamed) {
    samples::Level3Product p = reflectivity(58);
    const auto counted = [](unsigned code, std::string_view content) {
        return ByteWriter().u16(code).u16(static_cast<unsigned>(content.size())).text(content).take();
    };
    p.packets = {counted(2, "ABCDEF"),
                 counted(15, "ABCDEF"),
                 counted(15, "abcdef"),
                 counted(23, "x"),
                 ByteWriter().u16(0x0802).u16(2).u16(1).take(),
                 ByteWriter().u16(0x0E03).u16(0x8000).u16(1).u16(1).u16(4).text("IIJJ").take(),
                 samples::text_packet(0, 1, 1, "behind an unknown packet")};
    EXPECT_EQ(open(samples::level3_message(p)), 1);
    EXPECT_EQ(said_,
              "NIDS_open_file: Packets of product 58 that are not drawn: 2, 15, 23, 0802, 0E03, 8: F\n");
    // Once for a file, however often a window draws it again.
    testing::internal::CaptureStderr();
    EXPECT_EQ(NIDS_open_file(files_.at("product1")), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    p.packets.clear();
    EXPECT_EQ(open(samples::level3_message(p)), 1);
    EXPECT_EQ(said_, "NIDS_open_file: Product 58 has no image to draw: F\n");
    Bytes trends = samples::level3_message(p);
    const std::size_t end = trends.size();
    trends[115] = static_cast<std::byte>(end / 2); // the graphic offset
    const Bytes times = ByteWriter().u16(22).u8(2).u8(1).u16(545).u16(550).take();
    for (const Bytes &packet : {times, counted(21, "trend"), counted(21, "trend")})
        trends.insert(trends.end(), packet.begin(), packet.end());
    EXPECT_EQ(open(trends), 1);
    EXPECT_EQ(said_, "NIDS_open_file: Packets of product 58 that are not drawn: 22, 21: F\n");
    EXPECT_EQ(open(samples::level3_message(reflectivity(34))), 1);
    EXPECT_EQ(said_, "NIDS_open_file: Product 34 is not drawn, the size of its bins is not known: F\n");
}

TEST_F(NidsWhole, WhatIsNoProductIsRefused) {
    const Bytes good = samples::level3_message(reflectivity(19));
    ASSERT_EQ(open(good), 1);
    const auto put = [](Bytes &bytes, std::size_t at, unsigned value) {
        for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::byte>(value >> (24 - 8 * i));
    };
    Bytes other_code = good, latitude = good, longitude = good, offset = good;
    other_code[31] = std::byte{20};
    put(latitude, 20, 91000);
    put(longitude, 24, 181000);
    put(offset, 108, 1U << 30);
    const std::string text = "Any text of some lines is no product.\n";
    for (const Bytes &bad : {other_code, latitude, longitude, offset, samples::bzip2_compressed(good),
                             samples::bzip2_compressed(Bytes(100000)), gzipped(gzipped(good))}) {
        EXPECT_EQ(open(bad), 0);
        EXPECT_EQ(said_, "NIDS_open_file: Unable to read file:F\n");
    }
    EXPECT_EQ(open(text + text + text + text + text + text), 0);
}

TEST_F(NidsWhole, GzippedProductsAreReadAndRecognised) {
    for (const auto framing : {Framing::none, Framing::wmo, Framing::noaaport}) {
        const Bytes file = samples::level3_file(reflectivity(94), framing, Compression::bzip2);
        const Bytes zipped = gzipped(file);
        EXPECT_EQ(RADAR_file_kind(std::span(zipped).first(std::min(kKindBytes, zipped.size()))),
                  RadarFileKind::level3);
        EXPECT_EQ(open(zipped), 1);
        EXPECT_EQ(said_, "");
        EXPECT_EQ(NIDS_get_info().packet, 16);
    }
}

TEST_F(NidsWhole, NoPrefixOfARealFileIsSilent) {
    SKIP_WITHOUT_REAL_FILES();
    constexpr std::size_t kStep = 97;
    for (const char *name : {"KLSX_SDUS53_NTPLSX_202112110114", "KLSX_SDUS23_N2QLSX_202112110250",
                             "Level3_STL_NCR_20211211_0200.nids"}) {
        std::ifstream file(shared_dir() + "/samples/level3/" + name, std::ios::binary);
        const std::string whole{std::istreambuf_iterator<char>(file), {}};
        ASSERT_GT(whole.size(), kStep);
        for (std::size_t size = 0; size < whole.size(); size += kStep) {
            open(whole.substr(0, size));
            EXPECT_NE(said_, "") << name << " " << size;
        }
        EXPECT_EQ(open(whole), 1);
        EXPECT_EQ(said_, "") << name;
    }
}

} // namespace
