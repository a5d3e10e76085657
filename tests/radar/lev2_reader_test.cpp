// The Level II reader on volumes written for the purpose, whole and broken.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "gzipped.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "lib/system/stream.h"
#include "radar/lev2/reader.h"
#include "samples/level2.h"
#include "samples/level3.h"

namespace {

using samples::Bytes;
using samples::Level2Form;

std::string text_of(const Bytes &bytes) {
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

Bytes joined(std::initializer_list<Bytes> parts) {
    samples::ByteWriter out;
    for (const Bytes &part : parts) out.append(part);
    return out.take();
}

samples::Level2Moment moment(const char *name, std::vector<unsigned> levels) {
    samples::Level2Moment m;
    m.name = name;
    m.levels = std::move(levels);
    return m;
}

/// Three cuts of four radials: reflectivity; velocity and width; all of them.
samples::Level2Volume small_volume() {
    samples::Level2Volume volume;
    volume.time = 1057356000; // 2003-07-04 22:00 UTC
    volume.lat = 12.5F;
    volume.lon = -34.25F;
    for (int cut = 1; cut <= 3; ++cut) {
        for (int i = 0; i < 4; ++i) {
            samples::Level2Radial radial;
            radial.number = i + 1;
            radial.azimuth = 90.0 * i + 45;
            radial.elevation = cut < 3 ? 0.5 : 1.5;
            radial.elevation_number = cut;
            if (cut != 2) radial.moments.push_back(moment("REF", {0, 1, 2, 66, 255}));
            if (cut != 1) {
                radial.moments.push_back(moment("VEL", {129, 131, 0}));
                radial.moments.push_back(moment("SW ", {129, 133, 1}));
                radial.moments[radial.moments.size() - 2].offset = 129;
                radial.moments.back().offset = 129;
            }
            volume.radials.push_back(std::move(radial));
        }
    }
    return volume;
}

struct Walked {
    int messages = 0, radials = 0;
    std::vector<float> values; ///< of all moments of all radials
    std::vector<Lev2Radial> all;
};

class Lev2Reader : public testing::Test {
protected:
    void SetUp() override {
        RES_put("file_path", VYX_SOURCE_DIR "/data/");
        RES_put("identifier", "");
        MESS_set(0, kError | kWarn);
    }
    void TearDown() override { LEV2_close_file(); }

    /// Opens the bytes as a file; what is said on the way is kept in `said`.
    int open(const Bytes &bytes, const char *command = nullptr) {
        const std::string name = files_.write("volume", text_of(bytes));
        const std::string input = command != nullptr ? command + name : name;
        FILE_allow_command(input);
        EXPECT_EQ(LEV2_open_file(input), 1);
        return LEV2_get_header(info_);
    }
    static Walked walk() {
        Walked walked;
        Lev2Radial radial;
        for (; LEV2_get_block(radial) == 1; LEV2_next_block()) {
            ++walked.messages;
            if (radial.type != kLev2Legacy && radial.type != kLev2Generic) continue;
            ++walked.radials;
            walked.all.push_back(radial);
            for (int type = 0; type < static_cast<int>(kLev2Types); ++type) {
                if (LEV2_set_data_type(type) != 1) continue;
                for (float value = LEV2_get_data(); !is_missing(value); value = LEV2_get_data())
                    walked.values.push_back(value);
            }
        }
        return walked;
    }
    Walked walk(const Bytes &bytes) {
        EXPECT_EQ(open(bytes), 0);
        return walk();
    }

    ScratchDir files_;
    Lev2Info info_;
};

std::vector<float> small_values(float step) {
    const std::vector<float> ref{-100, -90, -32, 0, 94.5F};
    const std::vector<float> doppler{0, 2 / step, -100, 0, 2, -90};
    std::vector<float> all;
    for (const int cut : {1, 2, 3})
        for (int i = 0; i < 4; ++i) {
            if (cut != 2) all.insert(all.end(), ref.begin(), ref.end());
            if (cut != 1) all.insert(all.end(), doppler.begin(), doppler.end());
        }
    return all;
}

TEST_F(Lev2Reader, BothKindsOfRadialGiveTheSameValues) {
    const samples::Level2Volume volume = small_volume();
    for (const Level2Form form : {Level2Form::legacy, Level2Form::generic, Level2Form::records}) {
        const Walked walked = walk(samples::level2_file(volume, form));
        EXPECT_EQ(walked.messages, 4 + 12);
        ASSERT_EQ(walked.radials, 12);
        EXPECT_EQ(walked.values, small_values(2));
        const Lev2Radial &last = walked.all.back();
        EXPECT_EQ(last.elevation_number, 3);
        EXPECT_NEAR(last.elevation, 1.5F, 0.03F);
        EXPECT_NEAR(last.azimuth, 315.0F, 0.03F);
        EXPECT_EQ(last.azimuth_number, 4);
        EXPECT_FLOAT_EQ(last.nyquist, 26.0F);
        EXPECT_FLOAT_EQ(last.attenuation, -0.012F);
        EXPECT_FLOAT_EQ(last.first_refl_km, 2.125F);
        EXPECT_FLOAT_EQ(last.vel_size_km, 0.25F);
        EXPECT_EQ(last.refl_gates, 5);
        EXPECT_EQ(last.vel_gates, 3);
        EXPECT_EQ(last.pattern, 212);
        EXPECT_EQ(is_missing(last.lat), form == Level2Form::legacy);
    }
}

TEST_F(Lev2Reader, VelocitiesInWholeMetresASecond) {
    samples::Level2Volume volume = small_volume();
    for (samples::Level2Radial &radial : volume.radials)
        for (samples::Level2Moment &m : radial.moments)
            if (m.name == "VEL") m.scale = 1;
    EXPECT_EQ(walk(samples::level2_file(volume, Level2Form::legacy)).values, small_values(1));
}

TEST_F(Lev2Reader, BlocksAreFoundByTheirNames) {
    samples::Level2Volume volume = small_volume();
    volume.radials.resize(1);
    auto &moments = volume.radials[0].moments;
    moments = {moment("PHI", {0, 1, 2, 722}), moment("ZDR", {2, 1058}), moment("XYZ", {7}),
               moment("SW ", {10, 139}), moment("REF", {68})};
    moments[0].word_bits = moments[1].word_bits = 16;
    moments[0].offset = moments[1].offset = 2;
    moments[1].scale = 32;
    moments[3].scale = 10;
    moments[3].offset = 39;
    moments[3].first_m = 500;
    open(samples::level2_file(volume, Level2Form::generic));
    Lev2Radial radial;
    while (LEV2_get_block(radial) == 1 && radial.type != kLev2Generic) LEV2_next_block();
    EXPECT_EQ(radial.block_count, 8);
    EXPECT_EQ(radial.vel_ptr, 0);
    EXPECT_EQ(LEV2_set_data_type(kLev2Velocity), 0);
    ASSERT_EQ(LEV2_set_data_type(kLev2Zdr), 1);
    EXPECT_EQ(LEV2_get_data(), 0.0F);
    EXPECT_EQ(LEV2_get_data(), 33.0F);
    EXPECT_EQ(LEV2_get_data(), kMissingF);
    EXPECT_EQ(LEV2_get_gates(kLev2Phi).level(3), 722U);
    ASSERT_EQ(LEV2_set_data_type(kLev2Width), 1);
    EXPECT_FLOAT_EQ(LEV2_get_data(), -2.9F);
    EXPECT_FLOAT_EQ(LEV2_get_data(), 10.0F);
    EXPECT_FLOAT_EQ(LEV2_first_gate_km(kLev2Width), 2.125F) << "that of the reflectivity";
    EXPECT_EQ(LEV2_set_data_type(99), 1);
    EXPECT_EQ(LEV2_get_data(), kMissingF);
}

TEST_F(Lev2Reader, RecordsPackedInEveryWay) {
    const samples::Level2Volume volume = small_volume();
    const Bytes plain = samples::level2_file(volume, Level2Form::generic);
    const Bytes header = samples::level2_header(volume);
    const Bytes messages(plain.begin() + 24, plain.end());
    const auto part = [&](std::size_t from, std::size_t to) {
        return Bytes(messages.begin() + static_cast<std::ptrdiff_t>(from),
                     messages.begin() + static_cast<std::ptrdiff_t>(to));
    };
    const std::size_t cut = 4 * 2432 + 100; // within a radial
    const Bytes records =
        joined({header, samples::level2_record(part(0, cut)), samples::level2_record({}, true),
                samples::level2_record(part(cut, messages.size()), true)});
    samples::ByteWriter trailed;
    trailed.append(records).text("\r\r\n\003");
    for (const Bytes &file : {plain, records, trailed.bytes(), gzipped(plain), gzipped(records)}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(walk(file).values, small_values(2));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        // Again, from the first message.
        ASSERT_EQ(LEV2_rewind_file(), 1);
        EXPECT_EQ(walk().messages, 16);
    }
}

TEST_F(Lev2Reader, AFileOfTheOtherKindIsReadAndTold) {
    MESS_set(0, kMess);
    const samples::Level2Volume volume = small_volume();
    for (const int records : {0, 1}) {
        LEV2_set_compress(1 - records);
        testing::internal::CaptureStdout();
        EXPECT_EQ(walk(samples::level2_file(volume, records == 1 ? Level2Form::records : Level2Form::generic))
                      .radials,
                  12);
        const std::string said = testing::internal::GetCapturedStdout();
        EXPECT_NE(said.find(records == 1 ? "holds compressed records\n"
                                         : "holds messages that are not compressed\n"),
                  said.npos)
            << said;
    }
    LEV2_set_compress(0);
}

TEST_F(Lev2Reader, WhereTheRadarStands) {
    samples::Level2Volume volume = small_volume();
    open(samples::level2_file(volume, Level2Form::generic));
    EXPECT_EQ(info_.id, "LSX");
    EXPECT_NEAR(info_.lat, 38.6987F, 0.001F) << "the station list comes first";
    EXPECT_EQ(info_.date.year, 2003);
    EXPECT_EQ(info_.date.month, 7);
    EXPECT_EQ(info_.date.day, 4);
    EXPECT_EQ(info_.date.hour, 22);
    volume.time = 1057276800 + 43200;
    for (const char *id : {"QQQQ", "    "}) {
        volume.id = id;
        for (const char *command : {"", "|cat "}) {
            open(samples::level2_file(volume, Level2Form::records), command);
            EXPECT_EQ(info_.lat, 12.5F) << id;
            EXPECT_EQ(info_.lon, -34.25F);
            EXPECT_EQ(info_.date.hour, 12);
            EXPECT_EQ(info_.date.minute, 0);
            EXPECT_EQ(walk().radials, 12) << "none is lost by looking ahead";
        }
    }
    testing::internal::CaptureStderr();
    open(samples::level2_file(volume, Level2Form::legacy));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("is not known, it is drawn at 38.98 -77.48"),
              std::string::npos);
    EXPECT_EQ(info_.lat, kLev2DefaultLat);
    EXPECT_EQ(info_.id, "");
    RES_put("identifier", "KLOT");
    open(samples::level2_file(volume, Level2Form::legacy));
    EXPECT_NEAR(info_.lat, 41.6044F, 0.001F);
    EXPECT_EQ(info_.id, "LOT");
}

TEST_F(Lev2Reader, CutsOfAVolume) {
    open(samples::level2_file(small_volume(), Level2Form::generic));
    const std::vector<Lev2Cut> cuts = LEV2_list_cuts();
    ASSERT_EQ(cuts.size(), 3U);
    EXPECT_EQ(cuts[1].number, 2);
    EXPECT_EQ(cuts[1].radials, 4);
    EXPECT_EQ(cuts[1].moments[kLev2Reflectivity].gates, 0);
    EXPECT_EQ(cuts[1].moments[kLev2Velocity].gates, 3);
    EXPECT_FLOAT_EQ(cuts[2].elevation, 1.5F);
}

TEST_F(Lev2Reader, DamageIsToldAndWhatStandsBeforeItIsRead) {
    const samples::Level2Volume volume = small_volume();
    const Bytes header = samples::level2_header(volume);
    const Bytes radial = samples::generic_message(volume, volume.radials[0]);
    const Bytes record = samples::level2_record(radial);
    Bytes damaged = record;
    damaged[record.size() / 2] ^= std::byte{0x55};
    const Bytes short_record(record.begin(), record.end() - 5); // its one block is whole
    const Bytes cut_radial(radial.begin(), radial.begin() + 100);
    samples::ByteWriter huge;
    huge.i32(-2147483647 - 1).text("BZh9");
    samples::ByteWriter pieces; // one more than a record has
    for (int i = 0; i < 101; ++i) pieces.append(samples::bzip2_compressed(Bytes(1)));
    samples::ByteWriter many;
    many.i32(static_cast<int>(pieces.bytes().size())).append(pieces.bytes());
    const struct {
        Bytes file;
        int radials;
        const char *said;
    } cases[]{
        {joined({header, record, many.bytes()}), 1,
         "LEV2_get_block: Record 2 has more than 100 compressed pieces\n"},
        {joined({header, record, damaged, record}), 1, "LEV2_get_block: Record 2 is damaged\n"},
        {joined({header, record, short_record}), 2, "LEV2_get_block: The file ends within record 2: "},
        {joined({header, record, huge.bytes()}), 1,
         "LEV2_get_block: Record 2 of 2147483648 bytes is too large\n"},
        {joined({header, huge.bytes()}), 0, "LEV2_get_block: Record 1 of 2147483648 bytes is too large\n"},
        {joined({header, radial, cut_radial}), 2, "LEV2_get_block: The file ends within a message: 100 of "},
        {joined({header, radial, Bytes(8, std::byte{1})}), 1,
         "LEV2_get_block: The file ends within a message: 8 of 28 bytes\n"},
    };
    for (const auto &c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(walk(c.file).radials, c.radials);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.said), std::string::npos) << c.said;
    }
    EXPECT_EQ(LEV2_open_file(files_.at("none")), 0);
    EXPECT_EQ(open(Bytes(header.begin(), header.end() - 1)), -1);
    // What networks append, and padding, is no message.
    testing::internal::CaptureStderr();
    for (const Bytes &end : {samples::ByteWriter().u32(0x0D0D0A03).take(), Bytes(20)})
        EXPECT_EQ(walk(joined({header, radial, end})).radials, 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Lev2Reader, WithoutAnArchivesNameTheFirstMessageTells) {
    const samples::Level2Volume volume = small_volume();
    Bytes file = samples::level2_file(volume, Level2Form::generic);
    std::fill(file.begin(), file.begin() + 12, std::byte{' '});
    EXPECT_EQ(walk(file).radials, 12);
    constexpr std::size_t kTypeAt = 24 + 12 + 3, kDateAt = 24 + 12 + 6, kSegmentAt = 24 + 12 + 14;
    for (const auto &[at, value] : {std::pair{kTypeAt, 77}, {kDateAt, 0}, {kSegmentAt, 9}}) {
        Bytes nonsense = file;
        nonsense[at] = nonsense[at + 1] = static_cast<std::byte>(value);
        EXPECT_EQ(open(nonsense), -1) << at;
    }
    samples::ByteWriter text;
    for (int i = 0; i < 40; ++i) text.text("A text of many lines is no volume of radar data.\n");
    for (const Bytes &bytes : {text.bytes(), gzipped(text.bytes())}) EXPECT_EQ(open(bytes), -1);
}

TEST_F(Lev2Reader, EveryPrefixEndsWithWhatIsThere) {
    MESS_set(0, 0);
    samples::Level2Volume volume = small_volume();
    volume.radials.resize(6);
    const Bytes generic = samples::level2_file(volume, Level2Form::generic);
    for (const Bytes &whole : {generic, samples::level2_file(volume, Level2Form::legacy),
                               samples::level2_file(volume, Level2Form::records), gzipped(generic)}) {
        const Walked all = walk(whole);
        const std::size_t step = std::max<std::size_t>(1, whole.size() / 400);
        for (std::size_t size = 0; size < whole.size(); size += step) {
            const Bytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            if (open(prefix) != 0) continue;
            const Walked walked = walk();
            ASSERT_LE(walked.values.size(), all.values.size());
            EXPECT_TRUE(std::equal(walked.values.begin(), walked.values.end(), all.values.begin())) << size;
        }
    }
}

TEST_F(Lev2Reader, HostileNumbersAreHarmless) {
    samples::Level2Volume volume = small_volume();
    volume.radials.resize(1);
    const Bytes message = samples::generic_message(volume, volume.radials[0]);
    constexpr std::size_t kBody = 28;
    for (std::size_t at = 12; at + 4 <= message.size(); ++at) {
        for (const unsigned value : {0x00U, 0x7FU, 0x80U, 0xFFU}) {
            Bytes broken = message;
            const std::size_t width = at < kBody ? 1 : 4;
            for (std::size_t i = 0; i < width; ++i) broken[at + i] = static_cast<std::byte>(value);
            const Walked walked = walk(joined({samples::level2_header(volume), broken, message}));
            for (const Lev2Radial &radial : walked.all) EXPECT_TRUE(std::abs(radial.azimuth) < 1000) << at;
        }
    }
}

} // namespace
