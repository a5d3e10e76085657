#include "plot/symbols/watch.h"

#include "plot/drawing_fixture.h"
#include "plot/symbols/watch_text.h"

namespace {

const std::string kPublic = "WWUS20 KWNS 102034\n"
                            "SEL3\n"
                            "URGENT - IMMEDIATE BROADCAST REQUESTED\n"
                            "TORNADO WATCH NUMBER 123\n"
                            "...THIS REPLACES SEVERE THUNDERSTORM WATCH NUMBER 120...\n"
                            "LAT...LON 39769032 38768987\n"
                            "      40138823 41000123\n"
                            "\n"
                            "THIS IS AN APPROXIMATION 12345678\n";
const std::string kShort = "WWUS30 KWNS 112050\r\nSAW4\r\nWW 124 SEVERE TSTM KS MO 112055Z - 120400Z\r\n"
                           "LAT...LON 35009500 35009400 34009400\r\n";

std::int64_t seconds(int year, int month, int day, int hour, int minute) {
    DateRecord date;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hour = hour;
    date.minute = minute;
    date.second = 0;
    return DATE_num_sec(date);
}

TEST(WatchText, ReadsKindNumberTimeAndCorners) {
    const auto found = parse_watch_text(kPublic + kShort);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].box.kind, "TORNADO");
    EXPECT_EQ(found[0].box.number, 123);
    EXPECT_EQ(found[0].begin, (DayTime{10, 20, 34}));
    EXPECT_FALSE(found[0].end);
    ASSERT_EQ(found[0].box.corners.size(), 4U);
    EXPECT_FLOAT_EQ(found[0].box.corners[0].lat, 39.76F);
    EXPECT_FLOAT_EQ(found[0].box.corners[0].lon, -90.32F);
    EXPECT_FLOAT_EQ(found[0].box.corners[3].lon, -101.23F);
    EXPECT_EQ(found[1].box.kind, "SEVERE THUNDERSTORM");
    EXPECT_EQ(found[1].box.number, 124);
    EXPECT_EQ(found[1].end, (DayTime{12, 4, 0}));
}

TEST(WatchText, LeavesOutWhatIsNoWatch) {
    EXPECT_TRUE(parse_watch_text("").empty());
    EXPECT_TRUE(parse_watch_text("TORNADO WATCH NUMBER 1\nLAT...LON 39769032 38768987\n").empty());
    EXPECT_TRUE(parse_watch_text("LAT...LON 39769032 38768987 40138823\n").empty());
    EXPECT_TRUE(parse_watch_text("TORNADO WATCH OUTLINE\nLAT...LON 39769032 38768987 40138823\n").empty());
    EXPECT_TRUE(parse_watch_text("TORNADO WATCH 5\nLAT...LON 99999032 38768987 40138823\n").empty());
    for (std::size_t cut = 0; cut < kPublic.size(); ++cut)
        EXPECT_LE(parse_watch_text(std::string_view(kPublic).substr(0, cut)).size(), 1U);
}

TEST(WatchText, IsInForceForItsPeriodOrEightHours) {
    const WatchBulletin heading = parse_watch_text(kPublic)[0], period = parse_watch_text(kShort)[0];
    EXPECT_TRUE(watch_in_force(heading, seconds(2004, 7, 10, 20, 34)));
    EXPECT_FALSE(watch_in_force(heading, seconds(2004, 7, 10, 20, 33)));
    EXPECT_TRUE(watch_in_force(heading, seconds(2004, 7, 11, 4, 33)));
    EXPECT_FALSE(watch_in_force(heading, seconds(2004, 7, 11, 4, 34)));
    EXPECT_TRUE(watch_in_force(period, seconds(2004, 7, 12, 3, 59)));
    EXPECT_FALSE(watch_in_force(period, seconds(2004, 7, 12, 4, 0)));
    WatchBulletin month_end = heading;
    month_end.begin = DayTime{31, 23, 0};
    EXPECT_TRUE(watch_in_force(month_end, seconds(2004, 8, 1, 1, 0)));
    month_end.begin.reset();
    EXPECT_TRUE(watch_in_force(month_end, seconds(2004, 8, 1, 1, 0)));
}

class WatchTest : public DrawingTest {};

TEST_F(WatchTest, DrawsTheBoxesOfTheFolder) {
    files_.write("watches/a.txt", kPublic);
    files_.write("watches/b.txt", kShort);
    files_.write("watches/deeper/c.txt", "TORNADO WATCH 9\nLAT...LON 35009500 35009400 34009400\n");
    DateRecord date;
    EXPECT_EQ(WATCH_decode(date), 0); // no watch path
    RES_put("watch_path", files_.at("watches"));
    const std::int64_t now = seconds(2004, 7, 11, 3, 0);
    DATE_get_gmdate(&now, date);
    ASSERT_EQ(WATCH_decode(date), 1);
    EXPECT_EQ(WATCH_boxes()[0].number, 123);

    MAP_setup(degrees(38, -95, 40, 20));
    forget();
    WATCH_plot();
    ASSERT_EQ(lines().size(), 1U);
    EXPECT_EQ(lines()[0].size(), 5U);
    EXPECT_EQ(lines()[0].front(), lines()[0].back());
    EXPECT_EQ(line_colors().back(), CLR_get_ind("yellow"));
    ASSERT_EQ(texts().size(), 1U);
    EXPECT_EQ(texts()[0].text, "TOR 123");

    forget();
    RES_put("color_watch", "blue,off");
    WATCH_plot();
    EXPECT_EQ(line_colors().back(), CLR_get_ind("blue"));
    EXPECT_TRUE(texts().empty());
}

TEST_F(WatchTest, FollowsTheNamingConvention) {
    files_.write("name_conv", "watch %W/%Y%m%d%h.txt - 0\n");
    files_.write("watches/2004071020.txt", kPublic);
    files_.write("watches/2004071120.txt", kShort);
    files_.write("watches/other.txt", "TORNADO WATCH 9\nLAT...LON 35009500 35009400 34009400\n");
    RES_put("watch_path", files_.at("watches"));
    DateRecord date;
    const std::int64_t now = seconds(2004, 7, 11, 3, 0);
    DATE_get_gmdate(&now, date);
    ASSERT_EQ(WATCH_decode(date), 1);
    EXPECT_EQ(WATCH_boxes()[0].number, 123);
}

} // namespace
