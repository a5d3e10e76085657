// The readers of image files: what the writers made, what other programs made, and damaged files.

#include <random>

#include "graphics/image_fixture.h"
#include "graphics/images/formats.h"
#include "graphics/images/gif_format.h"

namespace {

Paint stripes(std::uint32_t count) {
    return [count](int x, int y) { return static_cast<std::uint32_t>(x + 2 * y) % count; };
}

ImageRecord mapped_picture(int width, int height, std::uint32_t count) {
    ImageRecord record = bytes_picture(width, height, stripes(count));
    record.mapped = true;
    for (std::uint32_t i = 0; i < count; ++i)
        record.colors.push_back(
            color_of_bytes(static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(255 - i), 77));
    return record;
}

class ImageReadTest : public testing::Test {
protected:
    std::string file(const std::string &name) const { return directory_.at(name); }
    static ImageRecord read(const std::string &path) {
        ImageRecord record;
        EXPECT_EQ(IMG_read(path, record, 0), 1) << path;
        return record;
    }
    /// Reads bytes that must be refused with a message that holds `part`; "" for any.
    void refuse(const std::string &bytes, const std::string &part) const {
        const std::string path = directory_.write("bad", bytes);
        ImageRecord record;
        testing::internal::CaptureStderr();
        EXPECT_EQ(IMG_read(path, record, 0), 0) << bytes.size() << " bytes";
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(message.empty());
        EXPECT_NE(message.find(part), std::string::npos) << message;
        EXPECT_EQ(record.width, 0);
        EXPECT_TRUE(record.data.empty());
    }
    /// A good file cut at every byte before its last `spare` ones is refused each time.
    void refuse_every_cut(const std::string &bytes, std::size_t spare) const {
        for (std::size_t size = 0; size + spare < bytes.size() && !HasFailure(); ++size)
            refuse(bytes.substr(0, size), "");
    }
    /// A file that another program makes.
    std::string made_by(const std::string &script, const std::string &name) const {
        const std::string path = directory_.write("make.py", "import sys\nfrom PIL import Image\n" + script);
        output_of("/usr/bin/python3 " + path + " " + file(name));
        return file(name);
    }
    ScratchDir directory_;
};

TEST_F(ImageReadTest, RoundTripsOfEveryFormat) {
    for (const std::uint32_t count : {1U, 2U, 30U, 85U}) {
        const ImageRecord record = mapped_picture(41, 29, count);
        for (const int interlaced : {0, 1}) {
            GIF_interlace(interlaced);
            ASSERT_EQ(GIF_write(file("r.gif"), record), 1);
            EXPECT_EQ(colors_of(read(file("r.gif"))), colors_of(record)) << count;
        }
        GIF_interlace(0);
        ASSERT_EQ(PNG_write(file("r.png"), record), 1);
        const ImageRecord png = read(file("r.png"));
        EXPECT_TRUE(png.mapped);
        EXPECT_EQ(png.bits_per_pixel, 8);
        EXPECT_EQ(colors_of(png), colors_of(record)) << count;
        ASSERT_EQ(XWD_write(file("r.xwd"), record), 1);
        EXPECT_EQ(colors_of(read(file("r.xwd"))), colors_of(record)) << count;
    }
}

TEST_F(ImageReadTest, WindowDumpsOfEveryLayout) {
    for (const int order : {0, 1})
        for (const int bits : {16, 24, 32}) {
            ImageRecord record = true_color(
                12, 5, [](int x, int y) { return static_cast<std::uint32_t>(x * 0x081010 + y * 0x20); },
                order);
            record.bits_per_pixel = record.depth = bits;
            record.title = "the window";
            if (bits == 16) {
                record.red_mask = 0xF800;
                record.green_mask = 0x07E0;
                record.blue_mask = 0x001F;
            }
            ASSERT_EQ(XWD_write(file("r.xwd"), record), 1);
            const ImageRecord again = read(file("r.xwd"));
            EXPECT_EQ(again.title, record.title);
            EXPECT_EQ(again.data, record.data);
            EXPECT_EQ(colors_of(again), colors_of(record)) << bits << " " << order;
        }
}

TEST_F(ImageReadTest, PackageFormatWithDomain) {
    ImageRecord record = bytes_picture(101, 103, stripes(200)); // two pieces
    record.label = "1830Z  4 JUL 03";
    record.title = "Radar [KLSX]";
    record.domain = {4, 40, -97, 33, 45, kMissingF, 39, -96, 0.5F, 0.25F, 101, 103};
    for (const int compress : {0, 1}) {
        ASSERT_EQ(IMG_write(file("r.img"), record, compress), 1);
        const ImageRecord again = read(file("r.img"));
        EXPECT_EQ(again.label, record.label);
        EXPECT_EQ(again.title, record.title);
        EXPECT_EQ(again.date.year, 2003);
        EXPECT_EQ(again.date.hour, 18);
        EXPECT_EQ(colors_of(again), colors_of(record));
        EXPECT_EQ(again.domain.proj, 4);
        EXPECT_FLOAT_EQ(again.domain.plat, 40);
        EXPECT_FLOAT_EQ(again.domain.plon, -97);
        EXPECT_FLOAT_EQ(again.domain.p4, 45);
        EXPECT_FLOAT_EQ(again.domain.p5, kMissingF);
        EXPECT_FLOAT_EQ(again.domain.dy, 0.25F);
        EXPECT_EQ(again.domain.ny, 103);
    }
}

TEST_F(ImageReadTest, GifWhoseCodesRunOut) {
    ImageRecord record = mapped_picture(200, 150, 85);
    std::mt19937 random(3);
    for (std::uint8_t &pixel : record.data) pixel = static_cast<std::uint8_t>(random() % 85);
    ASSERT_EQ(GIF_write(file("n.gif"), record), 1);
    EXPECT_EQ(colors_of(read(file("n.gif"))), colors_of(record));
}

TEST_F(ImageReadTest, GifBehindACommentLine) {
    const ImageRecord record = mapped_picture(9, 9, 4);
    ASSERT_EQ(GIF_write(file("r.gif"), record), 1);
    const std::string gif = file_content(file("r.gif"));
    EXPECT_EQ(colors_of(read(directory_.write("c.gif", "** a line\n" + gif))), colors_of(record));
    refuse("** a line without end", "XWD_read");
}

TEST_F(ImageReadTest, GifWithLocalTableOffsetAndTransparency) {
    std::string gif = "GIF87a";
    gif_put_u16(gif, 4);
    gif_put_u16(gif, 2);
    gif += std::string("\0\0\0", 3); // no global table
    gif += std::string("\x21\xFE\3abc\0", 7);
    gif_put_control(gif, 0, 10, 1);
    gif += std::string(",\1\0\1\0\2\0\1\0\x80", 10); // 2 x 1 at (1, 1), two local colours
    gif += std::string("\xFF\0\0\0\0\xFF\2", 7);
    gif_compress(gif, 2, std::vector<std::uint8_t>{0, 1});
    gif += std::string("\0;", 2);
    const ImageRecord record = read(directory_.write("l.gif", gif));
    EXPECT_EQ(record.width, 4);
    EXPECT_EQ(record.background, 1);
    EXPECT_EQ(record.data, (std::vector<std::uint8_t>{1, 1, 1, 1, 1, 0, 1, 1}));
    EXPECT_EQ(number_of(record.colors[0]), 0xFF0000U);
}

TEST_F(ImageReadTest, PngsOfOtherPrograms) {
    if (std::system("/usr/bin/python3 -c 'import PIL' 2>/dev/null") != 0) GTEST_SKIP() << "no other writer";
    const auto number = [](const ImageRecord &record, int x, int y) {
        return colors_of(record)[static_cast<std::size_t>(y * record.width + x)];
    };
    const std::string paint = "for y in range(i.height):\n for x in range(i.width): i.putpixel((x, y), ";
    ImageRecord record = read(
        made_by("i=Image.new('RGB',(20,30))\n" + paint + "(x, y, x*y%256))\ni.save(sys.argv[1])", "rgb.png"));
    EXPECT_FALSE(record.mapped);
    EXPECT_EQ(number(record, 13, 21), 0x0D1511U);
    EXPECT_EQ(record.background, -1);

    record =
        read(made_by("i=Image.new('L',(20,30))\n" + paint + "x*y%256)\ni.save(sys.argv[1])", "grey.png"));
    EXPECT_TRUE(record.mapped);
    EXPECT_EQ(number(record, 13, 21), 0x111111U);

    record = read(made_by("i=Image.new('1',(20,30))\n" + paint + "x%2)\ni.save(sys.argv[1])", "bit.png"));
    EXPECT_EQ(number(record, 13, 21), 0xFFFFFFU);
    EXPECT_EQ(number(record, 12, 21), 0x000000U);

    record =
        read(made_by("i=Image.new('I;16',(20,30))\n" + paint + "x*1000+y)\ni.save(sys.argv[1])", "deep.png"));
    EXPECT_EQ(number(record, 13, 21), 0x333333U); // 13021 / 65535

    record = read(made_by(
        "i=Image.new('RGBA',(20,30))\n" + paint + "(x, 0, y, 255*(x%2)))\ni.save(sys.argv[1])", "alpha.png"));
    EXPECT_EQ(number(record, 13, 21), 0x0D0015U);
    ASSERT_GE(record.background, 0);
    EXPECT_EQ(number(record, 12, 21), static_cast<std::uint32_t>(record.background));
    EXPECT_NE(number(record, 13, 0), static_cast<std::uint32_t>(record.background));

    record = read(made_by("i=Image.new('P',(20,30))\ni.putpalette([9,9,9, 50,60,70, 1,2,3])\n" + paint +
                              "x%3)\ni.save(sys.argv[1], transparency=1)",
                          "slot.png"));
    EXPECT_EQ(record.background, 1);
    EXPECT_EQ(number(record, 2, 0), 0x010203U);
}

TEST_F(ImageReadTest, InterlacedPng) {
    SKIP_WITHOUT("pnmtopng");
    const ImageRecord record = mapped_picture(43, 31, 60);
    ASSERT_EQ(PNG_write(file("r.png"), record), 1);
    ASSERT_EQ(std::system(("pngtopnm " + file("r.png") + " | pnmtopng -interlace >" + file("i.png")).c_str()),
              0);
    EXPECT_EQ(file_content(file("i.png"))[28], '\1');
    EXPECT_EQ(colors_of(read(file("i.png"))), colors_of(record));
}

TEST_F(ImageReadTest, CutFilesAreRefused) {
    const ImageRecord record = mapped_picture(13, 9, 20);
    ASSERT_EQ(GIF_write(file("c.gif"), record), 1);
    refuse_every_cut(file_content(file("c.gif")), 1); // all but the trailer is there
    ASSERT_EQ(PNG_write(file("c.png"), record), 1);
    refuse_every_cut(file_content(file("c.png")), 0);
    ASSERT_EQ(XWD_write(file("c.xwd"), record), 1);
    refuse_every_cut(file_content(file("c.xwd")), 0);
    for (const int compress : {0, 1}) {
        ImageRecord plain = bytes_picture(23, 19, stripes(50));
        plain.domain = {2, kMissingF, kMissingF, kMissingF, kMissingF, kMissingF, 39, -96, 1, 1, 23, 19};
        ASSERT_EQ(IMG_write(file("c.img"), plain, compress), 1);
        refuse_every_cut(file_content(file("c.img")), 0);
    }
}

TEST_F(ImageReadTest, DamagedGifs) {
    ASSERT_EQ(GIF_write(file("d.gif"), mapped_picture(13, 9, 3)), 1);
    const std::string gif = file_content(file("d.gif"));
    const std::size_t image = 13 + 4 * 3; // behind header and table
    const auto with = [&](std::size_t at, char byte) {
        std::string changed = gif;
        changed[at] = byte;
        return changed;
    };
    refuse(with(4, '8'), "Unknown version");
    refuse(with(image, 'X'), "Unknown block");
    refuse(with(image, ';'), "No image");
    refuse(with(image + 6, '\x7F'), "Truncated image"); // wide: too few pixels
    refuse(with(image + 10, '\14'), "Invalid code size");
    refuse(with(image + 12, '\xFF'), "Invalid code"); // first code is none that can come first
    std::string huge = with(image + 6, '\xFF');
    huge[image + 8] = '\xFF';
    refuse(huge, "Invalid size");

    std::string index = gif.substr(0, image); // an index behind the table
    gif_put_image(index, {0, 0, 2, 1}, false, 3, std::vector<std::uint8_t>{0, 5});
    refuse(index + ";", "Invalid colour index");
}

TEST_F(ImageReadTest, DamagedOthers) {
    refuse("", "XWD_read");
    refuse("VYXIMG4\n\n\n2 2\nabcd", "Unknown layout");
    refuse("VYXIMG\n\n\n0 2\nabcd", "Invalid size");
    refuse("VYXIMG\n\n\n99999999999 2\nabcd", "Invalid size");
    refuse("VYXIMG\n\n\nQQ 1 2 3 4 2 2\nabcd", "domain");
    refuse("VYXIMG\n\n\n-1 -1\n", "Invalid size");
    refuse("VYXIMGZ\n\n\n20000 5000\nabcd", "Truncated");
    refuse("VYXIMGZ\n\n\n2 2\nabcd", "Damaged");

    ASSERT_EQ(XWD_write(file("d.xwd"), mapped_picture(13, 9, 20)), 1);
    const std::string xwd = file_content(file("d.xwd"));
    const auto with_word = [&](std::size_t index, std::uint32_t value) {
        std::string changed = xwd;
        for (std::size_t i = 0; i < 4; ++i) changed[4 * index + i] = static_cast<char>(value >> (24 - 8 * i));
        return changed;
    };
    refuse(with_word(0, 0xFFFFFFFF), "header size");
    refuse(with_word(1, 6), "version");
    refuse(with_word(2, 0), "pixmap format");
    refuse(with_word(4, 0x80000000), "Invalid size");
    refuse(with_word(5, 32768), "Invalid size");
    refuse(with_word(11, 7), "bits per pixel");
    refuse(with_word(12, 12), "bytes per line");
    refuse(with_word(19, 0xFFFFFFFF), "number of colours");
    refuse(with_word(19, 5), "index");

    ASSERT_EQ(PNG_write(file("d.png"), mapped_picture(13, 9, 20)), 1);
    std::string png = file_content(file("d.png"));
    png[60] ^= 1; // in the colour table
    refuse(png, "PNG_read");
    testing::internal::CaptureStderr();
    ImageRecord record;
    EXPECT_EQ(gread_image_file(file("none"), record), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "IMG_read: Unable to open image file: " + file("none") +
                                                          "\nIMG_read: " + file("none") +
                                                          ": No such file or directory\n");
}

} // namespace
