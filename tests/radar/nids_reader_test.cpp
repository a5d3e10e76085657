// The Level III reader on small products made here: framings, rules of the product codes, packets, damaged
// input.

#include <array>
#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "plot/map/current_map.h"
#include "radar/common/beam_location.h"
#include "radar/common/file_date.h"
#include "radar/nids/product_table.h"
#include "radar/nids/reader.h"
#include "samples/level3.h"

using samples::Bytes;
using samples::ByteWriter;
using samples::Compression;
using samples::Framing;
using samples::Level3Product;

namespace {

constexpr std::size_t kSymbologyAt = 120; ///< bytes from the message header
constexpr std::size_t kGraphicOffsetAt = 112;

/// 2 July 2003, 12:00:00 UTC.
constexpr std::int64_t kNoon = 1057147200;

Level3Product product(int code, std::vector<Bytes> packets) {
    Level3Product made;
    made.code = code;
    made.time = kNoon;
    made.lat_millideg = 38699;
    made.lon_millideg = -90683;
    made.p = {0, 0, 0, 5, 61, 12, 30, 0, 0, 0, 0};
    made.packets = std::move(packets);
    return made;
}

Bytes message(const Level3Product &made) {
    return samples::level3_message(made);
}

/// Puts a 16-bit word into the bytes.
void put(Bytes &bytes, std::size_t at, unsigned word) {
    bytes.at(at) = static_cast<std::byte>(word >> 8);
    bytes.at(at + 1) = static_cast<std::byte>(word & 0xFF);
}

Bytes text_and(std::string_view text, const Bytes &bytes) {
    return ByteWriter().text(text).append(bytes).take();
}

NidsInfo read(Bytes bytes) {
    NIDS_set_bytes(std::move(bytes));
    NidsInfo info;
    EXPECT_EQ(NIDS_get_header(info), 1);
    return info;
}

int status(Bytes bytes) {
    NIDS_set_bytes(std::move(bytes));
    NidsInfo info;
    return NIDS_get_header(info);
}

/// The runs of the current radial or row as "length:level".
std::string runs() {
    std::string text;
    NidsRun run;
    while (NIDS_get_data(run) == 1)
        text += std::to_string(static_cast<int>(run.length)) + ":" + std::to_string(run.level) + " ";
    return text;
}

std::string first_radial() {
    float start = 0, delta = 0;
    EXPECT_EQ(NIDS_get_radial(start, delta), 1);
    return runs();
}

Bytes radials(std::vector<std::vector<std::uint8_t>> levels) {
    return samples::radial_packet({10, 1, std::move(levels)});
}

Bytes digital(std::vector<std::vector<std::uint8_t>> levels) {
    return samples::digital_radial_packet({10, 1, std::move(levels)});
}

/// Every element of a product, as a plotter would take them; counts what it got.
int walk() {
    int count = 0, code = 0;
    NidsInfo info;
    if (NIDS_get_header(info) == 0) return count;
    const auto elements = [&count](int packet) {
        float start = 0, delta = 0;
        NidsRun run;
        NidsVector vector{};
        NidsWind wind{};
        NidsText text;
        while (NIDS_get_radial(start, delta) == 1 || NIDS_get_rastor() == 1)
            while (NIDS_get_data(run) == 1) ++count;
        while (NIDS_get_vector(vector) == 1 || NIDS_get_wind(wind) == 1 || NIDS_get_text(text) == 1) ++count;
        return packet;
    };
    for (int more = info.packet != 0 ? 1 : 0; more == 1; more = NIDS_packet(code)) elements(code);
    if (NIDS_graphic() == 1)
        while (NIDS_graphic_layer() > 0)
            while (NIDS_packet(code) == 1) elements(code);
    return count;
}

} // namespace

TEST(NidsFraming, AllFramingsAndCompressionsGiveTheSameProduct) {
    const Level3Product made = product(19, {radials({{0, 0, 5, 5, 5, 7}, {1, 1, 1, 1, 1, 1}})});
    for (const Framing framing : {Framing::none, Framing::wmo, Framing::noaaport})
        for (const Compression compression : {Compression::none, Compression::bzip2, Compression::zlib}) {
            // A deflated message is only known behind a text header.
            if (framing == Framing::none && compression == Compression::zlib) continue;
            SCOPED_TRACE(testing::Message()
                         << static_cast<int>(framing) << "/" << static_cast<int>(compression));
            const NidsInfo info = read(samples::level3_file(made, framing, compression));
            EXPECT_EQ(info.packet, kPacketRadial);
            EXPECT_EQ(info.date.hour, 12);
            EXPECT_EQ(first_radial(), "2:0 3:5 1:7 0:0 ");
            EXPECT_EQ(first_radial(), "6:1 0:0 ");
            int code = 0;
            EXPECT_EQ(NIDS_packet(code), -1); // a trailer is no part of the product
        }
}

TEST(NidsFraming, HeadingsAreToldByTheirFirstTwoBytes) {
    const Bytes plain = message(product(19, {radials({{4, 4}})}));
    for (const std::string_view heading :
         {"** SDUS53 KLSX\r\r\nN0RLSX\r\r\n", "\n** SDUS53\nN0RLSX\n", "DSUS53 KLSX\nN0RLSX\n",
          "\x40\x0Cxxxx SDUS53\r\r\nN0RLSX\r\r\n"}) {
        read(text_and(heading, plain));
        EXPECT_EQ(first_radial(), "2:4 0:0 ") << heading;
    }
    // Everything may be compressed behind the heading lines.
    read(text_and("SDUS53 KLSX\nN0RLSX\n", samples::bzip2_compressed(plain)));
    EXPECT_EQ(first_radial(), "2:4 0:0 ");
}

TEST(NidsFraming, RefusesWhatIsNoProduct) {
    const Bytes plain = message(product(19, {radials({{4, 4}})}));
    EXPECT_EQ(status({}), 0);
    EXPECT_EQ(status(text_and("NOUS63 KLSX 041404\r\r\nFTMLSX\r\r\nMESSAGE DATE: JAN 04 2022\r\r\n", {})), 0);
    EXPECT_EQ(status(text_and("SDUS53 KLSX\nN0RLSX\nR3", plain)), 0); // encrypted
    EXPECT_EQ(status(message(product(2, {}))), 0);                    // status message
    Bytes no_divider = plain;
    put(no_divider, 18, 0);
    EXPECT_EQ(status(no_divider), 0);
    NIDS_close_stream();
    NidsInfo info;
    EXPECT_EQ(NIDS_get_header(info), 0);
}

TEST(NidsFraming, SelectsOneOfSeveralProducts) {
    const auto one = [](int level) {
        const auto byte = static_cast<std::uint8_t>(level);
        return text_and("** SDUS97 KWBC 021200\r\r\nidentifier\r\r\nsecond line\r\r\n ",
                        message(product(19, {radials({{byte}})})));
    };
    Bytes all;
    for (const int level : {1, 2, 3}) {
        const Bytes next = one(level);
        all.insert(all.end(), next.begin(), next.end());
        all.push_back(std::byte{'\n'});
    }
    NIDS_set_ext_info("#1");
    read(all);
    EXPECT_EQ(first_radial().substr(0, 4), "1:2 ");
    NIDS_set_ext_info(":2");
    read(all);
    EXPECT_EQ(first_radial().substr(0, 4), "1:3 ");
    NIDS_set_ext_info("#3");
    EXPECT_EQ(status(all), 0);
    NIDS_set_ext_info("");
}

TEST(NidsStream, ReadsAreACursor) {
    NIDS_set_bytes(ByteWriter().u16(0x8001).text("line\n").i32(-2).u8(7).take());
    std::int16_t word = 0;
    std::int32_t number = 0;
    std::array<std::byte, 2> two{};
    EXPECT_EQ(NIDS_read({}), 1);
    EXPECT_EQ(NIDS_read_short(word), 1);
    EXPECT_EQ(word, -32767);
    EXPECT_EQ(NIDS_skip_line(), 1);
    EXPECT_EQ(NIDS_read_long(number), 1);
    EXPECT_EQ(number, -2);
    EXPECT_EQ(NIDS_read(two), -1);
    EXPECT_EQ(NIDS_read_short(word), -1);
    EXPECT_EQ(NIDS_skip_line(), -1);
}

TEST(NidsStream, DamagedAndEndlessCompressionEndsInTime) {
    const Level3Product made = product(94, {digital(std::vector(200, std::vector<std::uint8_t>(400, 9)))});
    Bytes file = samples::level3_file(made, Framing::wmo, Compression::bzip2);
    file[file.size() - 6] ^= std::byte{0x55};
    NIDS_set_bytes(file);
    walk();
    std::int16_t word = 0;
    EXPECT_EQ(NIDS_read_short(word), 0);
    // Eighty million zeros in some eighty thousand bytes
    Bytes bomb = message(made);
    bomb.resize(kSymbologyAt);
    const Bytes million = samples::zlib_compressed(Bytes(1'000'000));
    for (int i = 0; i < 80; ++i) bomb.insert(bomb.end(), million.begin(), million.end());
    testing::internal::CaptureStderr();
    EXPECT_EQ(status(bomb), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "NIDS_read: Product larger than 67108864 bytes\n");
    // More streams than a product has, each of one byte
    Bytes pieces = message(made);
    pieces.resize(kSymbologyAt);
    const Bytes piece = samples::bzip2_compressed(Bytes(1));
    for (int i = 0; i < 20'001; ++i) pieces.insert(pieces.end(), piece.begin(), piece.end());
    testing::internal::CaptureStderr();
    EXPECT_EQ(status(pieces), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "NIDS_read: Product of more than 20000 compressed pieces, the rest is not read\n");
}

TEST(NidsNumbers, ThresholdWordsFloatsAndDates) {
    const std::vector<std::pair<unsigned, float>> words{
        {0x8000, -100.0F},   {0x8001, -90.0F},     {0x8002, -90.0F}, {0x8003, -90.0F},
        {0x2000 | 50, 2.5F}, {0x1100 | 25, -2.5F}, {75, 75.0F},      {0x0800 | 50, 50.01F},
        {0x0400 | 5, 4.99F}, {0x0500 | 5, -4.99F}};
    for (const auto &[word, value] : words) EXPECT_FLOAT_EQ(NIDS_threshold_value(word), value) << word;
    EXPECT_FLOAT_EQ(NIDS_float16(0x59AB), 64 * (1 + 427 / 1024.0F)); // exponent 22
    EXPECT_FLOAT_EQ(NIDS_float16(0x8001), -2 / 1024.0F);
    EXPECT_FLOAT_EQ(NIDS_float16(0x4000), 1);
    EXPECT_FLOAT_EQ(NIDS_float32(0x3FC0, 0), 1.5F);
    int a = 0, b = 0, c = 0;
    const std::vector<std::array<int, 4>> days{
        {1, 1970, 1, 1}, {365, 1970, 12, 31}, {366, 1971, 1, 1}, {790, 1972, 2, 29}, {18973, 2021, 12, 11}};
    for (const auto &[number, year, month, day] : days) {
        EXPECT_EQ(NIDS_julian_date(number, a, b, c), 0);
        EXPECT_EQ((std::array{a, b, c}), (std::array{year, month, day})) << number;
    }
    NIDS_dec_time(43200 + 61, a, b, c);
    EXPECT_EQ((std::array{a, b, c}), (std::array{12, 1, 1}));
}

TEST(NidsInfoRecord, DomainsAndUnknownCodes) {
    NidsInfo info = read(message(product(19, {radials({std::vector<std::uint8_t>(230, 1)})})));
    EXPECT_EQ(info.columns, 460);
    EXPECT_EQ(info.domain.nx, 691);
    EXPECT_EQ(info.domain.ny, 461);
    EXPECT_EQ(info.domain.proj, kProjPolar);
    const double factor = 1.866 / (1 + std::sin(38.699 * kDegree));
    EXPECT_NEAR(info.domain.dx, factor * 0.54 * 1.852 / 100, 1e-6);
    EXPECT_FLOAT_EQ(info.domain.plon, -90.683F);

    info = read(message(product(48, {samples::wind_packet({{1, 2, 3, 4, 5}})})));
    EXPECT_EQ(info.domain.proj, kProjPixel);
    EXPECT_FLOAT_EQ(info.domain.dx, 511);
    EXPECT_EQ(info.label, "Md=pr Mx=61");

    info = read(message(product(81, {samples::precipitation_packet({{1, 2}, {3, 4}})})));
    EXPECT_FLOAT_EQ(info.domain.plat, 90);
    EXPECT_FLOAT_EQ(info.domain.plon, -105);
    EXPECT_FLOAT_EQ(info.domain.clat, 38.699F);
    EXPECT_FLOAT_EQ(info.domain.dx, 0.047596F);
    EXPECT_EQ(info.domain.nx, 2);

    // 150 metres exactly, although the label says 0.1
    info = read(message(product(180, {digital({{1, 2}})})));
    EXPECT_NEAR(info.domain.dx, factor * 0.150 / 100, 1e-7);
    EXPECT_EQ(info.label, "Md=pr Rng=48(0.1) El=0.5 Mx=61");

    // An unknown code is read, with the range of the product before.
    NIDS_set_bytes(message(product(300, {})));
    ASSERT_EQ(NIDS_get_header(info), 1);
    EXPECT_EQ(info.name, "Not supported - 300");
    EXPECT_EQ(info.packet, 0);
    EXPECT_EQ(info.resolution, 0);
    EXPECT_EQ(info.range, 48);
}

TEST(NidsInfoRecord, Mosaics) {
    Level3Product made = product(103, {samples::raster_packet({{1, 1}, {2, 2}, {3, 3}})});
    made.source = 10000;
    made.p[10] = 7;
    NidsInfo info = read(message(made));
    EXPECT_EQ(info.name, "Composite reflectivity (Dbz)");
    EXPECT_EQ(info.label, "Md=pr Res=4.0 Mx=61");
    EXPECT_EQ(info.domain.proj, kProjLambert);
    EXPECT_EQ(info.domain.nx, 7);
    EXPECT_EQ(info.domain.ny, 3);
    EXPECT_FLOAT_EQ(info.domain.dx, 0.04F);
    EXPECT_FLOAT_EQ(info.domain.p4, 45);
    // A code without a size of its own keeps that of the product before.
    made.code = 144;
    NIDS_set_bytes(message(made));
    ASSERT_EQ(NIDS_get_header(info), 1);
    EXPECT_EQ(info.name, "Base reflectivity (Dbz)");
    EXPECT_FLOAT_EQ(info.resolution, 4);
}

TEST(NidsPackets, RunsOfRadialsAndRows) {
    Level3Product made =
        product(37, {samples::raster_packet({std::vector<std::uint8_t>(20, 10), {1, 2, 3}})});
    made.thresholds[10] = 45;
    Bytes bytes = message(made);
    put(bytes, kSymbologyAt + 16 + 22, 1); // first row: an odd count of 1 stands for 2
    read(bytes);
    ASSERT_EQ(NIDS_get_rastor(), 1);
    NidsRun run;
    ASSERT_EQ(NIDS_get_data(run), 1);
    EXPECT_EQ(run.length, 15);
    EXPECT_EQ(run.value, 45);
    EXPECT_EQ(runs(), "5:10 ");
    ASSERT_EQ(NIDS_get_rastor(), 1);
    EXPECT_EQ(runs(), "1:1 1:2 1:3 0:0 ");
    EXPECT_EQ(NIDS_get_rastor(), 0);

    // Packing 1: pairs of run and a value of hundreds and threshold
    put(bytes, kSymbologyAt + 16 + 20, 1);
    put(bytes, kSymbologyAt + 16 + 22, 2);
    put(bytes, kSymbologyAt + 16 + 24, 0xC83A);
    read(bytes);
    ASSERT_EQ(NIDS_get_rastor(), 1);
    ASSERT_EQ(NIDS_get_data(run), 1);
    EXPECT_EQ(run.length, 200);
    EXPECT_EQ(run.value, 345);
    EXPECT_EQ(NIDS_get_data(run), 0);

    // A radial of 20 halfwords has 40 runs; radials not read are passed over by the next packet.
    std::vector<std::uint8_t> changing(40);
    for (std::size_t i = 0; i < changing.size(); ++i) changing[i] = static_cast<std::uint8_t>(i % 2 + 1);
    read(message(
        product(19, {radials({changing, changing, changing}), samples::text_packet(1, 2, 3, "NEXT")})));
    float start = 0, delta = 0;
    ASSERT_EQ(NIDS_get_radial(start, delta), 1);
    EXPECT_FLOAT_EQ(start, 10);
    EXPECT_FLOAT_EQ(delta, 1);
    EXPECT_EQ(NIDS_get_data_bytes().size(), 40U);
    EXPECT_EQ(NIDS_get_data(run), 0);
    int code = 0;
    ASSERT_EQ(NIDS_packet(code), 1);
    EXPECT_EQ(code, kPacketTextValue);

    // The padding of an odd number of digital bins is no bin.
    read(message(product(94, {digital({{7, 8, 9}})})));
    EXPECT_EQ(first_radial(), "1:7 1:8 1:9 ");
    EXPECT_EQ(NIDS_get_radial(start, delta), 0);
}

TEST(NidsPackets, LevelValuesFollowTheProduct) {
    struct Case {
        int code;
        std::array<unsigned, 5> words;
        int level;
        double value;
    };
    const std::vector<Case> cases{
        {94, {0xFEC0, 5, 254, 0, 0}, 2, -31},
        {94, {0xFEC0, 5, 254, 0, 0}, 1, -9999},
        {153, {0xFEC0, 5, 254, 0, 0}, 255, 95.5},
        {99, {0xFD85, 5, 254, 0, 0}, 129, 1.944 * 1.0},
        {154, {0xFD85, 5, 254, 0, 0}, 129, 1.944 * 1.0},
        {182, {0xFD85, 5, 254, 0, 0}, 129, 1.0},
        {186, {0, 0, 0, 0, 0}, 10, -27},
        {138, {10, 2, 256, 0, 0}, 50, 1.1},
        {134, {0x59AB, 0x4400, 20, 0x54DC, 0x593E}, 19, (19 - 2.0) / 90.6875}, // linear: scale 90.7, offset 2
        {134, {0x59AB, 0x4400, 20, 0x54DC, 0x593E}, 100, std::exp((100 - 83.875) / 38.875)},
        {135, {0x7F, 1, 2, 0x80, 0}, 0x85, 3},
        {161, {0x4396, 0, 0xC272, 0, 0}, 240, (240 + 60.5) / 300},
        {165, {0, 0, 0, 0, 0}, 60, 60}, // a scale of 0 is 1
        {172, {0x3F80, 0, 0, 0, 0}, 150, 1.5},
        {172, {0x3F80, 0, 0, 0, 0}, 0, -99.99},
        {176, {0x447A, 0, 0, 0, 0}, 250, 0.25},
        {159, {0x7FC0, 0, 0, 0, 0}, 60, -9999}, // not a number
        {135, {0x7F, 0, 2, 0, 0}, 60, -9999},   // divides by 0
    };
    for (const Case &test : cases) {
        SCOPED_TRACE(testing::Message() << test.code << " level " << test.level);
        std::vector<std::uint8_t> all(256);
        for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
        Level3Product made = product(test.code, {digital({all})});
        std::copy(test.words.begin(), test.words.end(), made.thresholds.begin());
        const NidsInfo info = read(message(made));
        std::array<float, 256> values{};
        NIDS_level_values(info.packet, values);
        EXPECT_NEAR(values.at(static_cast<std::size_t>(test.level)), test.value,
                    1e-4 * (1 + std::abs(test.value)));
        float start = 0, delta = 0;
        NidsRun run;
        ASSERT_EQ(NIDS_get_radial(start, delta), 1);
        for (const float value : values) {
            ASSERT_EQ(NIDS_get_data(run), 1);
            EXPECT_EQ(run.value, value);
        }
    }
    // Hundredths are the numbers that level lists write, or a value on a level's edge falls below it.
    Level3Product steps = product(138, {digital({std::vector<std::uint8_t>(8, 9)})});
    steps.thresholds = {0, 1, 256};
    read(message(steps));
    std::array<float, 256> inches{};
    NIDS_level_values(kPacketDigitalRadial, inches);
    for (std::size_t level = 2; level < inches.size(); ++level)
        EXPECT_EQ(inches[level], std::stof(std::to_string(level) + "e-2"));
    Level3Product made = product(81, {samples::precipitation_packet({{20, 255, 255}})});
    made.thresholds = {0xFFC4, 125, 256};
    read(message(made));
    ASSERT_EQ(NIDS_get_rastor(), 1);
    NidsRun run;
    ASSERT_EQ(NIDS_get_data(run), 1);
    EXPECT_FLOAT_EQ(run.value, -0.06F + 20 * 0.125F);
    ASSERT_EQ(NIDS_get_data(run), 1);
    EXPECT_EQ(run.length, 2);
    EXPECT_EQ(run.value, kMissingF);
}

TEST(NidsPackets, TextsVectorsAndBarbs) {
    const std::string longer = std::string(99, 'a') + std::string(21, 'b');
    Level3Product made =
        product(48, {samples::text_packet(2, -3, 4, longer), samples::vector_packet(6, {{1, 2, 3, -4}}),
                     samples::wind_packet({{2, 10, 20, 270, 35}, {16, 1, 1, 1, 1}}),
                     samples::text_packet(-1, 0, 0, "LAST")});
    made.thresholds[2] = 8;
    EXPECT_EQ(read(message(made)).packet, kPacketTextValue);
    NidsText text;
    ASSERT_EQ(NIDS_get_text(text), 1);
    EXPECT_EQ(text.text, std::string(99, 'a'));
    EXPECT_EQ(text.value, 8);
    EXPECT_EQ(text.i, -3);
    int code = 0;
    ASSERT_EQ(NIDS_packet(code), 1);
    NidsVector vector{};
    ASSERT_EQ(NIDS_get_vector(vector), 1);
    EXPECT_EQ(vector.value, 6);
    EXPECT_EQ(vector.j2, -4);
    EXPECT_EQ(NIDS_get_vector(vector), 0);
    ASSERT_EQ(NIDS_packet(code), 1);
    NidsWind wind{};
    ASSERT_EQ(NIDS_get_wind(wind), 1);
    EXPECT_EQ(wind.value, 8);
    EXPECT_EQ(wind.speed, 35);
    ASSERT_EQ(NIDS_get_wind(wind), 1);
    EXPECT_EQ(wind.value, kMissingF); // there is no seventeenth threshold
    EXPECT_EQ(NIDS_get_wind(wind), 0);
    ASSERT_EQ(NIDS_packet(code), 1);
    ASSERT_EQ(NIDS_get_text(text), 1);
    EXPECT_EQ(text.text, "LAST");
    EXPECT_EQ(text.value, kMissingF);
    EXPECT_EQ(NIDS_packet(code), -1);
}

namespace {

/// Two pages behind a packet that the reader does not know.
Level3Product with_pages() {
    Level3Product made = product(58, {ByteWriter().u16(2).u16(6).i16(1).i16(2).text("! ").take()});
    made.pages = {{samples::text_packet(1, 0, 1, "STORM ID"), samples::vector_packet(5, {{4, 0, 487, 0}})},
                  {samples::text_packet(1, 0, 1, "PAGE TWO")}};
    return made;
}

std::string first_text_of_page() {
    int code = 0;
    NidsText text;
    if (NIDS_packet(code) != 1 || NIDS_get_text(text) != 1) return "none";
    return text.text;
}

} // namespace

TEST(NidsPages, AreFoundAtTheirOffset) {
    for (const Compression compression : {Compression::none, Compression::bzip2}) {
        const NidsInfo info = read(samples::level3_file(with_pages(), Framing::noaaport, compression));
        EXPECT_EQ(info.packet, 0);
        ASSERT_EQ(NIDS_graphic(), 1);
        ASSERT_EQ(NIDS_graphic_layer(), 1);
        EXPECT_EQ(first_text_of_page(), "STORM ID");
        // The second page follows although the first was not read to its end.
        ASSERT_EQ(NIDS_graphic_layer(), 2);
        EXPECT_EQ(first_text_of_page(), "PAGE TWO");
        int code = 0;
        EXPECT_EQ(NIDS_packet(code), 0);
        EXPECT_EQ(NIDS_graphic_layer(), 0);
    }
    // Pages alone, without an image
    Level3Product made = with_pages();
    made.packets.clear();
    EXPECT_EQ(read(message(made)).packet, 0);
    EXPECT_EQ(NIDS_graphic(), 1);
    EXPECT_EQ(NIDS_graphic_layer(), 1);
}

TEST(NidsPages, AreAbsentWhereTheOffsetLeadsNowhere) {
    const Bytes good = message(with_pages());
    for (const unsigned offset : {0U, 1U, 59U, 61U, 5000U}) {
        Bytes bytes = good;
        put(bytes, kGraphicOffsetAt + 2, offset);
        read(bytes);
        EXPECT_EQ(NIDS_graphic(), 0) << offset;
        EXPECT_EQ(NIDS_graphic_layer(), 0) << offset;
    }
    Bytes bytes = good;
    put(bytes, kGraphicOffsetAt, 0xFFFF);
    read(bytes);
    EXPECT_EQ(NIDS_graphic(), 0);
    // Directly behind the divider that ended the packets the block needs no offset.
    Level3Product made = with_pages();
    made.packets = {samples::text_packet(1, 0, 0, "XX")};
    bytes = message(made);
    put(bytes, kGraphicOffsetAt + 2, 5000);
    read(bytes);
    int code = 0;
    EXPECT_EQ(NIDS_packet(code), 0);
    ASSERT_EQ(NIDS_graphic(), 1);
    EXPECT_EQ(NIDS_graphic_layer(), 1);
}

TEST(NidsDamage, CutAtEveryByteAndFilledWithAnything) {
    Level3Product made = with_pages();
    made.code = 37;
    made.packets = {samples::raster_packet({{1, 2, 3}, {4, 5, 6}}), radials({{1, 2}, {3, 4}}),
                    samples::wind_packet({{1, 2, 3, 4, 5}}),        digital({{1, 2, 3}}),
                    samples::precipitation_packet({{1, 2}}),        samples::text_packet(1, 2, 3, "TEXT")};
    const Bytes whole = message(made);
    NIDS_set_bytes(whole);
    const int all = walk();
    int before = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        NIDS_set_bytes(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        const int count = walk();
        EXPECT_GE(count, before) << size; // what is there is read
        before = count;
    }
    EXPECT_EQ(before, all);
    for (std::size_t at = 0; at + 2 <= whole.size(); ++at)
        for (const unsigned word : {0U, 1U, 0x7FFFU, 0xFFFFU}) {
            Bytes bytes = whole;
            put(bytes, at, word);
            NIDS_set_bytes(bytes);
            EXPECT_LT(walk(), 100000) << at;
        }
}

TEST(NidsPrint, InformationAndBeamPosition) {
    Level3Product made = product(19, {radials({{1}})});
    for (unsigned i = 0; i < 16; ++i) made.thresholds[i] = i;
    const NidsInfo info = read(message(made));
    testing::internal::CaptureStdout();
    NIDS_print_info(info);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.find("Product type: Base reflectivity (Dbz)\nProduct date: 1200Z  2 JUL 03\n"
                           "Product location: 38.70 -90.68\nProduct domain: "),
              0U);
    EXPECT_NE(printed.find(
                  "\nThreshold values: 0.0 1.0 2.0 3.0|4.0 5.0 6.0 7.0\n                  8.0 9.0 10.0 11.0|"
                  "12.0 13.0 14.0 15.0\n                  \n"),
              std::string::npos);

    // One degree of latitude north of the radar: 60.04 nautical miles; half a degree of elevation.
    MAP_domain(&info.domain);
    float x = 0, y = 0;
    ASSERT_EQ(MAP_tran(x, y, 39.199F, -90.683F), 1);
    testing::internal::CaptureStdout();
    NIDS_print_loc_elev("v-Other", x, y, 38.699F, -90.683F, 0.5F);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    testing::internal::CaptureStdout();
    NIDS_print_loc_elev("v-Alt", x, y, 38.699F, -90.683F, 0.5F);
    const std::string line = testing::internal::GetCapturedStdout();
    float lat = 0, lon = 0, distance = 0, altitude = 0;
    ASSERT_EQ(
        std::sscanf(line.c_str(), "Lat: %f Lon: %f Dist: %fnm Alt: %fft", &lat, &lon, &distance, &altitude),
        4)
        << line;
    EXPECT_FLOAT_EQ(lat, 39.20F);
    EXPECT_FLOAT_EQ(lon, -90.68F);
    EXPECT_NEAR(distance, 30.0F, 0.3F);
    // Rise of the beam and fall of the earth over 55.6 km
    EXPECT_NEAR(altitude, (55.6 * std::sin(0.5 * kDegree) + 55.6 * 55.6 / (2 * 6371.3)) * 3280.84, 20);
}
