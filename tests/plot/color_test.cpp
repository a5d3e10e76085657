// Colour tables and attribute strings.

#include "plot/colour/named_colors.h"

#include <gtest/gtest.h>

#include "graphics/core/color_slots.h"
#include "graphics/kernel/kernel.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/colour/attribute.h"

namespace {

class Colors : public testing::Test {
protected:
    void SetUp() override {
        CLR_clear_table();
        RES_put("file_path", scratch_.path());
        RES_put("color_table", "");
    }
    void read(std::string_view content) {
        scratch_.write("vyx.clr", content);
        CLR_read_table("");
    }
    ScratchDir scratch_;
};

TEST_F(Colors, FilesTakeEveryForm) {
    read("# a comment\r\n  0 black 0 0 0\nRed 1.0 0.5 0\n 7 sea #0080FF\nend\nwarm #FF8000 and more\n"
         "broken 1 2\nnameless\n\n5\nvery_long_name_that_is_cut_here 2 -1 0.25\n");
    ASSERT_EQ(CLR_get_num(), 5);
    EXPECT_EQ(CLR_get_num_fill(), 0) << "only a table chosen by the user has a fill sequence";
    EXPECT_EQ(CLR_get_ind("rEd"), 1);
    EXPECT_EQ(CLR_get_rgb(1), (Rgb{1, 0.5F, 0}));
    EXPECT_EQ(CLR_get_rgb(2), (Rgb{0, 128 / 255.0F, 1}));
    EXPECT_EQ(CLR_get_name(4), "very_long_name_that");
    EXPECT_EQ(CLR_get_rgb(4), (Rgb{1, 0, 0.25F})) << "intensities are clamped";
    EXPECT_EQ(CLR_get_name(999), CLR_get_name(4)) << "an index beyond the table is the last entry";
    EXPECT_EQ(CLR_get_name(-7), "black");
}

TEST_F(Colors, UserTablesContinueEachOther) {
    scratch_.write("a.clr", "one 0 0 0\ntwo 0 0 0\nEnd\nthree 0 0 0\n");
    scratch_.write("b.clr", "four 0 0 0\nEND\nfive 0 0 0\n");
    RES_put("color_table", "a.clr,missing.clr,b.clr");
    CLR_read_table("");
    EXPECT_EQ(CLR_get_num(), 5);
    EXPECT_EQ(CLR_get_num_fill(), 2) << "the end of the first file's sequence";
    EXPECT_EQ(CLR_get_ind("five"), 4);
}

TEST_F(Colors, WithoutTableNothingIsKnown) {
    CLR_read_table("missing.clr");
    EXPECT_EQ(CLR_get_num(), 0);
    EXPECT_EQ(CLR_get_name(3), "");
    EXPECT_EQ(CLR_get_rgb(3), Rgb{});
    EXPECT_EQ(CLR_get_ind("red"), kColorBackground);
}

TEST_F(Colors, IndexOfText) {
    read("black 0 0 0\nblue 0 0 1\n");
    EXPECT_EQ(CLR_get_ind(""), kColorBackground);
    EXPECT_EQ(CLR_get_ind("OFF"), kColorBackground);
    EXPECT_EQ(CLR_get_ind("End"), kColorEnd);
    EXPECT_EQ(CLR_get_ind("PTGRY"), 508);
    EXPECT_EQ(CLR_get_ind("17th"), 17);
    EXPECT_EQ(CLR_get_ind("mauve"), kColorBackground);
    EXPECT_EQ(CLR_get_ind("#FF80"), kColorBackground);
    EXPECT_EQ(CLR_get_ind("#GG8000"), kColorBackground);
    const int added = CLR_get_ind("#FF8000");
    EXPECT_EQ(added, 2);
    EXPECT_EQ(CLR_get_ind("#ff8000"), added) << "asking again adds nothing";
    EXPECT_FLOAT_EQ(CLR_get_rgb(added).green, 128 / 255.0F);
    EXPECT_EQ(CLR_get_ind("#255128000"), 3);
    EXPECT_EQ(CLR_get_rgb(3), CLR_get_rgb(added));
    EXPECT_EQ(CLR_get_rgb(CLR_get_ind("#999000000")).red, 1.0F);
}

TEST_F(Colors, AFullTableGivesItsLastIndex) {
    std::string lines;
    for (int i = 0; i < 300; ++i) lines += "c" + std::to_string(i) + " 0 0 0\n";
    read(lines);
    EXPECT_EQ(CLR_get_num(), 256);
    EXPECT_EQ(CLR_get_ind("c299"), kColorBackground);
    EXPECT_EQ(CLR_get_ind("#010203"), 255);
    EXPECT_EQ(CLR_get_name(255), "c255") << "the entry stays as it is";
}

TEST_F(Colors, ProgramsTableKnowsEveryNameOfTheDrivers) {
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
    CLR_read_table("");
    for (const char *name :
         {"blue", "lblue", "cyan", "lcyan", "green", "lgreen", "dgreen", "brown", "yellow", "red", "lred",
          "magenta", "lmagenta", "dgray", "lgray", "white", "black", "gray"})
        EXPECT_GE(CLR_get_ind(name), 0) << name;
}

TEST_F(Colors, AttributeStrings) {
    read("black 0 0 0\nred 1 0 0\n");
    Attribute a;
    ATTRIB_parse("red:w2.5:s4:h1.5:e0.8:f3:t2", a);
    EXPECT_EQ(a.color, 1);
    EXPECT_EQ(a.width, 2.5F);
    EXPECT_EQ(a.style, 4);
    EXPECT_EQ(a.height, 1.5F);
    EXPECT_EQ(a.expansion, 0.8F);
    EXPECT_EQ(a.fill, 3);
    EXPECT_EQ(a.font, 2);
    ATTRIB_parse("wi=3:st=dot:fi=XX:hi=2:te=1:co=black", a);
    EXPECT_EQ(a.color, 0) << "an element with \"=\" in front is no colour";
    EXPECT_EQ(a.width, 3);
    EXPECT_EQ(a.style, 5);
    EXPECT_EQ(a.fill, 9);
    EXPECT_EQ(a.height, 2);
    ATTRIB_parse("red:fM:w:sx:zzz::", a);
    EXPECT_EQ(a.fill, kMissing);
    EXPECT_EQ(a.width, 3) << "a field without number changes nothing";
    ATTRIB_parse("", a);
    EXPECT_EQ(a.color, 1) << "nor does an empty text";

    Attribute update;
    update.style = 2;
    ATTRIB_update(a, update);
    EXPECT_EQ(a.style, 2);
    EXPECT_EQ(a.color, 1);

    RES_put("color_test", "black");
    Attribute from_resource;
    EXPECT_EQ(ATTRIB_get("color_test", "red:w2", from_resource), 1);
    EXPECT_EQ(from_resource.color, 0);
    EXPECT_EQ(from_resource.width, 2);
    EXPECT_EQ(ATTRIB_get("color_unset", "red", from_resource), 0);
    EXPECT_EQ(from_resource.color, 1);
}

TEST_F(Colors, TextsAreSeenOnEveryBackground) {
    read("black 0 0 0\nwhite 1 1 1\nyellow 1 1 0\nlgray .68 .68 .68\nnavy 0 0 .5\nred 1 0 0\ngreen 0 .5 0\n");
    struct Case {
        const char *background;
        bool inverse;
        const char *ink;
    };
    for (const Case &c :
         {Case{"", false, "white"}, Case{"", true, "black"}, Case{"white", false, "black"},
          Case{"black", true, "white"}, Case{"white", true, "black"}, Case{"none", true, "black"},
          Case{"yellow", false, "black"}, Case{"lgray", false, "black"}, Case{"navy", true, "white"},
          // What can be read stays as it is described.
          Case{"red", false, "white"}, Case{"red", true, "black"}, Case{"green", false, "white"}}) {
        SCOPED_TRACE(testing::Message() << c.background << (c.inverse ? " inverse" : ""));
        RES_put("background", c.background);
        gset_inverse(c.inverse ? 1 : 0);
        gset_color_lookup([](std::string_view name, Rgb &color) {
            const int index = CLR_get_ind(std::string(name));
            if (index >= 0) color = CLR_get_rgb(index);
            return index >= 0;
        });
        ASSERT_EQ(gopen_ws(1, "memory", DeviceKind::win), 0);
        EXPECT_STREQ(ATTRIB_text_default(), c.ink);
        (void)gclose_ws(1);
        // A page is white whatever the window is; its device turns white ink.
        ASSERT_EQ(gopen_ws(1, scratch_.at("page.ps"), DeviceKind::ps), 0);
        EXPECT_STREQ(ATTRIB_text_default(), c.inverse ? "black" : "white");
        (void)gclose_ws(1);
    }
}

TEST(Attributes, PatternsAndMarkers) {
    EXPECT_EQ(ATTR_parse_fill_pat("SOL"), 0);
    EXPECT_EQ(ATTR_parse_fill_pat("\\\\"), 6);
    EXPECT_EQ(ATTR_parse_fill_pat("9%"), 19);
    EXPECT_EQ(ATTR_parse_fill_pat("12"), 12);
    EXPECT_EQ(ATTR_parse_fill_pat("nonsense"), 0);
    EXPECT_EQ(ATTR_parse_marker("*"), 3);
    EXPECT_EQ(ATTR_parse_marker("Circle"), 4);
    EXPECT_EQ(ATTR_parse_marker("itri"), 9);
    EXPECT_EQ(ATTR_parse_marker("7"), 7);
    EXPECT_EQ(ATTR_parse_marker("99999999999"), 2147483647);
}

} // namespace
