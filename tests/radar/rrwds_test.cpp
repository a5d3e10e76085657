/// Site files: header and radials, the year that they do not tell, and what is drawn of them.

#include <cmath>
#include <random>

#include "graphics/core/transform.h"
#include "graphics/kernel/helpers.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "plot/colour/levels.h"
#include "plot/drawing_fixture.h"
#include "plot/session/layout.h"
#include "radar/common/intensity_legend.h"
#include "radar/rrwds/plot.h"
#include "samples/rrwds.h"

namespace {

std::vector<std::byte> bytes_of(std::initializer_list<unsigned> values) {
    std::vector<std::byte> bytes;
    for (const unsigned value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

DateRecord date_of(int year, int month, int day, int hour, int minute) {
    DateRecord date;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hour = hour;
    date.minute = minute;
    return date;
}

TEST(Rrwds, HeaderDigits) {
    RrwdsHeader header;
    ASSERT_TRUE(
        RRWDS_decode_header(bytes_of({'L', 'S', 'X', 0x80, 9, 0x54, 0x45, 9, 1, 0x25, 0x31, 0x12}), header));
    EXPECT_EQ(header.station, "LSX");
    EXPECT_EQ(header.range_nm, 100);
    EXPECT_FLOAT_EQ(header.elevation, 12.5F);
    EXPECT_EQ(header.date, date_of(kMissing, 12, 31, 15, 45));
    ASSERT_TRUE(
        RRWDS_decode_header(bytes_of({'O', 'K', '1', 0x7F, 0, 0x88, 0xD9, 0, 0, 0x05, 0x01, 0x01}), header));
    EXPECT_EQ(header.range_nm, 200);
    EXPECT_FLOAT_EQ(header.elevation, -0.5F);
    EXPECT_EQ(header.date, date_of(kMissing, 1, 1, 22, 59));
    // Digits that are none, and times that are none, are not believed.
    ASSERT_TRUE(RRWDS_decode_header(bytes_of({'L', 'S', 'X', 0, 0, 0, 0, 0, 0, 0xA5, 0x01, 0x13}), header));
    EXPECT_EQ(header.elevation, kMissingF);
    EXPECT_EQ(header.date, DateRecord());
    ASSERT_TRUE(RRWDS_decode_header(bytes_of({'L', 'S', 'X', 0, 0, 0xBC, 0, 0, 0, 5, 0x01, 0x10}), header));
    EXPECT_EQ(header.date, DateRecord());
    EXPECT_FALSE(RRWDS_decode_header(bytes_of({'L', 0, 'X', 0, 0, 0, 0, 0, 0, 5, 1, 1}), header));
    EXPECT_FALSE(RRWDS_decode_header(bytes_of({'L', 'S', 'X', 0, 0, 0, 0, 0, 0, 5, 1}), header));
}

TEST(Rrwds, EightBinsOfThreeBytes) {
    std::vector<std::byte> record(kRrwdsRecordBytes);
    const auto group = bytes_of({0xD1, 0x58, 0x1F});
    std::copy(group.begin(), group.end(), record.begin() + 4);
    std::copy(group.begin(), group.end(), record.begin() + 76);
    const RrwdsLevels levels = RRWDS_decode_radial(record);
    for (int i = 0; i < 8; ++i) {
        const auto bin = static_cast<std::size_t>(i);
        EXPECT_EQ(levels[bin], (i + 1) % 8) << i;
        EXPECT_EQ(levels[bin + 8], 0);
        EXPECT_EQ(levels[bin + 192], (i + 1) % 8) << i;
    }
    record.resize(5);
    EXPECT_EQ(RRWDS_decode_radial(record)[0], 1);
    EXPECT_EQ(RRWDS_decode_radial(record)[5], 0);
}

TEST(Rrwds, TheYearIsTheOneNearest) {
    const DateRecord summer = date_of(kMissing, 7, 4, 22, 0), eve = date_of(kMissing, 12, 31, 23, 55),
                     new_year = date_of(kMissing, 1, 1, 0, 5), leap = date_of(kMissing, 2, 29, 12, 0);
    EXPECT_EQ(RRWDS_year(summer, date_of(2003, 7, 4, 22, 0)), 2003);
    EXPECT_EQ(RRWDS_year(eve, date_of(2004, 1, 1, 0, 0)), 2003);
    EXPECT_EQ(RRWDS_year(new_year, date_of(2003, 12, 31, 23, 50)), 2004);
    EXPECT_EQ(RRWDS_year(summer, date_of(2003, 1, 20, 0, 0)), 2003);
    EXPECT_EQ(RRWDS_year(leap, date_of(2004, 3, 1, 0, 0)), 2004);
}

class RrwdsPlot : public DrawingTest {
protected:
    RrwdsPlot() {
        MESS_set(0, kError | kWarn);
        RES_put("file_path", VYX_SOURCE_DIR "/data");
        RES_put("plot_param", "");
        RRWDS_plot_param();
    }
    std::string write(const samples::Bytes &bytes) const {
        return files_.write("site", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    }
    static samples::RrwdsFile even(unsigned level) {
        samples::RrwdsFile file;
        file.time = 1057356000; // 2003-07-04 22:00
        file.level = [level](int, int) { return level; };
        return file;
    }
    /// Levels of the outlines that are drawn, each counted.
    static std::map<int, int> drawn_levels() {
        PlotDomain domain;
        RRWDS_domain(domain);
        domain.dx = domain.dy *= 1.1F; // the outermost bins, too
        MAP_setup(domain);
        CONT_reset_fill_set();
        CONT_set_fill_colors("1:red,7:off", 1);
        std::map<int, int> counts;
        const CellSink sink{[](void *context, const CellCorners &, std::uint8_t level) {
                                ++(*static_cast<std::map<int, int> *>(context))[level];
                            },
                            &counts};
        RRWDS_draw_radials(&sink);
        return counts;
    }
};

TEST_F(RrwdsPlot, BinsNextToTheRadarAreClutter) {
    ASSERT_EQ(RRWDS_open_file(write(samples::rrwds_file(even(3)))), 1);
    EXPECT_EQ(drawn_levels(), (std::map<int, int>{{3, 360 * 200}}));
    const auto with = [](const char *words) {
        RES_put("plot_param", words);
        RRWDS_plot_param();
        return drawn_levels()[3];
    };
    // Bins of a nautical mile: the 25th ends at the radius.
    EXPECT_EQ(with("clutter"), 360 * (200 - 24));
    EXPECT_EQ(with("clutter=10.5"), 360 * (200 - 10));
    EXPECT_EQ(with("clutter=10,noclutter"), 360 * 200);
    ASSERT_EQ(RRWDS_open_file(write(samples::rrwds_file(even(7)))), 1);
    EXPECT_EQ(drawn_levels(), (std::map<int, int>{}));
}

TEST_F(RrwdsPlot, LabelsDomainAndYear) {
    samples::RrwdsFile file = even(0);
    file.short_range = true;
    file.elevation = -0.5;
    const std::string name = write(samples::rrwds_file(file));
    const DateRecord wanted = date_of(2003, 7, 5, 0, 0);
    RRWDS_set_date(&wanted);
    ASSERT_EQ(RRWDS_open_file(name), 1);
    const RrwdsInfo &info = RRWDS_state().info;
    EXPECT_EQ(info.title, "Reflectivity for LSX");
    EXPECT_EQ(info.subtitle, "Range: 100 Elev:-0.5");
    EXPECT_EQ(info.date, date_of(2003, 7, 4, 22, 0));
    EXPECT_FLOAT_EQ(info.bin_nm, 0.5F);
    EXPECT_NEAR(info.lat, 38.6987, 1e-3);
    PlotDomain domain;
    EXPECT_EQ(RRWDS_domain(domain), 0);
    EXPECT_EQ(domain.proj, kProjPolar);
    EXPECT_EQ(domain.nx, 601);
    EXPECT_EQ(domain.ny, 401);
    EXPECT_EQ(RRWDS_domain(domain), -1);
    {
        const MapDomainScope scope(domain);
        EXPECT_FLOAT_EQ(domain.dx, 0.5F * 0.01852F * MAP_factor(info.lat));
    }
    EXPECT_EQ(RRWDS_rewind_file(), 1);
    RRWDS_close_file();
    EXPECT_EQ(RRWDS_rewind_file(), 0);
}

TEST_F(RrwdsPlot, WhatIsMissingIsToldAndTheRestIsDrawn) {
    samples::Bytes bytes = samples::rrwds_file(even(2));
    bytes.resize(kRrwdsHeaderBytes + 100 * kRrwdsRecordBytes + 50);
    const std::string name = write(bytes);
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(RRWDS_open_file(name), 1); }),
              "RRWDS_open_file: " + name + ": 100 of 360 radials are there\n");
    EXPECT_EQ(drawn_levels()[2], 100 * 200 + (50 - 4) / 3 * 8 + 3);
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(RRWDS_open_file(name), 1); }), "") << "told once";
    RRWDS_state().options.strict = true;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(RRWDS_open_file(name), 0); }),
              "RRWDS_open_file: Incomplete file:" + name + "\n")
        << "no end while a page is open";
}

TEST(Rrwds, FilesThatCannotBePlottedEndTheProgram) {
    MESS_set(0, kError | kWarn);
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    const ScratchDir files;
    const auto write = [&files](const samples::RrwdsFile &file) {
        const samples::Bytes bytes = samples::rrwds_file(file);
        return files.write("site", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    };
    samples::RrwdsFile unknown;
    unknown.station = "ZZ9";
    unknown.level = [](int, int) { return 1U; };
    const std::string elsewhere = write(unknown), empty = files.write("empty", "");
    EXPECT_EXIT((void)RRWDS_open_file(elsewhere), testing::ExitedWithCode(11),
                "RRWDS_get_header: Station not found\n");
    EXPECT_EXIT((void)RRWDS_open_file(empty), testing::ExitedWithCode(10), "No header");
    EXPECT_EXIT((void)RRWDS_open_file(files.at("missing")), testing::ExitedWithCode(10),
                "RRWDS_open_file: Unable to open file:");
}

TEST_F(RrwdsPlot, TheLegendStandsBelowThePlot) {
    FLAG_setplot(12, 1);
    PLT_set_view({0.05F, 0.95F, 0.1F, 0.7F});
    CONT_reset_fill_set();
    CONT_set_type(kContourFill);
    CONT_set_base(-0.5F);
    CONT_set_intrvl(1);
    CONT_set_fill_colors("none,red,yellow,blue,magenta,white,red,off", 1);
    forget();
    RAD_draw_bar();
    const auto boxes = areas();
    const auto labels = texts();
    ASSERT_EQ(boxes.size(), 6U);
    ASSERT_EQ(labels.size(), 7U);
    EXPECT_EQ(labels[0].text, "Intensities (Dbz):");
    const std::array<const char *, 6> values{"20", "30", "40", "45", "50", "55"};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        EXPECT_EQ(labels[i + 1].text, values[i]);
        EXPECT_LT(labels[i + 1].place.x, boxes[i][0].x);
        EXPECT_NEAR(boxes[i][1].x - boxes[i][0].x, 0.015, 1e-4);
        if (i > 0) {
            EXPECT_NEAR(boxes[i][0].x - boxes[i - 1][0].x, 0.06, 1e-4);
        }
        for (const Point &corner : boxes[i]) {
            EXPECT_LT(corner.y, 0.1F);
            EXPECT_GT(corner.y, 0);
        }
    }
    // Without room there is none, and nothing to flash.
    EXPECT_EQ(RAD_flash_levels("x-Alt", 0, 0), 0);
    EXPECT_EQ(RAD_flash_levels("f-Alt", 0, 0), -1);
    PLT_set_view({0, 1, 0.005F, 0.7F});
    forget();
    RAD_draw_bar();
    EXPECT_TRUE(areas().empty());
    EXPECT_EQ(RAD_flash_levels("f-Alt", 0, 0), 0);
}

} // namespace
