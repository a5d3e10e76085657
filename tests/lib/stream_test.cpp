#include "lib/stream.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "lib/scratch_dir.h"

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

    Stream pipe = FILE_open("|echo piped", "r");
    ASSERT_EQ(pipe.kind(), Stream::Kind::pipe);
    EXPECT_TRUE(pipe.get_line(line));
    EXPECT_EQ(line, "piped");
}

TEST(Stream, CloseTellsOfFailedWritesAndCommands) {
    EXPECT_FALSE(FILE_open("|exit 3", "w").close());
    // The command is gone before the bytes come: a failed write, and the program lives on.
    Stream closed_early = FILE_open("|exec <&-; sleep 0.2", "w");
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
