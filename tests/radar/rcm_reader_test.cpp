/// Coded messages: items of their three parts, real bulletins, and damaged ones.

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <random>

#include <gtest/gtest.h>
#include <zlib.h>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"
#include "radar/rcm/coded_text.h"
#include "radar/rcm/reader.h"
#include "real_files.h"
#include "samples/rcm.h"
#include "tsv.h"

namespace {

RcmReport read_text(const std::string &items, std::string *told = nullptr) {
    RcmReport report;
    RcmFaults faults;
    EXPECT_TRUE(RCM_read_text("/NEXRAA 0308 1112210245 UNEDITED " + items, report, faults)) << items;
    std::string all;
    for (const std::string &fault : faults) all += fault + "; ";
    if (told != nullptr)
        *told = all;
    else
        EXPECT_EQ(all, "") << items;
    return report;
}

/// "column,row=level ..." of the coded cells, by rows.
std::string cells_of(const RcmReport &report) {
    std::string text;
    for (std::size_t row = 0; row < kRcmGridSize; ++row)
        for (std::size_t column = 0; column < kRcmGridSize; ++column)
            if (const int level = report.cells[column][row]; level != kRcmNoReport)
                text += format_text("%zu,%zu=%d ", column, row, level);
    return text;
}

TEST(RcmText, GroupsOfCells) {
    const auto cells = [](int count, const std::string &groups, std::string *told = nullptr) {
        return cells_of(
            read_text(format_text("/MDPCPN /SC     /NI%04d: ", count) + groups + "  /ENDAA", told));
    };
    EXPECT_EQ(cells(3, "MNA123"), "52,48=1 53,48=2 54,48=3 ");
    EXPECT_EQ(cells(4, "MNA5C"), "52,48=5 53,48=5 54,48=5 55,48=5 ");
    EXPECT_EQ(cells(1, "AAP7"), "3,3=7 ");
    EXPECT_EQ(cells(1, "AAE20A"), "1,0=2 2,0=0 3,0=0 ");
    // A line may end within a group, and blanks may stand behind a comma.
    EXPECT_EQ(cells(5, "AAA87 \n B,  A BA1"), "0,0=8 1,0=7 2,0=7 3,0=7 4,0=1 ");
    std::string told;
    EXPECT_EQ(cells(2, "AZM12345,ZAA3", &told), "103,0=1 0,100=3 ");
    EXPECT_EQ(told, "Cells beyond the grid are left out; ");
    EXPECT_EQ(cells(5, "AAA12", &told), "0,0=1 1,0=2 ");
    EXPECT_EQ(told, "It counts 5 cells and has 2; ");
    EXPECT_EQ(cells(1, "AAB1,AAQ1", &told), "0,1=1 ");
    EXPECT_NE(told.find("A group of cells has no place; "), told.npos);
}

TEST(RcmText, HeadingModeAndStatus) {
    RcmReport report = read_text("RADNE /MDCLAR /MT470: KOL /ENDAA");
    EXPECT_EQ(report.number, 308);
    EXPECT_EQ(report.date, (DateRecord{2021, 12, 11, kMissing, kMissing, 2, 45, kMissing}));
    EXPECT_EQ(report.status, RcmStatus::no_echoes);
    EXPECT_EQ(report.mode, RcmMode::clear_air);
    EXPECT_EQ(report.max_top, 470);
    EXPECT_EQ(report.top_column, 58);
    EXPECT_EQ(report.top_row, 43);
    EXPECT_TRUE(report.whole);
    EXPECT_EQ(read_text("RADOM /ENDAA").status, RcmStatus::maintenance);
    EXPECT_EQ(read_text("/ENDAA").status, RcmStatus::normal);
    RcmFaults faults;
    for (const auto &[year, whole] : {std::pair{"98", 1998}, {"05", 2005}, {"49", 2049}, {"50", 1950}}) {
        ASSERT_TRUE(RCM_read_text(format_text(" /NEXRAA 7 0312%s2359 /ENDAA", year), report, faults));
        EXPECT_EQ(report.date.year, whole);
    }
    EXPECT_TRUE(faults.empty());
    ASSERT_TRUE(RCM_read_text("/NEXRAA 7 4513052575 /ENDAA", report = RcmReport(), faults));
    EXPECT_EQ(faults, RcmFaults{"It has no time"});
    EXPECT_EQ(report.date.year, kMissing);
    EXPECT_FALSE(RCM_read_text("/NEXRBB 0308 1112210245", report, faults));
}

TEST(RcmText, StormsOfPartsAAndC) {
    const RcmReport report = read_text(
        "/NCEN02: CM9KOH 243051,CT5RKJ 254058, /ENDAA /NEXRBB 0308 1112210245 020B227038,030G224042 /ENDBB "
        "/NEXRCC 0308 1112210245 /NTVS01: TVS01LOE /NMES02: M08KOH,M07RKM "
        "/NCEN03: CM9KOH S361HP,CX1RKJ S042HU,CT5RKJ S232HH");
    ASSERT_EQ(report.storms.size(), 3U);
    const RcmStorm &first = report.storms[0], &second = report.storms[1], &added = report.storms[2];
    EXPECT_EQ(first.id, "M9");
    EXPECT_EQ(first.column, 57);
    EXPECT_EQ(first.row, 43);
    EXPECT_EQ(first.direction, 243);
    EXPECT_EQ(first.speed, 51);
    EXPECT_EQ(first.severe, 361);
    EXPECT_EQ(first.hail, RcmHail::probable);
    EXPECT_EQ(second.hail, RcmHail::positive);
    EXPECT_EQ(added.id, "X1");
    EXPECT_EQ(added.severe, 42);
    EXPECT_EQ(added.hail, RcmHail::unknown);
    EXPECT_EQ(added.direction, kMissing);
    ASSERT_EQ(report.entries.size(), 2U);
    EXPECT_EQ(report.entries[0].height, 20);
    EXPECT_EQ(report.entries[0].level, 4);
    EXPECT_EQ(report.entries[0].direction, 227);
    EXPECT_EQ(report.entries[0].speed, 38);
    EXPECT_EQ(report.entries[1].level, 15);
    ASSERT_EQ(report.vortices.size(), 1U);
    EXPECT_EQ(report.vortices[0].id, "01");
    EXPECT_EQ(report.vortices[0].row, 44);
    ASSERT_EQ(report.mesocyclones.size(), 2U);
    EXPECT_EQ(report.mesocyclones[1].column, 43);
}

TEST(RcmText, TablesAreNotOverrun) {
    std::string storms, entries, vortices, mesocyclones, groups;
    for (int i = 0; i < 60; ++i) {
        storms += format_text("C%02dKOH 243051,", i);
        entries += "020B227038,";
        vortices += format_text("TVS%02dLOE,", i);
        mesocyclones += format_text("M%02dLOE,", i);
    }
    for (int i = 0; i < 1100; ++i) groups += "AAA1,";
    std::string told;
    const RcmReport report =
        read_text("/NI0001: " + groups + " /NCEN60: " + storms + " /ENDAA /NEXRBB 1 2 " + entries +
                      " /ENDBB /NEXRCC 1 2 /NTVS60: " + vortices + " /NMES60: " + mesocyclones,
                  &told);
    EXPECT_EQ(report.storms.size(), 40U);
    EXPECT_EQ(report.entries.size(), 20U);
    EXPECT_EQ(report.vortices.size(), 10U);
    EXPECT_EQ(report.mesocyclones.size(), 20U);
    for (const char *what :
         {"40 storms", "20 entries of part B", "10 vortices", "20 mesocyclones", "1000 groups of cells"}) {
        const std::string sentence = format_text("More than %s are left out; ", what);
        EXPECT_NE(told.find(sentence), told.npos) << what;
        EXPECT_EQ(told.find(sentence), told.rfind(sentence)) << what;
    }
}

Stream stream_of(const samples::Bytes &bytes) {
    std::FILE *file = std::tmpfile();
    if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::rewind(file);
    return {file, Stream::Kind::file};
}

TEST(RcmReader, EveryFormHoldsTheSameReport) {
    const samples::RcmBulletin bulletin = samples::rcm(0);
    std::string first;
    for (const auto form : {samples::RcmForm::one_line, samples::RcmForm::lines, samples::RcmForm::wrapped,
                            samples::RcmForm::packets}) {
        testing::internal::CaptureStderr();
        Stream stream = stream_of(samples::rcm_bulletin(bulletin, form));
        RcmReport report;
        ASSERT_EQ(RCM_read_site(stream, report), 1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(report.id, "LSX");
        EXPECT_TRUE(report.whole);
        EXPECT_EQ(report.cells, bulletin.cells);
        EXPECT_EQ(report.storms.size(), bulletin.storms.size());
        EXPECT_EQ(report.mesocyclones.size(), 2U);
        EXPECT_EQ(report.date.year, 2003);
        const bool packets = form == samples::RcmForm::packets;
        EXPECT_EQ(is_missing(report.lat), !packets);
        if (packets) {
            EXPECT_NEAR(report.lat, 38.699, 1e-3);
            EXPECT_NEAR(report.lon, -90.683, 1e-3);
            EXPECT_NEAR(report.elevation_m, 721 * 0.3048, 0.1);
        }
        EXPECT_EQ(RCM_read_site(stream, report), -1);
    }
}

TEST(RcmReader, BulletinsFollowEachOther) {
    samples::RcmBulletin bulletin = samples::rcm(0);
    samples::ByteWriter out;
    out.append(samples::rcm_bulletin(bulletin, samples::RcmForm::lines));
    out.text(
        "SDUS43 KDVN 042200\nrcmDVN\n1234 ROBUU 0308 nothing that can be read, though long enough to be a "
        "bulletin of a hundred characters\n");
    bulletin.id = "EAX";
    out.append(samples::rcm_bulletin(bulletin, samples::RcmForm::wrapped));
    Stream stream = stream_of(out.take());
    RcmReport report;
    EXPECT_EQ(RCM_read_site(stream, report), 1);
    EXPECT_EQ(report.id, "LSX");
    testing::internal::CaptureStderr();
    EXPECT_EQ(RCM_read_site(stream, report), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "RCM_read_site: Report of DVN: It has no /NEXRAA item\n");
    EXPECT_EQ(RCM_read_site(stream, report), 1);
    EXPECT_EQ(report.id, "EAX");
    EXPECT_EQ(report.cells, bulletin.cells);
    EXPECT_EQ(RCM_read_site(stream, report), -1);
}

TEST(RcmReader, CutAndDamagedBulletinsEnd) {
    MESS_set(0, 0);
    std::mt19937 random(12);
    for (const auto form : {samples::RcmForm::lines, samples::RcmForm::wrapped, samples::RcmForm::packets}) {
        const samples::Bytes whole = samples::rcm_bulletin(samples::rcm(0), form);
        for (int i = 0; i < 300; ++i) {
            samples::Bytes bytes = whole;
            if (i % 3 == 0) bytes.resize(random() % whole.size());
            for (int k = 0; k < i % 7 && !bytes.empty(); ++k)
                bytes[random() % bytes.size()] = std::byte(random());
            Stream stream = stream_of(bytes);
            RcmReport report;
            int reports = 0;
            while (RCM_read_site(stream, report) >= 0) {
                EXPECT_LE(report.storms.size(), kRcmMostStorms);
                ASSERT_LT(++reports, 100);
            }
        }
    }
    // What is there of a cut report is kept, and known to be cut.
    samples::Bytes half = samples::rcm_bulletin(samples::rcm(0), samples::RcmForm::one_line);
    half.resize(half.size() / 3);
    Stream stream = stream_of(half);
    RcmReport report;
    EXPECT_EQ(RCM_read_site(stream, report), 1);
    EXPECT_FALSE(report.whole);
    EXPECT_NE(cells_of(report), "");
}

std::string mark_text(const RcmFeature &feature) {
    return format_text("%s:%.0f,%.0f", feature.id.c_str(), static_cast<double>(feature.column),
                       static_cast<double>(feature.row));
}
template <typename Items, typename Text> std::string joined(const Items &items, Text text) {
    std::string all;
    for (const auto &item : items) all += (all.empty() ? "" : " ") + text(item);
    return all;
}

TEST(RcmReal, BulletinsDecodeCompletely) {
    SKIP_WITHOUT_REAL_FILES();
    std::map<std::string, std::string> cells; // of each report, as cells_of
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/rcm-grid.tsv"))
        cells[row.at("file") + row.at("report")] +=
            row.at("column") + "," + row.at("row") + "=" + row.at("level") + " ";
    std::string open;
    Stream stream;
    for (const TsvRow &facts : read_tsv(shared_dir() + "/samples/rcm-facts.tsv")) {
        SCOPED_TRACE(facts.at("file") + " " + facts.at("report"));
        const std::string name = shared_dir() + "/samples/rcm/" + facts.at("file");
        if (name != open) stream = FILE_open_input(name);
        open = name;
        testing::internal::CaptureStderr();
        RcmReport r;
        ASSERT_EQ(RCM_read_site(stream, r), 1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(r.whole);
        EXPECT_EQ(r.id, facts.at("id"));
        EXPECT_EQ(std::to_string(r.number), facts.at("number"));
        EXPECT_EQ(format_text("%04d-%02d-%02dT%02d:%02dZ", r.date.year, r.date.month, r.date.day, r.date.hour,
                              r.date.minute),
                  facts.at("date"));
        EXPECT_EQ(r.mode == RcmMode::precipitation ? "PCPN" : "CLAR", facts.at("mode"));
        EXPECT_EQ(r.status, RcmStatus::normal);
        EXPECT_EQ(format_text("%d at column %.0f row %.0f", r.max_top, static_cast<double>(r.top_column),
                              static_cast<double>(r.top_row)),
                  facts.at("max_top"));
        EXPECT_EQ(joined(r.storms,
                         [](const RcmStorm &s) {
                             return mark_text(s) + format_text(":%d/%d", s.direction, s.speed);
                         }),
                  facts.at("centroids_A"));
        EXPECT_EQ(joined(r.storms,
                         [](const RcmStorm &s) {
                             return mark_text(s) +
                                    format_text(":S%d:H%c", s.severe, "UNPH"[static_cast<int>(s.hail) + 1]);
                         }),
                  facts.at("centroids_C"));
        EXPECT_EQ(joined(r.vortices, mark_text), facts.at("vortices_C"));
        EXPECT_EQ(joined(r.mesocyclones, mark_text), facts.at("mesocyclones_C"));
        EXPECT_EQ(joined(r.entries,
                         [](const RcmEntry &e) {
                             const std::array<int, 7> levels{2, 4, 6, 8, 10, 12, 15};
                             const auto letter = std::ranges::find(levels, e.level) - levels.begin();
                             return format_text("%03d%c%03d%03d", e.height, static_cast<char>('A' + letter),
                                                e.direction, e.speed);
                         }),
                  facts.at("entries_B"));
        const std::string key = facts.at("file") + facts.at("report");
        if (cells.contains(key)) {
            EXPECT_EQ(cells_of(r), cells.at(key));
        }
        std::string by_columns;
        for (const auto &column : r.cells) by_columns.append(column.begin(), column.end());
        EXPECT_EQ(format_text("%08lx", crc32(0, reinterpret_cast<const Bytef *>(by_columns.data()),
                                             static_cast<uInt>(by_columns.size()))),
                  facts.at("grid_crc32"));
    }
}

TEST(RcmReal, CodedAgainTheGridsAreTheSameGroups) {
    SKIP_WITHOUT_REAL_FILES();
    for (const char *file : {"KLSX_RCM_202112110245.txt", "RCM_OKX_then_LSX.txt"}) {
        const std::string name = shared_dir() + "/samples/rcm/" + file;
        Stream stream = FILE_open_input(name), again = FILE_open_input(name);
        const std::vector<std::byte> bytes = again.read_all(1 << 20);
        const std::string text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
        std::size_t at = 0;
        for (RcmReport report; RCM_read_site(stream, report) == 1;) {
            const std::size_t begin = text.find(':', text.find("/NI", at)) + 1, end = text.find("/MT", begin);
            at = end;
            std::vector<std::string> groups{""};
            for (const char c : text.substr(begin, end - begin)) {
                if (c == ',')
                    groups.emplace_back();
                else if (c != ' ' && c != '\n')
                    groups.back() += c;
            }
            EXPECT_EQ(samples::rcm_groups(report.cells), groups) << file << " " << report.id;
        }
    }
}

} // namespace
