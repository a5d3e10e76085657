/// Every command that the user guide prints does what it says: status 0, and no word of complaint.

#include <gtest/gtest.h>

#include "app/guide_commands.h"
#include "app/program_run.h"

namespace {

/// Chapters from `first` to `last`.
struct Chapters {
    int first, last;
};

class Guide : public testing::TestWithParam<Chapters> {};

TEST_P(Guide, CommandsWorkAsPrinted) {
    ScratchDir dir;
    ASSERT_TRUE(enter_guide_directory(dir.path()));
    unsetenv("DISPLAY");
    int ran = 0;
    for (const GuideBlock &block : guide_blocks()) {
        if (block.chapter < GetParam().first || block.chapter > GetParam().last || block.opens_window())
            continue;
        for (const std::string &command : guide_commands(block)) {
            dir.write("command", command);
            const int status = std::system("bash command </dev/null >out 2>err");
            EXPECT_EQ(status, 0) << command;
            EXPECT_EQ(file_text("err"), "") << command;
            ++ran;
        }
    }
    EXPECT_GT(ran, 3);
}

INSTANTIATE_TEST_SUITE_P(Chapters, Guide,
                         testing::Values(Chapters{1, 4}, Chapters{5, 8}, Chapters{9, 12}, Chapters{13, 99}),
                         [](const auto &chapters) { return "From" + std::to_string(chapters.param.first); });

} // namespace
