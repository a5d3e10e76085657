// Font files and the font list, good and broken.

#include "graphics/text/font.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "graphics/core/state.h"
#include "graphics/text/current_font.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"

namespace {

namespace fs = std::filesystem;

/// 256 start indices: those of A and B, -1 for all others.
std::string starts(int a, int b) {
    std::string text;
    for (int character = 0; character < StrokeFont::kCharacters; ++character)
        text += std::to_string(character == 'A' ? a : character == 'B' ? b : -1) + ' ';
    return text;
}

TEST(StrokeFontFile, ReadsBothForms) {
    const auto simple = parse_stroke_font("255 128 35 100 140 253 35 255\n10 20 255 254 " + starts(1, 8));
    ASSERT_TRUE(simple);
    EXPECT_EQ(simple->data, (std::vector<std::uint8_t>{255, 128, 35, 100, 140, 253, 35, 255, 10, 20, 255}));
    EXPECT_EQ(simple->advance['A'], 125); // a pen-up point counts
    EXPECT_EQ(simple->advance['B'], 10);
    EXPECT_EQ(simple->advance[' '], 40);
    EXPECT_EQ(simple->advance['C'], 0);
    EXPECT_FALSE(simple->has_glyph(' '));

    const auto labelled = parse_stroke_font("7 A 128 35 100 140 255 B 10 20 255 end 254 " + starts(0, 5));
    ASSERT_TRUE(labelled);
    EXPECT_EQ(labelled->data, (std::vector<std::uint8_t>{128, 35, 100, 140, 255, 10, 20, 255}));
    EXPECT_EQ(labelled->start['B'], 5);
    EXPECT_EQ(labelled->advance['A'], 100);
}

TEST(StrokeFontFile, RefusesWhatIsBroken) {
    const std::string good = "255 128 35 100 140 255 254 " + starts(1, 1);
    ASSERT_TRUE(parse_stroke_font(good));
    // Cut anywhere before its last number the file is too short
    for (std::size_t length = 0; length + 2 < good.size() - 1; ++length)
        EXPECT_FALSE(parse_stroke_font(good.substr(0, length))) << length;
    std::string many = "255 ";
    for (std::size_t i = 0; i < StrokeFont::kMaxData; ++i) many += "1 ";
    for (const std::string &data : {std::string("255 256"), std::string("255 -1"), std::string("255 x"), many,
                                    std::string("255 99999999999999999999")})
        EXPECT_FALSE(parse_stroke_font(data + " 254 " + starts(1, 1))) << data.substr(0, 30);

    // Starts outside the data draw nothing; a glyph without end stops with the data
    const auto font = parse_stroke_font("255 128 35 100 140 9 254 " + starts(7, 1));
    ASSERT_TRUE(font);
    EXPECT_FALSE(font->has_glyph('A'));
    EXPECT_EQ(font->advance['B'], 100);
    EXPECT_FALSE(parse_stroke_font("255 254 " + starts(-2, 2147483647)).value().has_glyph('B'));
}

class FontList : public testing::Test {
protected:
    void SetUp() override {
        directory_ = fs::temp_directory_path() / ("vyx_fonts_" + std::to_string(getpid()));
        fs::create_directories(directory_);
        RES_put("file_path", directory_.string());
        RES_put("font_list", "");
        gstate().kernel_open = true;
        gstate().text.font = 1;
        write("modern.fnt", "255 128 35 10 140 255 254 " + starts(1, -1));
        write("wide.fnt", "255 128 35 90 140 255 254 " + starts(1, -1));
    }
    void TearDown() override { fs::remove_all(directory_); }
    void write(const char *name, const std::string &text) const { std::ofstream(directory_ / name) << text; }
    /// Which of the two fonts is loaded: 10, 90, or 0 for none.
    static int loaded() { return current_stroke_font().advance['A']; }

    fs::path directory_;
};

TEST_F(FontList, ComesFromResourceOrFiles) {
    gsetup_fonts(); // no list at all
    EXPECT_EQ(loaded(), 10);
    EXPECT_EQ(gload_font(99), 0);

    write("vyx.fnl", "broad   wide.fnt \nloneword\nmodern modern.fnt\n");
    gsetup_fonts();
    EXPECT_EQ(loaded(), 90);
    EXPECT_EQ(gget_font_index("MODERN"), 2);
    EXPECT_EQ(gget_font_index("nothing"), 1);
    EXPECT_EQ(gget_font_index("12x"), 12);
    EXPECT_EQ(gload_font(2), 0);
    EXPECT_EQ(loaded(), 10);
    gstate().text.font = 2;
    gsetup_fonts();
    EXPECT_EQ(loaded(), 10);

    RES_put("font_list", "wide.fnt,modern.fnt");
    gsetup_fonts();
    EXPECT_EQ(gget_font_index("modern.fnt"), 2); // names are cut at nine characters
    EXPECT_EQ(loaded(), 10);

    write("own.fnl", "a modern.fnt b wide.fnt c");
    RES_put("font_list", "fi:own.fnl");
    gsetup_fonts();
    EXPECT_EQ(loaded(), 90);
    EXPECT_EQ(gget_font_index("b"), 2);
}

TEST_F(FontList, TellsWhatCannotBeLoaded) {
    write("vyx.fnl", "modern modern.fnt\nbroken broken.fnt\n");
    write("broken.fnt", "255 1 2 3");
    gsetup_fonts();
    testing::internal::CaptureStderr();
    EXPECT_EQ(gload_font(0), -1);
    EXPECT_EQ(gload_font(3), -1);
    EXPECT_EQ(loaded(), 10);
    for (int label = 0; label < 3; ++label) { // told once
        EXPECT_EQ(gload_font(2), 0);
        EXPECT_EQ(loaded(), 10) << "another font stands in";
    }
    EXPECT_EQ(read_font("broken.fnt"), -1);
    EXPECT_EQ(loaded(), 0);
    EXPECT_EQ(read_font("#9x15"), -1);
    for (const char *name : {"missing.fnt", "", "-", "."}) EXPECT_EQ(read_font(name), -1);
    RES_put("font_list", "fi:missing.fnl");
    gsetup_fonts();
    EXPECT_EQ(loaded(), 10); // the fallback
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "gset_fontprec: invalid font id: 0\n"
              "gset_fontprec: invalid font id: 3\n"
              "read_font: unable to load font file: broken.fnt\n"
              "read_font: unable to load font file: broken.fnt\n"
              "read_font: unable to load font: 9x15\n"
              "read_font: missing.fnt: No such file or directory\n"
              "read_font: unable to load font file: missing.fnt\n"
              "read_font: : Invalid argument\n"
              "read_font: unable to load font file: \n"
              "read_font: -: Invalid argument\n"
              "read_font: unable to load font file: -\n"
              "read_font: .: Is a directory\n"
              "read_font: unable to load font file: .\n"
              "gsetup_fonts: unable to load font list file: missing.fnl\n"
              "gsetup_fonts: missing.fnl: No such file or directory\n");
}

TEST_F(FontList, StrokesStandInForWhatCannotBeLoaded) {
    // Without a window there are no fonts of the server's.
    RES_put("font_list", "#9x15,wide.fnt,#fixed");
    testing::internal::CaptureStderr();
    gsetup_fonts();
    EXPECT_EQ(loaded(), 10);
    EXPECT_EQ(gload_font(2), 0);
    EXPECT_EQ(loaded(), 90);
    for (const int font : {1, 3, 1}) EXPECT_EQ(gload_font(font), 0);
    EXPECT_EQ(loaded(), 10);
    // Nor is there the package's own: any of the list.
    fs::remove(directory_ / "modern.fnt");
    gsetup_fonts();
    EXPECT_EQ(loaded(), 90);
    fs::remove(directory_ / "wide.fnt");
    gsetup_fonts();
    EXPECT_EQ(gload_font(1), -1);
    EXPECT_EQ(loaded(), 0);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.substr(0, told.find("modern.fnt")), "read_font: unable to load font: 9x15\n"
                                                       "read_font: unable to load font: fixed\n"
                                                       "read_font: unable to load font: 9x15\n"
                                                       "read_font: ");
}

// The fonts that come with the program: complete, and capitals exactly one character height tall.
TEST(ShippedFonts, AreWhole) {
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
    RES_put("font_list", "");
    gsetup_fonts();
    ASSERT_EQ(gget_font_index("heavy"), 2);
    for (int index = 1; index <= gget_font_index("gothic"); ++index) {
        ASSERT_EQ(gload_font(index), 0);
        const StrokeFont &font = current_stroke_font();
        for (std::uint8_t c = '!'; c <= '~'; ++c) {
            if (std::toupper(c) > 'X' && index == gget_font_index("greek") && std::isalpha(c))
                continue; // an alphabet of 24 letters
            ASSERT_TRUE(font.has_glyph(c)) << index << ' ' << c;
            EXPECT_GT(font.advance[c], 15) << index << ' ' << c;
        }
        int lowest = 255, highest = 0;
        for (auto at = static_cast<std::size_t>(font.start['H']); font.data[at] != StrokeFont::kGlyphEnd;
             at += 2) {
            lowest = std::min<int>(lowest, font.data[at + 1]);
            highest = std::max<int>(highest, font.data[at + 1]);
        }
        if (index != gget_font_index("gothic")) { // black letter has no straight H
            EXPECT_EQ(lowest, 35) << index;
            EXPECT_EQ(highest, 140) << index;
        }
    }
}

} // namespace
