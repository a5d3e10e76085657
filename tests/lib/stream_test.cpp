#include "lib/system/stream.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "lib/files/kept_input.h"
#include "lib/scratch_dir.h"

namespace {

Stream open_allowed(const char *command, const char *mode) {
    FILE_allow_command(command);
    return FILE_open(command, mode);
}

} // namespace

TEST(Stream, ReadsLinesAndBytesOfFilesAndPipes) {
    const ScratchDir dir;
    const std::string name = dir.write("lines", "one\r\n\ntwo\nlast");
    Stream file = FILE_open(name, "r");
    std::string line;
    std::vector<std::string> lines;
    while (file.get_line(line)) lines.push_back(line);
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "two", "last"}));
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.get_line(line));

    EXPECT_EQ(FILE_open(name, "rb").read_all(4).size(), 4U);
    EXPECT_EQ(FILE_open(name, "rb").read_all(1000).size(), 14U);

    Stream pipe = open_allowed("|echo piped", "r");
    ASSERT_EQ(pipe.kind(), Stream::Kind::pipe);
    EXPECT_TRUE(pipe.get_line(line));
    EXPECT_EQ(line, "piped");
}

TEST(Stream, InputsAreReadAgainFromTheirFirstByte) {
    const ScratchDir dir;
    std::filesystem::current_path(dir.path());
    const auto text = [](const char *name) {
        std::string all;
        FILE_allow_command(name);
        for (const std::byte byte : FILE_open_input(name).read_all(1000000)) all += static_cast<char>(byte);
        return all;
    };
    const std::string much = "|echo run >> runs; yes | head -c 300000; echo end";
    const std::string first = text(much.c_str());
    EXPECT_EQ(first.size(), 300004U);
    EXPECT_EQ(text(much.c_str()), first);
    Stream one = FILE_open_input(much), other = FILE_open_input(much);
    EXPECT_EQ(one.read_all(10).size(), 10U);
    EXPECT_EQ(other.read_all(1000000).size(), first.size()) << "each has its own place";
    EXPECT_EQ(FILE_size("runs"), 4) << "one run of the command";
    EXPECT_EQ(text("|echo b"), "b\n");
    EXPECT_EQ(text(much.c_str()), first);
    EXPECT_EQ(FILE_size("runs"), 8) << "the command before is forgotten";

    testing::internal::CaptureStderr();
    EXPECT_EQ(text("|echo part; exit 3"), "part\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FILE_open_input: Ended with an error: |echo part; exit 3\n");
    EXPECT_FALSE(FILE_input_is_whole("|echo part; exit 3"));
    EXPECT_FALSE(FILE_open_input("none"));
    ASSERT_EQ(std::system("mkfifo pipe; (echo through > pipe) &"), 0);
    EXPECT_EQ(text("pipe"), "through\n");
    EXPECT_EQ(text("pipe"), "through\n");
    ASSERT_NE(std::freopen(dir.write("input", "standard\n").c_str(), "r", stdin), nullptr);
    EXPECT_EQ(text("-") + text("std"), "standard\nstandard\n");
}

TEST(Stream, CommandsAreThoseAllowedAndInheritNoFile) {
    const ScratchDir dir;
    std::filesystem::current_path(dir.path());
    FILE_allow_command("|touch allowed");
    FILE_allow_command("touch plain");
    for (const char *name : {"|touch ran", "|touch allowed; :", "|touch allowed ", "|"})
        for (const char *mode : {"r", "w", "a"}) EXPECT_FALSE(FILE_open(name, mode)) << name;
    EXPECT_FALSE(FILE_is_command("touch plain"));
    EXPECT_FALSE(FILE_open_input("|touch ran"));
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));

    const auto inherited = [] {
        std::string line, list;
        for (Stream numbers = open_allowed("|ls /proc/self/fd", "r"); numbers.get_line(line);)
            list += line + " ";
        return list;
    };
    const std::string before = inherited();
    const std::string name = dir.write("file", "x");
    ASSERT_NE(std::freopen(name.c_str(), "r", stdin), nullptr);
    Stream reading = FILE_open(name, "rb"), writing = FILE_open(dir.at("new"), "w");
    Stream kept = FILE_open_input("-"), pipe = open_allowed("|cat", "w");
    ASSERT_TRUE(reading && writing && kept && pipe);
    EXPECT_EQ(inherited(), before);
}

TEST(Stream, CloseTellsOfFailedWritesAndCommands) {
    EXPECT_FALSE(open_allowed("|exit 3", "w").close());
    // The command is gone before the bytes come: a failed write, and the program lives on.
    Stream closed_early = open_allowed("|exec <&-; sleep 0.2", "w");
    const std::string much(1 << 20, 'x');
    std::fwrite(much.data(), 1, much.size(), closed_early.get());
    EXPECT_FALSE(closed_early.close());
    if (FILE_is_device("/dev/full") != 0) {
        Stream full = FILE_open("/dev/full", "w");
        std::fputs("lost", full.get());
        EXPECT_FALSE(full.close());
    }
}

TEST(Stream, OpensWhatThereIsAndMakesWhatIsMissing) {
    const ScratchDir dir;
    EXPECT_FALSE(FILE_open(dir.at("missing"), "r"));
    EXPECT_FALSE(FILE_open(dir.path(), "r")) << "a directory has no bytes";
    EXPECT_FALSE(FILE_open(dir.write("file", "x") + "/below", "w"));

    Stream made = FILE_open(dir.at("a/b//c/new"), "w");
    ASSERT_TRUE(made);
    std::fputs("text", made.get());
    Stream moved = std::move(made);
    EXPECT_TRUE(moved.close());
    EXPECT_EQ(FILE_size(dir.at("a/b/c/new")), 4);
    EXPECT_EQ(FILE_size(dir.at("a/b/c/none")), -1);
    EXPECT_GT(FILE_modtime(dir.at("a/b/c/new")), 0);

    EXPECT_EQ(FILE_make_dir(dir.path() + "\\x\\y\\z", 1), 0);
    EXPECT_TRUE(FILE_is_dir(dir.at("x/y")));
    EXPECT_FALSE(FILE_exist(dir.at("x/y/z")));
    EXPECT_EQ(FILE_delete(dir.at("file")), 0);
    EXPECT_EQ(FILE_delete(dir.at("file")), -1);
}

TEST(Stream, StandardStreamsAndPaths) {
    for (const char *name : {"", "-", "std", "STDN"})
        EXPECT_TRUE(FILE_is_stdio(name) && FILE_exist(name)) << name;
    EXPECT_FALSE(FILE_is_stdio("stdin"));
    EXPECT_EQ(FILE_open("-", "r").get(), stdin);
    EXPECT_EQ(FILE_open("std", "w").get(), stdout);

    EXPECT_EQ(FILE_add_path("dir", "name"), "dir/name");
    EXPECT_EQ(FILE_add_path("dir/", "name"), "dir/name");
    EXPECT_EQ(FILE_add_path("", "name"), "name");
    EXPECT_EQ(FILE_add_path("dir", "./name"), "./name");
    EXPECT_EQ(FILE_add_path("dir", "-"), "-");

    const std::string home = FILE_add_user_path("~");
    EXPECT_EQ(FILE_fullpath(home), 1);
    EXPECT_EQ(FILE_add_user_path("~/x"), home + "/x");
    EXPECT_EQ(FILE_add_user_path("~no_such_user/x"), "~no_such_user/x");
    EXPECT_EQ(FILE_add_user_path("a~"), "a~");
}
