// Converted radar summaries: what is read of texts and netCDF files, whole or damaged.

#include "radar/summary/reader.h"

#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "lib/report/message.h"
#include "lib/scratch_dir.h"
#include "radar/summary/fields.h"
#include "samples/summary.h"

namespace {

class Summary : public testing::Test {
protected:
    Summary() { MESS_set(0, 0); }
    int open(const std::string &content) {
        files_.write("file", content);
        kind_ = 0;
        return file_ = RAD_open(files_.at("file"), kind_);
    }
    int open(const samples::Bytes &bytes) {
        return open(std::string(reinterpret_cast<const char *>(bytes.data()), bytes.size()));
    }
    std::vector<MdrReport> reports() {
        std::vector<MdrReport> all;
        MdrReport report;
        for (int next = -1; MDR_read(file_, report, false, next) == 0; next = -1) all.push_back(report);
        return all;
    }
    std::vector<RcmRecord> records() {
        std::vector<RcmRecord> all;
        RcmRecord record;
        while (RCM_read(file_, record) == 1) all.push_back(record);
        return all;
    }
    /// Whether a fault that is told has these words.
    bool tells(const std::string &words) {
        for (const std::string &fault : RAD_faults(file_))
            if (fault.find(words) != std::string::npos) return true;
        return false;
    }

    ScratchDir files_;
    int file_ = -1, kind_ = 0;
    RadarInfo info_;
};

TEST_F(Summary, FirstByteTellsTheKind) {
    const std::pair<const char *, int> cases[]{
        {"*\n", 1},  {" 1\n", 2}, {"0", 2},    {"1\n", 2}, {"2", 2},   {"3", -1},     {"", -1},
        {"WX\n", 3}, {"V", -1},   {"C\n", -1}, {"A", -1},  {"\n", -1}, {"VYXRAD", 3}, {"CDF", -1}};
    for (const auto &[content, kind] : cases) {
        files_.write("kind", content);
        EXPECT_EQ(RAD_chktype(files_.at("kind")), kind) << content;
    }
    EXPECT_EQ(RAD_chktype(files_.at("missing")), -1);
    EXPECT_EQ(RAD_close(1), -1);
    EXPECT_EQ(RAD_rewind(1), -1);
}

TEST_F(Summary, DigitizedGridStartsBehindItsFirstRowAndEndsWithTheSecondPlus) {
    ASSERT_EQ(open(" 18Z  4 JUL 03\r\nnoise\nSDUS00\nmore\n+ 2 5\n12x\n\n9\n+\n777\nSDUS44\n+88 119\n3\n"),
              1);
    EXPECT_EQ(RAD_getinfo(file_, info_), 0);
    EXPECT_EQ(info_.label, " 18Z  4 JUL 03");
    EXPECT_EQ(info_.date.hour, 18);
    EXPECT_EQ(info_.date.minute, 35);
    EXPECT_EQ(info_.kind, SummaryKind::digitized);
    EXPECT_EQ(info_.grid.at(5, 3), 1);
    EXPECT_EQ(info_.grid.at(6, 3), 2);
    EXPECT_EQ(info_.grid.at(7, 3), 0);
    EXPECT_EQ(info_.grid.at(5, 4), 0);
    EXPECT_EQ(info_.grid.at(5, 5), 9);
    EXPECT_EQ(info_.grid.at(5, 6), 0);
    EXPECT_EQ(info_.grid.at(119, 89), 3);
    EXPECT_TRUE(tells("no line ends it"));
    // Beyond the grid nothing is set, and that is told; without a grid the record keeps what it had.
    ASSERT_EQ(open("1830Z  4 JUL 03\nSDUS\n+358 478\n1234\n1\n1\n+\n"), 1);
    EXPECT_EQ(RAD_getinfo(file_, info_), 0);
    EXPECT_EQ(info_.date.minute, 30);
    EXPECT_EQ(info_.grid.at(479, 359), 2);
    EXPECT_TRUE(tells("outside the grid"));
    ASSERT_EQ(open("0\nSDUS\n+a b\n1\n*\n"), 1);
    EXPECT_EQ(RAD_getinfo(file_, info_), -1);
    EXPECT_EQ(info_.grid.at(479, 359), 2);
    EXPECT_TRUE(tells("without first row"));
}

TEST_F(Summary, CodedGridRunsOnOverLinesInThreeShapesOfLevels) {
    std::string row(470, '0');
    ASSERT_EQ(open("2\nRCM\n+7\n16789:\n;<=@AB\n+400\n" + row + "\n123456789123\n5\n+-3\n2\n** X 1\n+1\n6\n"),
              1);
    EXPECT_EQ(RAD_getinfo(file_, info_), -1); // that is for digitized ones alone
    EXPECT_EQ(info_.kind, SummaryKind::coded_message);
    const int levels[]{1, 6, 1, 2, 3, 4, 5, 6, 1, 4, 5, 6};
    for (int column = 0; column < 12; ++column) EXPECT_EQ(info_.grid.at(column, 7), levels[column]) << column;
    EXPECT_EQ(info_.grid.at(470, 359), 1);
    EXPECT_EQ(info_.grid.at(478, 359), 3); // "9" is 3
    EXPECT_EQ(info_.grid.at(479, 359), 5); // a line that begins beyond the last column
    EXPECT_EQ(info_.grid.at(0, 0), 2);
    EXPECT_EQ(info_.grid.at(0, 1), 0); // behind the records' first line there is no grid
    EXPECT_TRUE(tells("outside the grid"));
}

TEST_F(Summary, RecordsAreReadToTheEndOfTheFile) {
    std::string storms;
    for (int i = 0; i < 50; ++i)
        storms += "S A" + std::to_string(i) + " 38.5 -91 245 38 480 2\nM B 1 2\nT C 3 4\n";
    ASSERT_EQ(open("1835Z  4 JUL 03\nRCM\n+5\n1\n** LSX 308 PCPN NA\nZ 450 38.5 -91.25\n" + storms +
                   "Q what\n*\n** OMA 5 CLAR NE\n\n** SGF PCPN OM\nZ\nS cut 38"),
              1);
    RAD_getinfo(file_, info_);
    const std::vector<RcmRecord> read = records();
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0].id, "LSX");
    EXPECT_EQ(read[0].number, 308);
    EXPECT_EQ(read[0].mode, RcmRecord::Mode::precipitation);
    EXPECT_EQ(read[0].status, RcmRecord::Status::not_available);
    EXPECT_EQ(read[0].top, 450);
    EXPECT_FLOAT_EQ(read[0].top_lon, -91.25F);
    EXPECT_EQ(read[0].storms.size(), 40U);
    EXPECT_EQ(read[0].mesocyclones.size(), 20U);
    EXPECT_EQ(read[0].vortices.size(), 10U);
    EXPECT_EQ(read[0].storms[39].id, "A39");
    EXPECT_EQ(read[0].storms[39].hail, 2);
    EXPECT_EQ(read[1].id, "OMA");
    EXPECT_EQ(read[1].mode, RcmRecord::Mode::clear_air);
    EXPECT_EQ(read[1].status, RcmRecord::Status::no_echoes); // not that of its own letters
    EXPECT_EQ(read[2].id, "SGF");                            // no "*" follows
    EXPECT_EQ(read[2].status, RcmRecord::Status::maintenance);
    EXPECT_TRUE(read[2].storms.empty());
    EXPECT_TRUE(tells("first 40 entries"));
    EXPECT_TRUE(tells("cannot be read: \"S cut 38\""));
    EXPECT_EQ(RAD_rewind(file_), 0);
    MdrReport none;
    int index = -1;
    EXPECT_EQ(MDR_read(file_, none, false, index), -1);
    // Kind 1 holds grids alone.
    ASSERT_EQ(open("*\nRCM\n+5\n1\n** LSX 308 PCPN\n"), 1);
    RAD_getinfo(file_, info_);
    EXPECT_TRUE(is_missing(info_.date.year));
    EXPECT_EQ(info_.grid.at(0, 5), 1);
    EXPECT_TRUE(records().empty());
}

constexpr const char *kTable = "2235Z  4 JUL 03\nSDUS\n+0 0\n1\n+\nSDXX STATION\n"
                               "LSX LINE TRW++ NC 480,258052 L2538 C2640 *\n"
                               "SGF NE * * * * * *\n"
                               "\n"
                               "EAX AREA S- + -99,090030 A27 * A0905 \n"
                               "ILX CELL LX NEW * C3501\n"
                               "PAH";

TEST_F(Summary, ReportsOfATextAreReadInOrderOrByIndex) {
    ASSERT_EQ(open(kTable), 1);
    EXPECT_EQ(RAD_getinfo(file_, info_), 0);
    const std::vector<MdrReport> read = reports();
    ASSERT_EQ(read.size(), 5U);
    const MdrReport &first = read[0];
    EXPECT_EQ(first.id, "LSX");
    EXPECT_EQ(first.configuration, "LINE");
    EXPECT_EQ(first.coverage.front().types, "TRW");
    EXPECT_EQ(first.coverage.front().intensity, 4);
    EXPECT_EQ(first.trend, "NC");
    EXPECT_EQ(first.top, 480);
    EXPECT_EQ(first.top_way.azimuth, 258);
    EXPECT_EQ(first.top_way.range_nm, 52);
    EXPECT_EQ(first.movements[0].type, 'L');
    EXPECT_EQ(first.movements[1].direction, 260);
    EXPECT_EQ(first.movements[1].speed_kt, 40);
    EXPECT_EQ(first.movements[2].type, ' ');
    EXPECT_TRUE(is_missing(first.grid_x));
    EXPECT_EQ(read[1].configuration, "NE");
    EXPECT_TRUE(is_missing(read[1].top) && is_missing(read[1].movements[0].direction));
    EXPECT_TRUE(is_missing(read[2].top));
    EXPECT_EQ(read[2].movements[0].type, 'A'); // its speed is cut
    EXPECT_TRUE(is_missing(read[2].movements[0].speed_kt));
    EXPECT_EQ(read[2].movements[2].speed_kt, 5);
    EXPECT_EQ(read[3].coverage.front().intensity, 5);
    EXPECT_EQ(read[3].movements[0].direction, 350);
    EXPECT_EQ(read[4].id, "PAH");
    MdrReport report;
    for (const int wanted : {3, 1, 2, 0, 4}) {
        int index = wanted;
        ASSERT_EQ(MDR_read(file_, report, wanted == 2, index), 0) << wanted;
        EXPECT_EQ(report.id, read[static_cast<std::size_t>(wanted)].id);
        EXPECT_EQ(report.configuration.empty(), wanted == 2 || wanted == 4);
    }
    int beyond = 5;
    EXPECT_EQ(MDR_read(file_, report, false, beyond), -1);
    EXPECT_EQ(RAD_rewind(file_), 0);
    EXPECT_EQ(reports().size(), 5U);
}

/// "TRW++|NC|" of a report's fields.
std::string fields(const MdrReport &report, std::initializer_list<const char *> names) {
    std::string text;
    for (const char *name : names) {
        StationData data;
        text += MDR_get_data(report, name, data) == 0 ? "-" : data.text;
        if (!is_missing(data.value)) text += std::to_string(std::lround(data.value));
        if (!is_missing(data.value2)) text += "/" + std::to_string(std::lround(data.value2));
        text += '|';
    }
    return text;
}

TEST_F(Summary, VariablesTakeTheirPartOfAReport) {
    ASSERT_EQ(open(kTable), 1);
    RAD_getinfo(file_, info_);
    const std::vector<MdrReport> read = reports();
    const auto all = {"id",  "stat", "conf", "prec-1", "type", "int", "trend", "top",   "amv",
                      "lmv", "cmv",  "mvmt", "dir",    "spd",  "reg", "cover", "nosuch"};
    EXPECT_EQ(fields(read[0], all), "LSX|-|LINE|TRW++|TRW|++|NC|480|-|250/38|260/40|250/38|250|38|-|-|-|");
    EXPECT_EQ(fields(read[1], all), "SGF|NE|-|-|-|-|-|-|-|-|-|-|-|-|-|-|-|");
}

TEST_F(Summary, IndependentNetcdfFilesAreRead) {
    const std::string dir = VYX_SOURCE_DIR "/tests/radar/netcdf/";
    const auto made = [&](const char *name) {
        const std::string command = "ncgen -b -o " + files_.at(name) + " " + dir + name + ".cdl 2>/dev/null";
        return std::system(command.c_str()) == 0;
    };
    if (!made("stations") || !made("reports")) GTEST_SKIP() << "there is no ncgen";
    kind_ = 0;
    file_ = RAD_open(files_.at("stations"), kind_);
    ASSERT_EQ(kind_, kRadStations) << RAD_fault();
    ASSERT_EQ(RAD_getinfo(file_, info_), 0);
    EXPECT_EQ(info_.date.minute, 35);
    EXPECT_EQ(info_.kind, SummaryKind::digitized);
    EXPECT_EQ(info_.grid.at(0, 1), 3);
    EXPECT_EQ(info_.grid.at(0, 2), kSummaryMissing);
    std::vector<MdrReport> read = reports();
    ASSERT_EQ(read.size(), 3U);
    const auto all = {"id",  "reg", "stat", "conf", "prec", "trend", "top",
                      "amv", "lmv", "cmv",  "mvmt", "spd",  "cover"};
    EXPECT_EQ(fields(read[0], all), "LSX|C|-|LINE|TRWXX|NEW|480|-|240/38|260/46|240/38|38|-|");
    EXPECT_EQ(fields(read[1], all), "SGF|C|-|AREA|RW-|NC|250|270/20|-|-|270/20|20|-|");
    EXPECT_EQ(fields(read[2], all), "EAX|-|NE|-|-|-|-|-|-|-|-|-|-|");
    EXPECT_FLOAT_EQ(read[0].grid_y, 40.25F);
    EXPECT_TRUE(is_missing(read[2].grid_x));
    EXPECT_EQ(read[0].top_way.range_nm, 52);
    RcmRecord none;
    EXPECT_EQ(RCM_read(file_, none), -1);

    kind_ = 0;
    file_ = RAD_open(files_.at("reports"), kind_);
    ASSERT_EQ(kind_, kRadReports) << RAD_fault();
    ASSERT_EQ(RAD_getinfo(file_, info_), 0);
    EXPECT_EQ(info_.label, "2235Z  4 JUL 03");
    EXPECT_EQ(info_.grid.at(1, 0), 3);
    EXPECT_EQ(info_.grid.at(2, 0), kSummaryMissing); // above 10
    EXPECT_EQ(info_.grid.at(3, 0), 10);
    read = reports();
    ASSERT_EQ(read.size(), 2U);
    // Thunder, rain and showers; hail bit 7; rain and snow of the other coverage.
    EXPECT_EQ(fields(read[0], all), "LSX|-|-|LINE|TRWZXRSU|NEW|480|-|246/38|-|246/38|38|7|");
    EXPECT_EQ(fields(read[1], all), "SGF|-|OM|-|-|-|-|-|-|-|-|-|-|");
    EXPECT_EQ(read[0].ways[0].azimuth, 258);
    EXPECT_EQ(read[0].ways[0].range_nm, 52);
    EXPECT_EQ(read[0].width_nm, 11);
    EXPECT_TRUE(RAD_faults(file_).empty());
    int index = 1;
    MdrReport report;
    EXPECT_EQ(MDR_read(file_, report, false, index), 0);
    EXPECT_EQ(report.id, "SGF");
}

TEST_F(Summary, NetcdfFilesThatLackSomethingAreNoSummaries) {
    const samples::DigitizedSummary summary = samples::digitized(0);
    for (const bool stations : {true, false}) {
        const samples::NetcdfDescription whole =
            stations ? samples::digitized_stations(summary) : samples::digitized_reports(summary);
        ASSERT_EQ(open(samples::netcdf_file(whole)), 1) << RAD_fault();
        const auto refused = [&](const samples::NetcdfDescription &description, const std::string &name) {
            EXPECT_EQ(open(samples::netcdf_file(description)), -1) << name;
            EXPECT_NE(RAD_fault().find(name), std::string::npos) << RAD_fault();
        };
        for (std::size_t i = 0; i < whole.variables.size(); ++i) {
            samples::NetcdfDescription damaged = whole;
            damaged.variables.erase(damaged.variables.begin() + static_cast<std::ptrdiff_t>(i));
            refused(damaged, whole.variables[i].name);
            const bool used = stations || (i != 1 && i != 2 && i != 4 && i != 6 && i != 7 && i != 9);
            if (!used) continue; // is there, but plays no part
            damaged = whole;
            using Type = samples::NetcdfVariable::Type;
            const bool text = damaged.variables[i].type == Type::text;
            damaged.variables[i].type = text ? Type::real : Type::text;
            refused(damaged, whole.variables[i].name);
            damaged = whole;
            damaged.variables[i].dimensions.pop_back();
            refused(damaged, whole.variables[i].name);
        }
        samples::NetcdfDescription small = whole;
        small.variables.clear();
        for (samples::NetcdfDimension &dimension : small.dimensions)
            if (dimension.name == "mdr_y") dimension.length = 89;
        refused(small, "mdr_y");
    }
    // Cut anywhere, or with any byte changed, a file is refused or read; nothing breaks.
    const samples::Bytes bytes = samples::netcdf_file(samples::digitized_reports(summary));
    for (std::size_t size : {4UL, 5UL, 8UL, 40UL, 100UL, 1000UL, 3000UL, 5000UL, 14000UL}) {
        if (open(samples::Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size))) != 1)
            continue;
        RAD_getinfo(file_, info_);
        reports();
    }
    for (std::size_t at = 4; at < 3000; at += 7) {
        samples::Bytes damaged = bytes;
        damaged[at] ^= std::byte{0x41};
        if (open(damaged) != 1) continue;
        RAD_getinfo(file_, info_);
        reports();
    }
}

} // namespace
