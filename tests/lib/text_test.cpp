#include "lib/text/strings.h"

#include <array>
#include <cstdint>

#include <gtest/gtest.h>

#include "lib/text/byte_reader.h"
#include "lib/text/scan.h"

using Items = std::vector<std::string>;

TEST(Text, SplittingKeepsInnerGapsAndDropsTrailingDelimiters) {
    EXPECT_EQ(parse_string("a,,b,,", ','), (Items{"a", "", "b"}));
    EXPECT_EQ(parse_string(",a", ','), (Items{"", "a"}));
    EXPECT_EQ(parse_string("one", ','), (Items{"one"}));
    EXPECT_TRUE(parse_string("", ',').empty());
    EXPECT_TRUE(parse_string(",,", ',').empty());
}

TEST(Text, ComparingIgnoresCaseAndNeedsTheWholeKey) {
    EXPECT_EQ(stricmp("NiDs", "nIdS"), 0);
    EXPECT_LT(stricmp("nid", "NIDS"), 0);
    EXPECT_GT(stricmp("b", "A"), 0);
    EXPECT_GT(stricmp("\xE9", "z"), 0) << "characters compare as unsigned";
    EXPECT_EQ(strnicmp("CVTfile", "cvt", 3), 0);
    EXPECT_NE(strnicmp("cv", "cvt", 3), 0);
    EXPECT_TRUE(begins_with("Latest", "la"));
    EXPECT_FALSE(begins_with("l", "la"));
}

TEST(Text, TrimmingAndReplacing) {
    std::string line = "two\r\n words \t \r\n  ";
    wstrim_string(line);
    EXPECT_EQ(line, "two words \t") << "line ends go everywhere, trailing blanks only, tabs stay";
    std::string blank = "  \n";
    wstrim_string(blank);
    EXPECT_EQ(blank, "");
    EXPECT_EQ(trimmed("\t a b \r\n"), "a b");
    EXPECT_EQ(trimmed(" \t"), "");
    std::string name = "new york city";
    fill_string(name, ' ', '_');
    EXPECT_EQ(name, "new_york_city");
}

TEST(Text, FormattingGrowsWithTheText) {
    const std::string longer(1000, 'x');
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{126}, std::size_t{127}, std::size_t{128}, longer.size()})
        EXPECT_EQ(format_text("%s", longer.substr(0, length).c_str()).size(), length);
}

TEST(Text, LabelNumbers) {
    struct Row {
        float value;
        int significant, decimals;
        const char *text;
    };
    for (const Row &row :
         {Row{0.25F, 2, 0, "0.25"}, Row{10, 2, 0, "10"}, Row{-31.5F, 2, 0, "-32"}, Row{9.96F, 2, 0, "10"},
          Row{0.5F, 2, 0, "0.5"}, Row{0.0996F, 2, 0, "0.1"}, Row{1234, 2, 0, "1234"}, Row{3, 2, 2, "3.00"},
          Row{0, 2, 0, "0"}, Row{-0.0F, 2, 1, "0.0"}, Row{-0.04F, 1, 0, "-0.04"}, Row{2.5F, 0, 0, "2"}})
        EXPECT_EQ(set_num(row.value, row.significant, row.decimals), row.text);
    EXPECT_LE(set_num(3e38F, 9, -5).size(), 39U);
    EXPECT_LE(set_num(1e-45F, 1000, 1000).size(), 160U);
}

TEST(Scanner, NumbersOfFixedWidth) {
    Scanner date("200307041830");
    EXPECT_EQ(date.integer(4), 2003);
    EXPECT_EQ(date.integer(2), 7);
    EXPECT_EQ(date.integer(2), 4);
    EXPECT_EQ(date.rest(), "1830");

    Scanner blanks(" \t 4 -12+3");
    EXPECT_EQ(blanks.integer(2), 4) << "skipped blanks do not count for the width";
    EXPECT_EQ(blanks.integer(2), -1) << "a sign counts";
    EXPECT_EQ(blanks.integer(), 2);
    EXPECT_EQ(blanks.integer(), 3);
    EXPECT_TRUE(blanks.at_end());

    for (const char *text : {"", " ", "-", "x1", "- 1", "+-1"}) EXPECT_FALSE(Scanner(text).integer()) << text;
    EXPECT_FALSE(Scanner("-5").integer(1));
}

TEST(Scanner, AbsurdNumbersStayInRange) {
    EXPECT_EQ(Scanner("99999999999999999999").integer(), INT32_MAX);
    EXPECT_EQ(Scanner("-2147483649").integer(), INT32_MIN);
    EXPECT_EQ(Scanner("9223372036854775808").long_integer(), INT64_MAX);
    EXPECT_EQ(Scanner("-9223372036854775808").long_integer(), INT64_MIN);
    EXPECT_EQ(Scanner("-99999999999999999999").long_integer(), INT64_MIN);
    EXPECT_EQ(Scanner("9223372036854775807").long_integer(), INT64_MAX);
}

TEST(Scanner, RealNumbers) {
    EXPECT_EQ(Scanner(" -5.5").real(), -5.5F);
    EXPECT_EQ(Scanner("+.25e1").real(), 2.5F);
    EXPECT_EQ(Scanner("1e-400").real(), 0.0F);
    EXPECT_EQ(Scanner("-1e400").real(), -3.40282347e38F);
    for (const char *text : {"nan", "inf", "-inf", ".", "-", "e5", "+-1", ""})
        EXPECT_FALSE(Scanner(text).real()) << text;
    Scanner unit("12km");
    EXPECT_EQ(unit.real(), 12.0F);
    EXPECT_EQ(unit.rest(), "km");
}

TEST(Scanner, AMismatchFailsEverythingBehindIt) {
    Scanner scanner("ab:c 7");
    EXPECT_EQ(scanner.until(":", 4), "ab");
    EXPECT_TRUE(scanner.literal(':'));
    EXPECT_EQ(scanner.word(3), "c");
    EXPECT_FALSE(scanner.literal('7')) << "a literal skips no blanks";
    EXPECT_FALSE(scanner.integer());
    EXPECT_TRUE(scanner.failed());
    EXPECT_FALSE(Scanner(":x").until(":"));
    EXPECT_FALSE(Scanner("  ").word());
}

TEST(ByteReader, ReadsBigEndianAndNeverLeavesItsBytes) {
    constexpr std::array<unsigned char, 12> raw{0xFF, 0xFE, 0x80, 0, 0, 1, 0x41, 0x20, 0, 0, 7, 8};
    ByteReader reader(std::as_bytes(std::span(raw)), 100);
    EXPECT_EQ(reader.i16(), -2);
    EXPECT_EQ(reader.i32(), INT32_MIN + 1);
    EXPECT_EQ(reader.f32(), 10.0F);
    EXPECT_EQ(reader.offset(), 110U);
    EXPECT_EQ(reader.peek(3).size(), 0U);
    EXPECT_FALSE(reader.failed()) << "peeking too far is no failure";
    EXPECT_EQ(reader.u32(), 0U);
    EXPECT_TRUE(reader.failed());
    EXPECT_EQ(reader.remaining(), 2U) << "a failed read does not move";
    EXPECT_EQ(reader.u16(), 0x0708) << "what is there can still be read";
    EXPECT_TRUE(reader.failed()) << "failure is remembered";
}

TEST(ByteReader, BlocksAndSeeks) {
    const std::array<unsigned char, 6> raw{1, 2, 3, 4, 5, 6};
    ByteReader reader(std::as_bytes(std::span(raw)), 10);
    reader.u8();
    ByteReader block = reader.block(3);
    EXPECT_EQ(block.offset(), 11U);
    EXPECT_EQ(block.take(4).size(), 0U);
    EXPECT_TRUE(block.failed());
    EXPECT_FALSE(reader.failed()) << "a block that runs out leaves its parent alone";
    EXPECT_EQ(reader.u8(), 5);
    EXPECT_TRUE(reader.seek(6));
    EXPECT_TRUE(reader.seek(0));
    EXPECT_FALSE(reader.seek(7));
    EXPECT_EQ(reader.offset(), 10U);
    EXPECT_TRUE(reader.block(SIZE_MAX).failed());
}
