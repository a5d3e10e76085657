/// The commands of README and user guide that hold a window: it opens, shows its picture and ends with
/// Return.

#include "app/guide_commands.h"
#include "window/window_program.h"

namespace {

class GuideWindow : public WindowProgram {};

TEST_F(GuideWindow, CommandsWorkAsPrinted) {
    ASSERT_TRUE(enter_guide_directory(files_.path()));
    int ran = 0;
    std::vector<GuideCommand> commands = document_commands(kGuide);
    for (GuideCommand &command : document_commands(kReadme)) commands.push_back(std::move(command));
    for (const GuideCommand &command : commands) {
        if (!command.opens_window()) continue;
        SCOPED_TRACE(command.text);
        stop();
        program_ = std::make_unique<Child>(std::vector<std::string>{"bash", "-c", "exec " + command.text},
                                           files_.at("log"));
        eye_ = std::make_unique<Onlooker>(server_->display());
        ASSERT_TRUE(comes_true([this] { return eye_->window() != 0; }, kDeadline)) << log();
        ASSERT_TRUE(comes_true([this] { return !is_plain(eye_->picture()); }, kDeadline)) << log();
        point_at(200, 200); // windows are opened some way from the corner
        press("Return");    // also while a picture is drawn
        EXPECT_EQ(program_->wait_for_end(kDeadline), 0) << log();
        ++ran;
    }
    EXPECT_GT(ran, 1);
}

} // namespace
