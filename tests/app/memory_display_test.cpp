// Pictures of the whole program without a window.

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "app/child_process.h"
#include "app/sample_series.h"
#include "image_facts.h"
#include "lib/scratch_dir.h"
#include "plot/session/images.h"

namespace {

class MemoryDisplay : public testing::Test {
protected:
    void SetUp() override { series_ = write_series(files_, 3); }

    int run(const std::vector<std::string> &options, int files) {
        std::vector<std::string> all{VYX_PROGRAM, "-ba", "-inp", "nids",        "-de", "d,memory",
                                     "-fp",       kData, "-ip",  files_.path(), "-ge", "640x512"};
        all.insert(all.end(), options.begin(), options.end());
        all.insert(all.end(), series_.begin(), series_.begin() + files);
        Child child(all, files_.at("log"));
        return child.wait_for_end(std::chrono::seconds(60));
    }
    std::string log() const {
        std::ifstream in(files_.at("log"));
        return {std::istreambuf_iterator<char>(in), {}};
    }

    ScratchDir files_;
    std::vector<std::string> series_;
};

TEST_F(MemoryDisplay, APictureHasTheSizeOfTheGeometry) {
    EXPECT_EQ(run({"-pp", "png=x.png"}, 1), 0) << log();
    EXPECT_EQ(png_size(files_.at("x.png")), (PictureSize{640, 512}));
}

TEST_F(MemoryDisplay, ASeriesWritesAFileForEachFrameAndOneLoop) {
    EXPECT_EQ(run({"-pp", "gif=f%i.gif,anim=loop.gif"}, 3), 0) << log();
    for (const auto *name : {"f00.gif", "f01.gif", "f02.gif"})
        EXPECT_EQ(gif_facts(files_.at(name)).size, (PictureSize{640, 512})) << name;
    const GifFacts loop = gif_facts(files_.at("loop.gif"));
    EXPECT_EQ(loop.pictures, 3);
    EXPECT_TRUE(loop.loops);
    EXPECT_EQ(loop.delays, (std::vector<int>{50, 50, 100}));
}

TEST_F(MemoryDisplay, ASeriesInTimeWritesEveryPicture) {
    EXPECT_EQ(run({"-if", "nids:s=KLSX:p=N0R", "-dp", files_.path(), "-nh", "0:10,0:05", "-ti", "title",
                   "-pp", "png=%p_%i.png"},
                  1),
              0)
        << log();
    for (const auto *name : {"title_00.png", "title_01.png", "title_02.png"})
        EXPECT_EQ(png_size(files_.at(name)), (PictureSize{640, 512})) << name << log();
}

/// A name without the frame's number gets it before its suffix; a dot of the folder begins none.
TEST_F(MemoryDisplay, TheNumberOfAFrameJoinsTheNameOfItsFile) {
    namespace fs = std::filesystem;
    for (const std::string folder : {"pictures", "pictures.d"}) {
        const fs::path place = files_.at(folder);
        fs::create_directory(place);
        for (const std::string suffix : {"", ".png"}) {
            EXPECT_EQ(run({"-pp", "png=/" + (place.string() + "/storm" + suffix).substr(1)}, 3), 0) << log();
            for (const auto *number : {"", "-01", "-02"}) {
                const std::string name = (place / ("storm" + std::string(number) + suffix)).string();
                EXPECT_EQ(png_size(name), (PictureSize{640, 512})) << name << log();
            }
        }
    }
}

TEST_F(MemoryDisplay, APictureThatCannotBeWrittenFailsTheRun) {
    EXPECT_EQ(run({"-pp", "png=/dev/full/x.png"}, 1), 1);
    EXPECT_NE(log().find("PLT_dump: Unable to write PNG file: /dev/full/x.png\n"), std::string::npos)
        << log();
}

} // namespace
