/// Alt-m in a real window: the metafile that it writes, read back, is the picture that is seen.

#include "graphics/devices/memory/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/metafile_reader.h"
#include "lib/resources/database.h"
#include "window/window_program.h"

namespace {

class MetafileKey : public WindowProgram {
protected:
    void SetUp() override {
        setenv("METAOUT", name_.c_str(), 1);
        WindowProgram::SetUp();
    }
    void TearDown() override {
        unsetenv("METAOUT");
        WindowProgram::TearDown();
    }
    /// The text that Alt-m writes.
    std::string written() {
        const std::size_t before = count_of("Created metafile");
        press("alt+m");
        EXPECT_TRUE(comes_true([&] { return count_of("Created metafile") > before; }, kDeadline)) << log();
        return files_.read("seen.meta");
    }
    /// The file's picture on a raster of the process's own.
    [[nodiscard]] Picture drawn() const {
        RES_put("file_path", kData);
        RES_put("geometry", "");
        gset_win_size(kWidth, kHeight);
        (void)gopen_gks("", 0);
        EXPECT_EQ(gopen_ws(1, "memory", DeviceKind::win), 0);
        GPH_set_maxview(1);
        EXPECT_EQ(gread_metafile(name_), 0);
        RasterImage image;
        EXPECT_TRUE(gmem_read(gmem_base(), image));
        Picture result{image.width, image.height, {}};
        const auto *pixel = reinterpret_cast<const std::uint32_t *>(image.data.data());
        result.colors.assign(pixel, pixel + image.width * image.height);
        (void)gclose_ws(1);
        gclose_gks();
        return result;
    }
    void expect_written_as_seen(const Picture &seen) {
        const std::string text = written();
        EXPECT_TRUE(text.starts_with("VYXMETA\n#Title: VYX Graphics Display: My_radar\n"));
        const Picture read = drawn();
        ASSERT_EQ(read.colors.size(), seen.colors.size());
        std::size_t different = 0;
        for (std::size_t i = 0; i < read.colors.size(); ++i)
            different += read.colors[i] != seen.colors[i] ? 1U : 0U;
        // Six decimals move a point that lies between two pixels.
        EXPECT_LT(different, 20U);
    }
    [[nodiscard]] std::size_t count_of(std::string_view words) const {
        std::size_t count = 0;
        const std::string text = log();
        for (std::size_t at = text.find(words); at != text.npos; at = text.find(words, at + 1)) ++count;
        return count;
    }
    const std::string name_ = files_.at("seen.meta");
};

TEST_F(MetafileKey, WritesThePictureThatIsSeen) {
    const std::vector<std::string> rings{"-pp", "site,dist=30:60", "-mf", "lalo:1"};
    const Picture first = start_picture(rings);
    expect_written_as_seen(first);
    press("alt+r"); // what was set for the first picture is in force, and is not set again
    expect_written_as_seen(settled({}));
    act(at(200, 150) + "keydown shift mousedown 1");
    act(at(420, 330) + "mouseup 1 keyup shift");
    const Picture box = settled(first);
    expect_written_as_seen(box);
    eye_->resize(kWidth, kHeight - 100);
    const Picture low = settled(box);
    EXPECT_NE(written().find("WS_WIN 1 0.000000 0.000000 1.000000 0.64"), std::string::npos);
    EXPECT_EQ(end("Return"), 0);
}

TEST_F(MetafileKey, TellsWhenThereIsNothingToWrite) {
    start_loop(2);
    press("alt+m");
    EXPECT_TRUE(comes_true([&] { return said("gobj_print_meta: No redraw data to make metafile from\n"); },
                           kDeadline));
    EXPECT_EQ(end("Return"), 0);
    start_picture({"-pp", "noredraw"});
    press("alt+m");
    EXPECT_TRUE(comes_true([&] { return said("gobj_print_meta: No redraw data to make metafile from\n"); },
                           kDeadline));
    EXPECT_EQ(end("Return"), 0);
}

TEST_F(MetafileKey, TellsWhenItCannotWrite) {
    setenv("METAOUT", "/dev/full", 1);
    start_picture();
    press("alt+m");
    EXPECT_TRUE(
        comes_true([&] { return said("gprint_meta: Error writing metafile: /dev/full: "); }, kDeadline))
        << log();
    EXPECT_EQ(end("Return"), 0) << "the window stays, and so does its picture";
    setenv("METAOUT", files_.at("no/such").c_str(), 1);
    files_.write("no", "a file");
    start_picture();
    press("alt+m");
    EXPECT_TRUE(comes_true([&] { return said("gprint_meta: unable to open metafile\n"); }, kDeadline))
        << log();
    EXPECT_EQ(end("Return"), 0);
}

} // namespace
