#include "plot/symbols/wind.h"

#include <limits>

#include "plot/drawing_fixture.h"

namespace {

class WindTest : public DrawingTest {
protected:
    WindTest() {
        gset_win(2, {-100, 100, -100, 100});
        gsel_norm_tran(2);
        forget();
    }
};

TEST_F(WindTest, BarbsCountTheSpeed) {
    struct Case {
        float speed;
        std::size_t strokes, pennants; // strokes with the staff
    };
    for (const Case &c : {Case{3, 2, 0}, Case{12, 2, 0}, Case{15, 3, 0}, Case{47, 6, 0}, Case{48, 1, 1},
                          Case{65, 3, 1}, Case{115, 3, 2}}) {
        forget();
        WIND_barb(0, 0, 0, c.speed, 20, 0);
        EXPECT_EQ(lines().size(), c.strokes) << c.speed;
        EXPECT_EQ(areas().size(), c.pennants) << c.speed;
    }
}

TEST_F(WindTest, ALoneHalfBarbStandsAStepFromTheEnd) {
    const auto foot_of_last_barb = [](float speed) {
        forget();
        WIND_barb(0, 0, 0, speed, 20, 0);
        return lines().back()[0].y;
    };
    WIND_barb(0, 0, 0, 20, 20, 0); // two whole barbs
    const float step = 20 - lines().back()[0].y;
    EXPECT_GT(step, 1);
    EXPECT_NEAR(foot_of_last_barb(5), 20 - step, 1e-4);
    EXPECT_NEAR(foot_of_last_barb(15), 20 - step, 1e-4);
}

TEST_F(WindTest, StaffPointsIntoTheWindAndBarbsStandToItsRight) {
    WIND_barb(10, 10, 90, 10, 20, 0);
    auto strokes = lines();
    ASSERT_EQ(strokes.size(), 2U);
    EXPECT_NEAR(strokes[0][1].x, 30, 1e-4);
    EXPECT_NEAR(strokes[0][1].y, 10, 1e-4);
    EXPECT_LT(strokes[1][1].y, 10 - 5); // a wind from the east, barbs to the south
    forget();
    WIND_barb(10, 10, 90, 10, 20, 1);
    EXPECT_GT(lines()[1][1].y, 10 + 5);
}

TEST_F(WindTest, StrongWindStaysOnTheStaff) {
    WIND_barb(0, 0, 0, 495, 20, 0);
    for (const Line &area : areas())
        for (const Point &p : area) EXPECT_GE(p.y, 0);
    EXPECT_EQ(areas().size(), 9U);
}

TEST_F(WindTest, CalmIsACircleAndNoWindIsNothing) {
    WIND_barb(0, 0, 0, 2, 20, 0);
    ASSERT_EQ(lines().size(), 1U);
    EXPECT_GT(lines()[0].size(), 8U);
    forget();
    WIND_barb(0, 0, 0, kMissingF, 20, 0);
    WIND_barb(0, 0, kMissingF, 10, 20, 0);
    WIND_barb(0, 0, 0, std::numeric_limits<float>::infinity(), 20, 0);
    WIND_track(4, 0, 0, kMissingF, 10, 1);
    EXPECT_TRUE(lines().empty());
}

TEST_F(WindTest, TrackMarksEqualSteps) {
    WIND_track(4, 0, 0, 0, 40, 10);
    const auto strokes = lines();
    ASSERT_EQ(strokes.size(), 5U); // shaft, three marks, head
    EXPECT_NEAR(strokes[0][1].y, 40, 1e-4);
    for (std::size_t i = 1; i <= 3; ++i) EXPECT_NEAR(strokes[i][0].y, 10 * static_cast<float>(i), 1e-4);
    EXPECT_EQ(strokes[4].size(), 3U);
}

} // namespace
