/// Every command that README and user guide print does what it says: status 0, and no word of complaint.

#include <gtest/gtest.h>

#include "app/guide_commands.h"
#include "app/program_run.h"

namespace {

/// Chapters from `first` to `last` of a document.
struct Chapters {
    const char *document;
    int first, last;
};

class Guide : public testing::TestWithParam<Chapters> {};

TEST_P(Guide, CommandsWorkAsPrinted) {
    ScratchDir dir;
    ASSERT_TRUE(enter_guide_directory(dir.path()));
    unsetenv("DISPLAY");
    int ran = 0;
    for (const GuideCommand &command : document_commands(GetParam().document)) {
        const bool asked = command.chapter >= GetParam().first && command.chapter <= GetParam().last;
        if (!asked || command.opens_window()) continue;
        dir.write("command", command.text);
        const int status = std::system("bash command </dev/null >out 2>err");
        EXPECT_EQ(status, 0) << command.text;
        EXPECT_EQ(file_text("err"), "") << command.text;
        ++ran;
    }
    EXPECT_GT(ran, 3);
}

// Chapter 0 of the guide makes program and samples.
INSTANTIATE_TEST_SUITE_P(Chapters, Guide,
                         testing::Values(Chapters{kReadme, 0, 0}, Chapters{kGuide, 1, 4},
                                         Chapters{kGuide, 5, 8}, Chapters{kGuide, 9, 12},
                                         Chapters{kGuide, 13, 99}),
                         [](const auto &chapters) { return "From" + std::to_string(chapters.param.first); });

} // namespace
