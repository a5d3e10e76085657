#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/core/object_list.h"
#include "graphics/core/state.h"

namespace {

int pumped = 0;

} // namespace

TEST(ObjectList, KeepsTypeValueAndDataInOrderAcrossChunks) {
    ginit_objs(true);
    const std::vector<Point> long_line(300000, Point{1, 2}); // larger than a chunk
    constexpr int kCells = 60000;                            // several chunks of small ones
    record_points(ObjectType::polyline, long_line);
    for (int i = 0; i < kCells; ++i) {
        const std::array cell{Point{static_cast<float>(i), 0}, Point{0, 1}, Point{1, 1}};
        record_points(ObjectType::fill_area, cell);
    }
    record_text(ObjectType::text, 1, {3, 4}, "abc");

    const ObjectRecord *record = gfirst_obj();
    ASSERT_EQ(record->type, ObjectType::polyline);
    EXPECT_EQ(record->value, 300000);
    EXPECT_EQ(std::memcmp(record->data(), long_line.data(), record->size), 0);
    for (int i = 0; i < kCells; ++i) {
        record = record->next;
        Point first;
        std::memcpy(&first, record->data(), sizeof first);
        ASSERT_EQ(first.x, static_cast<float>(i));
        ASSERT_EQ(record->size, 3 * sizeof(Point));
    }
    record = record->next;
    EXPECT_EQ(std::memcmp(record->data() + sizeof(Point), "abc", 3), 0);
    EXPECT_EQ(record->next, nullptr);

    gclear_objs();
    EXPECT_EQ(gfirst_obj(), nullptr);
    EXPECT_EQ(gget_num_objs(), static_cast<std::size_t>(kCells) + 2);
}

TEST(ObjectList, CountsAndPumpsEventsWithoutRecording) {
    ginit_objs(false);
    pumped = 0;
    gset_event_pump([] { ++pumped; });
    for (int i = 0; i < 1499; ++i) EXPECT_EQ(gnew_obj(ObjectType::line_type, i, 0, nullptr), nullptr);
    EXPECT_EQ(pumped, 2);
    EXPECT_EQ(gget_num_objs(), 1499U);
    EXPECT_EQ(gfirst_obj(), nullptr);
    gset_event_pump(nullptr);
}

TEST(ObjectList, BeyondItsBoundThePictureIsNotKept) {
    gstate().kernel_open = true; // else nothing is told
    ginit_objs(true);
    const std::vector<Point> line(std::size_t{1} << 20); // 8 MB
    std::size_t kept = 0;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    for (int i = 0; i < 12; ++i) {
        record_points(ObjectType::polyline, line);
        if (gfirst_obj() != nullptr) ++kept;
    }
    const std::string told = testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    EXPECT_EQ(kept, 7U);
    EXPECT_EQ(gfirst_obj(), nullptr) << "the beginning of a picture is no picture";
    EXPECT_EQ(gget_redraw(), 0);
    EXPECT_EQ(gget_num_objs(), 12U);
    EXPECT_EQ(told, "newobj: the picture takes more than 64 MB and is not kept for a replay\n");
    gstate() = {};
}

TEST(ObjectList, SettingAndEnvironmentSwitchRecording) {
    ginit_objs(true);
    EXPECT_EQ(gset_redraw(0), 1);
    EXPECT_EQ(gset_redraw(1), 0);
    setenv("vyxredraw", "No", 1);
    ginit_objs(true);
    EXPECT_EQ(gget_redraw(), 0);
    unsetenv("vyxredraw");
}
