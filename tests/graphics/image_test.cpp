// The writers of image files, looked at byte by byte and by other programs.

#include <cmath>

#include <sys/wait.h>
#include <unistd.h>

#include "graphics/image_fixture.h"
#include "graphics/images/animated_gif.h"
#include "graphics/images/formats.h"
#include "graphics/images/gif_format.h"
#include "graphics/images/palette.h"
#include "image_facts.h"
#include "lib/system/calendar.h"

namespace {

/// Colours in uneven areas, `count` of them at most.
Paint mosaic(std::uint32_t count) {
    return [count](int x, int y) {
        const auto cell = static_cast<std::uint32_t>(x / 3 * 7 + y / 2 * 13 + x * y / 50);
        return cell % count * 0x010905U + 0x102030U;
    };
}

/// Every pixel its own way: hard to compress, so that the string table fills up and is cleared.
Paint noise(std::uint32_t count) {
    return [count](int x, int y) {
        auto n = static_cast<std::uint32_t>(x * 7919 + y * 104729) * 2654435761U;
        return ((n ^ n >> 15) * 2246822519U >> 9) % count * 0x010101U;
    };
}

class ImageTest : public testing::Test {
protected:
    std::string file(const std::string &name) const { return directory_.at(name); }
    /// What netpbm's decoder makes of a file.
    Colors decoded(const std::string &tool, const std::string &path) const {
        return colors_of_pnm(
            output_of(tool + " " + path + " 2>/dev/null | pamdepth 255 2>/dev/null | ppmtoppm"));
    }
    ScratchDir directory_;
};

TEST_F(ImageTest, PixelsOfEveryLayoutBecomeColours) {
    ImageRecord record;
    make_color_picture(record, 2, 1);
    record.data = {0xFF, 0x12, 0x34, 0x56, 0, 0x65, 0x43, 0x21};
    EXPECT_EQ(colors_of(record), (Colors{0x123456, 0x654321}));
    record.byte_order = 0;
    EXPECT_EQ(colors_of(record), (Colors{0x3412FF, 0x436500}));
    record.bits_per_pixel = record.depth = 24;
    EXPECT_EQ(colors_of(record), (Colors{0x3412FF, 0x650056}));

    record.bits_per_pixel = record.depth = 16; // five, six and five bits: all set is full colour
    record.red_mask = 0xF800;
    record.green_mask = 0x07E0;
    record.blue_mask = 0x001F;
    record.data = {0xFF, 0xFF, 0x00, 0xF8, 0, 0, 0, 0};
    EXPECT_EQ(colors_of(record), (Colors{0xFFFFFF, 0xFF0000}));
    record.byte_order = 1;
    EXPECT_EQ(colors_of(record), (Colors{0xFFFFFF, 0x001CC5}));

    record.bits_per_pixel = 32; // ten bits each
    record.depth = 30;
    record.red_mask = 0x3FF00000;
    record.green_mask = 0x000FFC00;
    record.blue_mask = 0x000003FF;
    record.data = {0xFF, 0xF0, 0x00, 0x00, 0x20, 0x0F, 0xFF, 0xFF};
    EXPECT_EQ(colors_of(record), (Colors{0xFF0000, 0x80FFFF}));
    for (const std::uint32_t mask : {0x3FF00000U, 0xF800U, 0xFF00U, 0x7U})
        EXPECT_EQ(MaskField(mask).field(255), mask) << "white is white on the display too";
    ASSERT_EQ(IMG_write(file("p.img"), record, 0), 1);
    EXPECT_TRUE(file_content(file("p.img")).ends_with("\x55\xD4")) << "the mean of the three";

    record.mapped = true;
    record.colors = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    record.bits_per_pixel = record.depth = 4;
    record.data[0] = 0x31;
    EXPECT_EQ(colors_of(record), (Colors{0x0000FF, 0xFF0000}));
    record.bits_per_pixel = record.depth = 1;
    record.data[0] = 0x40;
    EXPECT_EQ(colors_of(record), (Colors{0x000000, 0xFF0000}));
    record.byte_order = 0;
    EXPECT_EQ(colors_of(record), (Colors{0x000000, 0x000000}));
}

TEST_F(ImageTest, PaletteTakesColoursInOrder) {
    ImageRecord record =
        true_color(16, 16, [](int x, int y) { return static_cast<std::uint32_t>(y * 16 + x + 0x100); });
    record.background = 0x100 + 37;
    PaletteImage image = IMG_palette(record);
    ASSERT_EQ(image.colors.size(), 256U);
    EXPECT_EQ(number_of(image.colors[255]), 0x1FFU);
    EXPECT_EQ(image.pixels[255], 255);
    EXPECT_EQ(image.transparent, 37);
    record.background = 7;
    EXPECT_EQ(IMG_palette(record).transparent, 0);

    const PaletteImage padded =
        IMG_palette(bytes_picture(3, 2, [](int x, int) { return static_cast<std::uint32_t>(x + 1); }));
    EXPECT_EQ(padded.colors.size(), 3U); // what lies beyond the width is no picture
    record.data.resize(10);
    EXPECT_EQ(IMG_palette(record).width, 0);
}

TEST_F(ImageTest, MoreColoursThanSlotsSpoilNoOther) {
    // A photograph of 1200 reds above echo of two colours, and one pixel of the background.
    constexpr std::uint32_t kBackground = 0x0000FE;
    ImageRecord record = true_color(60, 40, [](int x, int y) {
        if (x == 59 && y == 39) return kBackground;
        if (y >= 20) return x < 30 ? 0x00FF00U : 0xFFFF00U;
        return 0x400000U + static_cast<std::uint32_t>(y * 60 + x) * 0x1000U;
    });
    record.background = kBackground;
    const PaletteImage image = IMG_palette(record);
    ASSERT_EQ(image.colors.size(), 256U);
    EXPECT_EQ(number_of(image.colors[static_cast<std::size_t>(image.transparent)]), kBackground);
    const Colors wanted = colors_of(record);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const std::uint32_t shown = number_of(image.colors[image.pixels[i]]);
        if (i >= 1200) {
            ASSERT_EQ(shown, wanted[i]) << i;
        }
        const int red = static_cast<int>(shown >> 16) - static_cast<int>(wanted[i] >> 16);
        ASSERT_LE(std::abs(red), 70) << i;
        ASSERT_EQ(shown & 0xFFU, wanted[i] & 0xFFU) << i;
    }
    SKIP_WITHOUT("pngtopnm");
    ASSERT_EQ(PNG_write(file("p.png"), record), 1);
    EXPECT_EQ(decoded("pngtopnm", file("p.png")), wanted);
    ImageRecord back;
    ASSERT_EQ(IMG_read(file("p.png"), back, 0), 1);
    EXPECT_EQ(colors_of(back), wanted);
}

TEST_F(ImageTest, GifOfOneColourHasATableOfTwo) {
    const ImageRecord record = true_color(5, 3, [](int, int) { return 0x336699U; });
    ASSERT_EQ(GIF_write(file("one.gif"), record), 1);
    const std::string gif = file_content(file("one.gif"));
    EXPECT_EQ(gif.substr(0, 13), std::string("GIF89a\5\0\3\0\x80\0\0", 13));
    EXPECT_EQ(gif.substr(13, 6), std::string("\x33\x66\x99\0\0\0", 6));
    EXPECT_EQ(gif.substr(19, 11), std::string(",\0\0\0\0\5\0\3\0\0\2", 11));
    EXPECT_EQ(gif.substr(gif.size() - 2), std::string("\0;", 2));
}

TEST_F(ImageTest, GifTransparencyIsTheSlotOfTheBackground) {
    ImageRecord record = true_color(4, 1, [](int x, int) { return static_cast<std::uint32_t>(x); });
    record.background = 2;
    GIF_transparent(1);
    ASSERT_EQ(GIF_write(file("t.gif"), record), 1);
    EXPECT_EQ(file_content(file("t.gif")).substr(13 + 12, 8), std::string("\x21\xF9\4\1\12\0\2\0", 8));
    record.background = 99;
    ASSERT_EQ(GIF_write(file("t.gif"), record), 1);
    EXPECT_EQ(file_content(file("t.gif"))[13 + 12 + 6], '\0');
    GIF_transparent(0);
}

TEST_F(ImageTest, InterlacedRowsComeInFourPasses) {
    EXPECT_EQ(gif_interlaced_rows(11), (std::vector<int>{0, 8, 4, 2, 6, 10, 1, 3, 5, 7, 9}));
    EXPECT_EQ(gif_interlaced_rows(1), std::vector<int>{0});
}

TEST_F(ImageTest, OtherProgramsReadGifsPixelForPixel) {
    SKIP_WITHOUT("giftopnm");
    struct Case {
        int width, height;
        Paint paint;
    };
    const std::vector<Case> cases{{1, 1, mosaic(1)},      {37, 41, mosaic(2)},   {64, 48, mosaic(5)},
                                  {300, 200, noise(256)}, {200, 301, noise(17)}, {640, 512, mosaic(200)}};
    for (const int interlaced : {0, 1}) {
        GIF_interlace(interlaced);
        for (const Case &c : cases) {
            const ImageRecord record = true_color(c.width, c.height, c.paint, interlaced);
            ASSERT_EQ(GIF_write(file("p.gif"), record), 1);
            EXPECT_EQ(decoded("giftopnm", file("p.gif")), colors_of(record)) << c.width << " " << interlaced;
        }
    }
    GIF_interlace(0);
}

TEST_F(ImageTest, OtherProgramsReadPngsPixelForPixel) {
    SKIP_WITHOUT("pngtopnm");
    for (const std::uint32_t count : {1U, 6U, 250U}) {
        const ImageRecord record = true_color(131, 67, mosaic(count));
        ASSERT_EQ(PNG_write(file("p.png"), record), 1);
        EXPECT_EQ(decoded("pngtopnm", file("p.png")), colors_of(record)) << count;
    }
    if (has_tool("pngcheck")) {
        EXPECT_NE(output_of("pngcheck " + file("p.png")).find("OK"), std::string::npos);
    }
}

TEST_F(ImageTest, PngTellsTitleProgramAndTime) {
    DATE_fix_time(1057257000);
    ImageRecord record = bytes_picture(7, 5, mosaic(9));
    record.mapped = true;
    record.colors.resize(256);
    record.title = "Radar 030704";
    ASSERT_EQ(PNG_write(file("p.png"), record), 1);
    DATE_fix_time(-1);
    const std::string png = file_content(file("p.png"));
    const auto text = [](const char *key, const char *value) {
        return std::string("tEXt") + key + '\0' + value;
    };
    EXPECT_NE(png.find(text("Title", "Radar 030704")), std::string::npos);
    EXPECT_NE(png.find(text("Software", "VYX - Korvane v5.0")), std::string::npos);
    EXPECT_NE(png.find(text("Creation Time", "03 Jul 2003 18:30:00 GMT")), std::string::npos);
    EXPECT_NE(png.find(std::string("\0\0\3\0PLTE", 8)), std::string::npos); // 256 entries
    EXPECT_EQ(png.substr(24, 5), std::string("\10\3\0\0\0", 5));            // 8 bits, palette, not interlaced
}

TEST_F(ImageTest, OtherProgramsReadWindowDumps) {
    SKIP_WITHOUT("xwdtopnm");
    for (const int byte_order : {0, 1}) {
        ImageRecord record = true_color(33, 21, mosaic(300), byte_order);
        record.title = "a title";
        ASSERT_EQ(XWD_write(file("p.xwd"), record), 1);
        EXPECT_EQ(decoded("xwdtopnm", file("p.xwd")), colors_of(record)) << byte_order;
    }
    ImageRecord record =
        bytes_picture(33, 21, [](int x, int y) { return static_cast<std::uint32_t>(x + y); });
    record.mapped = true;
    for (int i = 0; i < 64; ++i)
        record.colors.push_back(color_of_bytes(static_cast<std::uint8_t>(4 * i), 9, 200));
    ASSERT_EQ(XWD_write(file("p.xwd"), record), 1);
    EXPECT_EQ(file_content(file("p.xwd")).size(), 100U + 1 + 64 * 12 + 36 * 21);
    EXPECT_EQ(decoded("xwdtopnm", file("p.xwd")), colors_of(record));
}

TEST_F(ImageTest, PackageFormatLinesAndRows) {
    ImageRecord record =
        bytes_picture(3, 2, [](int x, int y) { return static_cast<std::uint32_t>('a' + 3 * y + x); });
    record.label = "1830Z  4 JUL 03";
    record.title = "two\nlines";
    ASSERT_EQ(IMG_write(file("p.img"), record, 0), 1);
    EXPECT_EQ(file_content(file("p.img")), "VYXIMG\n1830Z  4 JUL 03\ntwo lines\n3 2\nabcdef");

    record.domain = {1, kMissingF, -97, kMissingF, kMissingF, kMissingF, 39, -97, 2.5F, 3, 25, 17};
    ASSERT_EQ(IMG_write(file("p.img"), record, 0), 1); // 24 * 2.5 over 2 steps, 16 * 3 over one
    EXPECT_NE(file_content(file("p.img")).find("\nPS 39.000000 -97.000000 30.000000 48.000000 3 2\nabcdef"),
              std::string::npos);
    record.domain.plon = -90;
    ASSERT_EQ(IMG_write(file("p.img"), record, 0), 1);
    EXPECT_NE(file_content(file("p.img")).find("\nPS:-90.000000 39"), std::string::npos);
    record.domain.proj = 8; // no word for it
    ASSERT_EQ(IMG_write(file("p.img"), record, 0), 1);
    EXPECT_NE(file_content(file("p.img")).find("\n3 2\nabcdef"), std::string::npos);

    const ImageRecord grey = true_color(2, 1, [](int x, int) { return x == 0 ? 0x102030U : 0x0000FFU; });
    ASSERT_EQ(IMG_write(file("p.img"), grey, 1), 1);
    EXPECT_EQ(file_content(file("p.img")), "VYXIMG\n\n\n2 1\n\x20\x55");
}

TEST_F(ImageTest, TenThousandBytesAreOneCompressedStream) {
    const auto streams = [this](int width, int height) {
        EXPECT_EQ(IMG_write(file("z.img"), bytes_picture(width, height, mosaic(9)), 1), 1);
        const std::string content = file_content(file("z.img"));
        EXPECT_EQ(content.substr(0, 8), "VYXIMGZ\n");
        int count = 0;
        for (std::size_t at = content.find("\x78\x9C"); at != std::string::npos;
             at = content.find("\x78\x9C", at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(streams(100, 100), 1);
    EXPECT_EQ(streams(73, 137), 2); // 10001 bytes
}

TEST_F(ImageTest, WritersRefuseWhatTheyCannotWrite) {
    const ImageRecord record = true_color(300, 300, noise(256));
    ImageRecord torn = record;
    torn.data.resize(100);
    using Write = std::function<int(const std::string &, const ImageRecord &)>;
    const std::vector<std::pair<Write, std::string>> writers{
        {GIF_write, "Unable to open GIF file\n"},
        {PNG_write, "Unable to open PNG file\n"},
        {XWD_write, "Unable to open dump file\n"},
        {[](const std::string &path, const ImageRecord &r) { return IMG_write(path, r, 0); },
         "Unable to open: " + directory_.path() + "\n"},
    };
    for (const auto &[write, message] : writers) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(write(directory_.path(), record), 0);
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(told.ends_with(directory_.path() + ": Is a directory\n" + message)) << told;
        testing::internal::CaptureStderr();
        EXPECT_EQ(write(file("torn"), torn), 0);
        EXPECT_EQ(write("/dev/full", record), 0) << message;
        EXPECT_NE(testing::internal::GetCapturedStderr().find("nable to write"), std::string::npos)
            << message;
    }
}

TEST_F(ImageTest, AReaderBesideAWriterSeesWholePicturesOnly) {
    constexpr int rounds = 200;
    const std::string name = file("shown.png");
    ASSERT_EQ(PNG_write(name, true_color(40, 30, noise(256))), 1);
    const pid_t writer = fork();
    if (writer == 0) {
        bool written = true;
        for (int i = 0; i < rounds; ++i)
            written = PNG_write(name, true_color(40 + i, 30, noise(256))) == 1 && written;
        std::_Exit(written ? 0 : 1);
    }
    int status = -1, looks = 0, halves = 0;
    for (; waitpid(writer, &status, WNOHANG) == 0; ++looks) {
        const std::string seen = file_content(name);
        if (!seen.starts_with("\x89PNG") || seen.find("IEND") != seen.size() - 8) ++halves;
    }
    EXPECT_EQ(status, 0);
    EXPECT_GT(looks, rounds / 10);
    EXPECT_EQ(halves, 0) << "of " << looks;
}

class AnimatedGifTest : public ImageTest {
protected:
    /// The frames as another program shows them.
    static std::vector<Colors> shown(const std::string &path) {
        std::vector<Colors> frames;
        if (!output_of("convert " + path + " -coalesce " + path + ".%d.ppm 2>&1").empty()) return frames;
        for (int i = 0;; ++i) {
            const std::string frame = file_content(path + "." + std::to_string(i) + ".ppm");
            if (frame.empty()) return frames;
            frames.push_back(colors_of_pnm(frame));
        }
    }
    /// A box that moves over a still ground.
    static ImageRecord box_at(int left) {
        return true_color(60, 40, [left](int x, int y) {
            return x >= left && x < left + 8 && y > 20 && y < 25 ? 0xFF0000U : mosaic(7)(x, y);
        });
    }
};

TEST_F(AnimatedGifTest, FramesDelaysAndLoop) {
    SKIP_WITHOUT("convert");
    AnimatedGif animation;
    std::vector<Colors> expected;
    for (const int left : {0, 10, 10}) {
        animation.add(box_at(left), 0.25F);
        expected.push_back(colors_of(box_at(left)));
    }
    animation.set_last_delay(1);
    EXPECT_EQ(animation.frames(), 3U);
    ASSERT_EQ(animation.write(file("a.gif")), 1);
    const GifFacts facts = gif_facts(file("a.gif"));
    EXPECT_TRUE(facts.loops);
    EXPECT_EQ(facts.delays, (std::vector<int>{25, 25, 100}));
    EXPECT_EQ(shown(file("a.gif")), expected);
    // The second frame holds the box and where it was, the third next to nothing.
    const std::string gif = file_content(file("a.gif"));
    EXPECT_NE(gif.find(std::string(",\0\0\25\0\22\0\4\0\0", 10)), std::string::npos);
    EXPECT_NE(gif.find(std::string(",\0\0\0\0\1\0\1\0\0", 10)), std::string::npos);
}

TEST_F(AnimatedGifTest, ManyColoursGetTablesOfTheirOwnAndRockingGoesBack) {
    SKIP_WITHOUT("convert");
    AnimatedGif animation;
    animation.rock();
    std::vector<ImageRecord> records{box_at(0), box_at(10)};
    for (std::uint32_t i = 1; i < 3; ++i)
        records.push_back(true_color(60, 40, [i](int x, int y) {
            return static_cast<std::uint32_t>(y / 3 * 15 + x / 4) * 0x010000U + i * 0x000005U;
        }));
    records.push_back(box_at(30));
    std::vector<Colors> expected;
    for (const ImageRecord &record : records) {
        animation.add(record, 1);
        expected.push_back(colors_of(record));
    }
    for (const std::size_t back : {3U, 2U, 1U}) expected.push_back(expected[back]);
    ASSERT_EQ(animation.write(file("a.gif")), 1);
    EXPECT_EQ(shown(file("a.gif")), expected);
}

TEST_F(AnimatedGifTest, RefusesNothingAndDifferentSizes) {
    AnimatedGif animation;
    testing::internal::CaptureStderr();
    EXPECT_EQ(animation.write(file("a.gif")), 0);
    animation.add(true_color(4, 4, mosaic(2)), std::nanf(""));
    EXPECT_EQ(animation.write(file("a.gif")), 1);
    animation.add(true_color(4, 5, mosaic(2)), -1);
    EXPECT_EQ(animation.write(file("a.gif")), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("sizes"), std::string::npos);
}

} // namespace
