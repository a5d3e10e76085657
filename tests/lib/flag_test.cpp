#include "lib/options/flags.h"
#include "lib/resources/flag_words.h"

#include <string>

#include <gtest/gtest.h>

#include "lib/text/missing.h"

namespace {

/// The components 1 to 11 that are on, as a text of their numbers.
std::string shown() {
    std::string text;
    for (int index = kPlotTextUL; index < kPlotAny; ++index)
        if (FLAG_getplot(index) != 0) text += std::to_string(index) + " ";
    return text;
}

std::string shown_after(std::string_view draw) {
    FLAG_resetplot(1);
    FLAG_set_draw(draw);
    return shown();
}

} // namespace

TEST(Flag, SlotsOutsideTheTable) {
    FLAG_reset(kMissing);
    EXPECT_EQ(FLAG_get(29), kMissing);
    for (const int id : {-1, 30}) {
        EXPECT_EQ(FLAG_get(id), 0);
        EXPECT_EQ(FLAG_set(id, 1), -1);
    }
    EXPECT_EQ(FLAG_setl(7, 0x1'8000'0005), 0);
    EXPECT_EQ(FLAG_getl(7), 0x1'8000'0005);
    EXPECT_EQ(FLAG_get(7), static_cast<int>(0x80000005U)) << "the low 32 bits";
}

TEST(Flag, BatchNeedsAPositiveValue) {
    FLAG_reset(kMissing);
    EXPECT_EQ(FLAG_batch(), 0) << "unset is not batch";
    FLAG_set_batch(1);
    EXPECT_EQ(FLAG_batch(), 1);
    EXPECT_EQ(FLAG_help(), 0);
}

TEST(Flag, SumsFollowTheComponents) {
    EXPECT_EQ(FLAG_getplot(kPlotAny), 1);
    FLAG_setplot(kPlotMap, 0);
    EXPECT_EQ(FLAG_getplot(kPlotText), 6);
    FLAG_setplot(kPlotText, 0);
    EXPECT_EQ(shown(), "7 9 10 11 ");
    FLAG_setplot(kPlotTextLR, 1);
    EXPECT_EQ(FLAG_getplot(kPlotText), 1);
    FLAG_setplot(kPlotAny, 0);
    EXPECT_EQ(FLAG_getplot(kPlotText), 0);
    EXPECT_EQ(FLAG_getplot(kPlotAny), 0);
    FLAG_setplot(13, 1);
    FLAG_setplot(-1, 1);
    EXPECT_EQ(FLAG_getplot(kPlotAny), 0);
}

TEST(Flag, DrawValues) {
    EXPECT_EQ(shown_after("map,data"), "7 8 ");
    EXPECT_EQ(shown_after("-map"), "1 2 3 4 5 6 7 9 10 11 ");
    EXPECT_EQ(shown_after("text,+grid,-text_ul"), "2 3 4 5 6 9 11 ") << "text brings the border";
    EXPECT_EQ(shown_after("all,-text"), "7 8 9 10 ");
    EXPECT_EQ(shown_after("+data,none"), "");
    EXPECT_EQ(shown_after("SUMMARY,border,bogus,text_xx"), "10 11 ");
    EXPECT_EQ(shown_after("bogus"), "") << "an unknown first word still clears";
    EXPECT_EQ(shown_after(""), "1 2 3 4 5 6 7 8 9 10 11 ");
}

TEST(Flag, PlotTypeTakesWholeWordsOnly) {
    FLAG_set(kFlagPlotType, kMissing);
    FLAG_set_plot_type("cfx");
    FLAG_set_plot_type("c");
    EXPECT_EQ(FLAG_get(kFlagPlotType), kMissing);
    FLAG_set_plot_type("GVALUE");
    EXPECT_EQ(FLAG_get(kFlagPlotType), 17);
    FLAG_set_plot_type("raw");
    EXPECT_EQ(FLAG_get(kFlagPlotType), 0);
}

TEST(Flag, FileParameter) {
    FLAG_set(kFlagFileParam, kMissing);
    FLAG_set_file_param("other");
    EXPECT_EQ(FLAG_get(kFlagFileParam), kMissing);
    FLAG_set_file_param("Append");
    EXPECT_EQ(FLAG_get(kFlagFileParam), 2);
    FLAG_set_file_param("reuse");
    EXPECT_EQ(FLAG_get(kFlagFileParam), 3);
    FLAG_set_file_param("recalc");
    EXPECT_EQ(FLAG_get(kFlagFileParam), 1);
}
