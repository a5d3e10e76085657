/// National mosaics: packets and headers of both formats, and what becomes of damaged files.

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lib/report/message.h"
#include "radar/kavrad/decoder.h"
#include "radar/nowrad/decoder.h"
#include "samples/mosaic.h"

namespace {

class Written {
public:
    explicit Written(const samples::Bytes &bytes) : stream_(std::tmpfile(), Stream::Kind::file) {
        if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), stream_.get());
        std::rewind(stream_.get());
    }
    Stream &stream() { return stream_; }

private:
    Stream stream_;
};

samples::Bytes nowrad_bytes(int lines, int columns, const std::string &description, const std::string &map,
                            std::initializer_list<unsigned> rest) {
    samples::ByteWriter out;
    out.text({"\0\xF0\x09\3abc?", 8})
        .text({"\0\xF0\x0A", 3})
        .text(std::to_string(lines) + "\n" + std::to_string(columns));
    std::string text = description;
    text.resize(80, ' ');
    out.text({"\0\xF0\x03", 3}).text(text).text({"\0\xF0\x0B", 3}).text(map);
    for (const unsigned byte : rest) out.u8(byte);
    return out.take();
}

const std::string kMap = "C-1.6755161 0.9250245 0 0.001 0.002";

/// "run x level" of each packet of the first line; "a" for one that sets the attribute.
std::string packets_of(std::initializer_list<unsigned> bytes) {
    Written file(nowrad_bytes(2, 1000, "", kMap, bytes));
    MosaicInfo info;
    int line = 0;
    if (NOWRad_header(file.stream(), info) != 1 || NOWRad_line(file.stream(), line) != 1) return "no line";
    std::string text = std::to_string(line) + ":";
    for (NowradPacket packet; NOWRad_get_packet(file.stream(), packet) == 1;) {
        EXPECT_EQ(packet.value, 5.0F * packet.level);
        text += packet.run == 0 ? " a" + std::to_string(packet.attribute)
                                : " " + std::to_string(packet.run) + "x" + std::to_string(packet.level);
    }
    return text + (NOWRad_line(file.stream(), line) == 1 ? " then " + std::to_string(line) : " end");
}

TEST(Nowrad, PacketsOfALine) {
    EXPECT_EQ(packets_of({0, 0xF0, 0x0C, 7, 1, 0x35, 0xE2, 9, 0xD7, 0x2B, 1, 0, 0xF0, 0x0C, 8, 1}),
              "263: 4x5 10x2 300x7 then 264");
    EXPECT_EQ(packets_of({0, 0xF0, 0x0C, 1, 0, 0, 0x12, 0xF3, 0x21, 0, 0xF0, 2}), "1: 1x0 2x2 a3 3x1 end");
    // A byte that would make a marker with the zero before it is followed by a zero.
    EXPECT_EQ(packets_of({0, 0xF0, 0x0C, 1, 0, 0, 0xF0, 0, 0x13, 0, 0xF0, 0x0C, 2, 0}), "1: 1x0 2x3 then 2");
    EXPECT_EQ(packets_of({0, 0xF0, 0x0C, 1, 0, 0xD5, 5, 0, 0xF0, 0, 0x13, 0, 0xF0, 0x0C, 2, 0}),
              "1: 6x5 a0 2x3 then 2");
    EXPECT_EQ(packets_of({0, 0xF0, 0x0C, 1, 0, 0x35, 0xD7, 0x2B}), "1: 4x5 end");
}

TEST(Nowrad, HeaderNamesProductTimeAndGrid) {
    Written master(nowrad_bytes(11, 21, "NOWrad Master       18:45 03-Jul-99", kMap, {0, 0xF0, 0x0C}));
    MosaicInfo info;
    ASSERT_EQ(NOWRad_header(master.stream(), info), 1);
    EXPECT_EQ(info.title, "NOWRad Radar Master Composite (Dbz)");
    EXPECT_EQ(info.date, (DateRecord{99, 7, 3, kMissing, kMissing, 18, 45, kMissing}));
    EXPECT_EQ(info.domain.proj, kProjLatLon);
    EXPECT_EQ(info.domain.ny, 11);
    EXPECT_EQ(info.domain.nx, 21);
    EXPECT_NEAR(info.domain.clon, -96, 1e-4);
    EXPECT_NEAR(info.domain.dy, 0.0572958, 1e-6);
    EXPECT_NEAR(info.domain.dx, 0.1145916, 1e-6);
    EXPECT_NEAR(info.domain.clat + 5 * info.domain.dy, 53, 1e-3);
    ASSERT_EQ(NOWRad_rewind(master.stream()), 1);

    Written country(nowrad_bytes(480, 700, "USRAD High             00:05 31-Dec-2003",
                                 "L 0.785398 0.575959 0.680678 -1.675516 1 2 3 4", {0, 0xF0, 0x0C}));
    ASSERT_EQ(NOWRad_header(country.stream(), info), 1);
    EXPECT_EQ(info.title, "NOWRad Radar US Composite (Dbz)");
    EXPECT_EQ(info.date, (DateRecord{2003, 12, 31, kMissing, kMissing, 0, 5, kMissing}));
    EXPECT_EQ(info.domain.proj, kProjLambert);
    EXPECT_NEAR(info.domain.p4, 45, 1e-3);
    EXPECT_NEAR(info.domain.p3, 33, 1e-3);
    EXPECT_NEAR(info.domain.plat, 39, 1e-3);
    EXPECT_NEAR(info.domain.plon, -96, 1e-3);
    EXPECT_FLOAT_EQ(info.domain.dx, 0.0722F);
    EXPECT_FLOAT_EQ(info.domain.dy, 0.0859F);
}

TEST(Nowrad, HeadersThatMakeNoSense) {
    MosaicInfo info;
    const auto reads = [&info](const samples::Bytes &bytes) {
        Written file(bytes);
        return NOWRad_header(file.stream(), info) == 1;
    };
    const auto header = [](int lines, int columns, const std::string &map) {
        return nowrad_bytes(lines, columns, "", map, {0, 0xF0, 0x0C});
    };
    EXPECT_TRUE(reads(header(10, 10, kMap)));
    EXPECT_TRUE(info.title.empty());
    for (const auto &[lines, columns] : {std::pair{0, 10}, {10, 0}, {-3, 10}, {10, 2000000000}, {99999, 10}})
        EXPECT_FALSE(reads(header(lines, columns, kMap))) << lines << " " << columns;
    for (const char *map :
         {"X-1.6 0.9 0 0.001 0.002", "C-1.6 0.9 0 0.001", "C-1.6 0.9 0 0 0.002", "C-1.6 0.9 0 -1 1",
          "C-1.6 9 0 0.001 0.002", "C-1.6 0.9 0 1 9", "L 0.7 -0.7 0.6 -1.6 1 2 3 4",
          "L 0.7 0.5 0.6 -1.6 1 2 3", "L 2 0.5 0.6 -1.6 1 2 3 4"})
        EXPECT_FALSE(reads(header(10, 10, map))) << map;
    // Cut anywhere, it is no header; nothing is left of it but a domain that can be drawn.
    const samples::Bytes whole =
        nowrad_bytes(10, 10, "NOWrad Master       18:45 03-Jul-99", kMap, {0, 0xF0, 0x0C});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(reads(samples::Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
        EXPECT_EQ(info.domain.proj, kProjLatLon);
    }
}

/// "line: column+cells=value ..." of each line that has runs, and how it ended.
std::string lines_of(const MosaicFormat &format, Stream &stream) {
    MosaicInfo info;
    if (!format.read_header(stream, info)) return "no header";
    std::string text;
    MosaicLine line;
    while (format.next_line(stream, line)) {
        text += std::to_string(line.number) + ":";
        for (const MosaicRun &run : line.runs)
            text += " " + std::to_string(run.column) + "+" + std::to_string(run.cells) + "=" +
                    std::to_string(static_cast<int>(format.values()[run.level]));
        text += "; ";
    }
    switch (format.end()) {
    case MosaicEnd::complete: return text + "complete";
    case MosaicEnd::cut: return text + "cut";
    case MosaicEnd::damaged: return text + "damaged";
    case MosaicEnd::beyond_grid: return text + "beyond";
    }
    return text;
}

TEST(Nowrad, LinesEndWithTheGrid) {
    const auto lines = [](std::initializer_list<unsigned> bytes) {
        Written file(nowrad_bytes(2, 6, "", kMap, bytes));
        return lines_of(kNowradFormat, file.stream());
    };
    EXPECT_EQ(lines({0, 0xF0, 12, 1, 0, 0x31, 0x12, 0, 0xF0, 12, 2, 0, 0x53, 0, 0xF0, 2}),
              "0: 0+4=5 4+2=10; 1: 0+6=15; complete");
    EXPECT_EQ(lines({0, 0xF0, 12, 1, 0, 0x31, 0xD2, 255, 255, 0x12, 0, 0xF0, 12, 2, 0, 0x53}),
              "0: 0+4=5 4+2=10; 1: 0+6=15; beyond");
    EXPECT_EQ(lines({0, 0xF0, 12, 1, 0, 0x31, 0, 0xF0, 12, 2, 0, 0x53, 0, 0xF0, 12, 3, 0, 0x51}),
              "0: 0+4=5; 1: 0+6=15; beyond");
    EXPECT_EQ(lines({0, 0xF0, 12, 1, 0, 0x31, 0xE2}), "0: 0+4=5; cut");
    EXPECT_EQ(lines({0, 0xF0, 12, 1, 0, 0x31, 0, 0xF0, 2}), "0: 0+4=5; cut");
}

samples::Bytes kavrad_bytes(bool composite, bool half, std::initializer_list<unsigned> data) {
    std::string header(2048, '\0');
    header[2010] = composite ? 'C' : 'R';
    header.replace(2012, 12, "2205 9 4 703");
    header[2034] = half ? '\n' : '\0';
    samples::ByteWriter out;
    out.text(header);
    for (const unsigned byte : data) out.u8(byte);
    return out.take();
}

TEST(Kavrad, HeaderTellsGridAndTime) {
    for (const bool half : {false, true}) {
        Written file(kavrad_bytes(true, half, {}));
        KavradInfo info;
        ASSERT_EQ(KAVRAD_header(file.stream(), info), 1);
        EXPECT_EQ(info.title, "KAV Radar Master Grid");
        EXPECT_EQ(info.type, KavradType::composite);
        EXPECT_EQ(info.date, (DateRecord{2003, 7, 4, kMissing, kMissing, 22, 5, 9}));
        EXPECT_EQ(info.domain.nx, half ? 2560 : 5120);
        EXPECT_EQ(info.domain.ny, half ? 2880 : 5760);
        EXPECT_FLOAT_EQ(info.domain.dx, half ? 0.0257812F : 0.0128906F);
        EXPECT_FLOAT_EQ(info.domain.dy, half ? 0.0171874F : 0.0085937F);
    }
    Written cut(samples::Bytes(2047));
    KavradInfo info;
    EXPECT_EQ(KAVRAD_header(cut.stream(), info), 0);
}

std::string kavrad_packets(bool composite, std::initializer_list<unsigned> data) {
    Written file(kavrad_bytes(composite, true, data));
    KavradInfo info;
    EXPECT_EQ(KAVRAD_header(file.stream(), info), 1);
    std::string text;
    for (KavradPacket packet; KAVRAD_get_packet(file.stream(), packet) == 1;)
        text += std::to_string(packet.run) + "x" + std::to_string(static_cast<int>(packet.value)) + " ";
    return text;
}

TEST(Kavrad, PacketsKeepTheirValue) {
    EXPECT_EQ(kavrad_packets(true, {0x83, 0x24, 0x64, 5, 0x23, 0x22, 0x2A, 7, 0x21, 0x83}),
              "2x40 100x40 5x40 -1x40 -1x40 0x40 7x40 ");
    EXPECT_EQ(kavrad_packets(true, {3, 0x40, 0x41, 0x44, 0x46, 0x47}), "3x-100 1x-100 1x20 1x45 1x55 1x55 ");
    EXPECT_EQ(kavrad_packets(false, {0x50, 0x40, 0x4F, 0x51, 0x60, 0x61, 0x70, 0x71, 0x30, 4, 0x24}),
              "1x-100 1x0 1x75 1x105 1x100 1x205 1x200 1x200 0x200 4x200 ");
}

TEST(Kavrad, LinesBreakAtTheLastColumn) {
    const auto lines = [](std::initializer_list<unsigned> data) {
        Written file(kavrad_bytes(true, true, data));
        return lines_of(kKavradFormat, file.stream());
    };
    // A run to the end at the beginning of a line has no cells; a line is full with its last column but one.
    EXPECT_EQ(lines({0x41, 0x23, 0x23, 0x42, 0x23, 0x21}),
              "0: 0+1=20 1+2559=20; 1: 0+1=30 1+2559=30; complete");
    EXPECT_EQ(lines({0x43, 0x22, 0x22, 0x23}), "0: 0+1=40 1+1=40 2+1=40 3+2557=40; cut");
    std::string full = "0:";
    samples::ByteWriter out;
    out.append(kavrad_bytes(true, true, {0x41}));
    for (int i = 0; i < 10; ++i) out.u8(0x24).u8(255);
    out.u8(8).u8(0x42).u8(0x21); // 1 + 2550 + 8: all columns but the last
    Written file(out.take());
    const std::string text = lines_of(kKavradFormat, file.stream());
    EXPECT_NE(text.find(" 2551+8=20; 1: 0+1=30; complete"), std::string::npos) << text;
}

TEST(Kavrad, WhatIsBeyondTheGridIsLeftOut) {
    samples::ByteWriter out;
    out.append(kavrad_bytes(true, true, {}));
    for (int line = 0; line < 2881; ++line) {
        out.u8(0x41);
        for (int i = 0; i < 11; ++i) out.u8(0x24).u8(255);
    }
    Written file(out.u8(0x21).take());
    MosaicInfo info;
    ASSERT_TRUE(kKavradFormat.read_header(file.stream(), info));
    MosaicLine line;
    int lines = 0;
    for (; kKavradFormat.next_line(file.stream(), line); ++lines) {
        ASSERT_EQ(line.number, lines);
        ASSERT_LE(line.runs.back().column + line.runs.back().cells, 2560);
    }
    EXPECT_EQ(lines, 2880);
    EXPECT_EQ(kKavradFormat.end(), MosaicEnd::beyond_grid);
}

} // namespace
