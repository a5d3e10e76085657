/// Files that are written whole or not at all, and their names.

#include "lib/files/output_file.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "lib/files/naming.h"
#include "lib/files/output_name.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"

namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

std::string content(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

mode_t mode_of(const std::string &path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 0777 : 0;
}

std::string fault_of(const std::string &name) {
    const OutputFile file = OutputFile::create(name);
    return file ? "none" : file.fault();
}

/// Writes "new" over `name`; why it failed, or "".
std::string replace(const std::string &name) {
    OutputFile file = OutputFile::create(name);
    if (!file) return file.fault();
    file.write("new");
    return file.commit() ? "" : file.fault();
}

/// How a process that does so ends, as waitpid tells.
int end_of(const std::function<void()> &work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

/// Fills the stack.
int depth_without_end(int depth) { // NOLINT(misc-no-recursion)
    if (depth < 0) return 0;
    std::array<volatile char, 4096> room{};
    room[0] = static_cast<char>(depth);
    return depth_without_end(depth + 1) + room[0];
}

class OutputFileTest : public testing::Test {
protected:
    std::ptrdiff_t files() const {
        return std::distance(fs::directory_iterator(dir_.path()), fs::directory_iterator());
    }
    ScratchDir dir_;
};

TEST_F(OutputFileTest, TheOldFileStaysUntilTheNewOneIsWhole) {
    const std::string name = dir_.write("page", "old");
    fs::permissions(name, fs::perms(0640));
    {
        OutputFile file = OutputFile::create(name);
        file.write("half");
        EXPECT_FALSE(file.failed());
        EXPECT_EQ(content(name), "old");
    }
    EXPECT_EQ(content(name), "old");
    EXPECT_EQ(files(), 1) << "what was written aside is gone";
    EXPECT_EQ(replace(name), "");
    EXPECT_EQ(content(name), "new");
    EXPECT_EQ(mode_of(name), 0640U);

    const mode_t mask = umask(027);
    EXPECT_EQ(replace(dir_.at("made/on/the/way")), "");
    umask(mask);
    EXPECT_EQ(mode_of(dir_.at("made/on/the/way")), 0640U) << "as for any new file";
    EXPECT_EQ(files(), 2);
}

TEST_F(OutputFileTest, LinksLeadToTheirFile) {
    const std::string real = dir_.write("real/page", "old");
    fs::create_symlink("real/page", dir_.at("link"));
    fs::create_symlink("real/none", dir_.at("ahead"));
    fs::create_symlink("circle", dir_.at("circle"));
    EXPECT_EQ(replace(dir_.at("link")), "");
    EXPECT_EQ(replace(dir_.at("ahead")), "");
    EXPECT_EQ(content(real), "new");
    EXPECT_EQ(content(dir_.at("real/none")), "new");
    EXPECT_TRUE(fs::is_symlink(dir_.at("link")) && fs::is_symlink(dir_.at("ahead")));
    EXPECT_EQ(fault_of(dir_.at("circle")), "Too many levels of symbolic links");
}

TEST_F(OutputFileTest, WhatIsNoPlainFileIsWrittenAsItIs) {
    ASSERT_EQ(mkfifo(dir_.at("fifo").c_str(), 0600), 0);
    const pid_t writer = fork();
    if (writer == 0) std::_Exit(replace(dir_.at("fifo")).empty() ? 0 : 1);
    EXPECT_EQ(content(dir_.at("fifo")), "new");
    waitpid(writer, nullptr, 0);
    EXPECT_TRUE(fs::is_fifo(dir_.at("fifo")));
    EXPECT_EQ(replace("/dev/full"), "No space left on device");
    EXPECT_EQ(replace("/dev/null"), "");
    for (const auto &[command, fault] : {std::pair{"|cat > " + dir_.at("piped"), ""},
                                         {"|cat > /dev/null; false", "the command ended with an error"}}) {
        FILE_allow_command(command);
        EXPECT_EQ(replace(command), fault);
    }
    EXPECT_EQ(content(dir_.at("piped")), "new");
    EXPECT_EQ(fault_of(dir_.path()), "Is a directory");
    EXPECT_EQ(fault_of(dir_.at("piped/below")), "Not a directory");
    EXPECT_EQ(fault_of(dir_.at(std::string(300, 'n'))), "File name too long");
}

TEST_F(OutputFileTest, AProcessThatEndsLeavesTheOldFileOnly) {
    const std::string name = dir_.write("page", "old");
    const auto write_half = [&] {
        static OutputFile file = OutputFile::create(name);
        file.write("half");
        EXPECT_EQ(files(), 2);
    };
    for (const int signal_number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGSEGV, SIGABRT}) {
        const int status = end_of([&] {
            signal(signal_number, SIG_DFL);
            write_half();
            raise(signal_number);
        });
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal_number) << signal_number;
        EXPECT_EQ(files(), 1) << signal_number;
    }
    EXPECT_EQ(end_of(write_half), 0);
    EXPECT_EQ(files(), 1) << "at a plain end, too";
#ifndef __SANITIZE_ADDRESS__ // which ends the process itself
    EXPECT_TRUE(WIFSIGNALED(end_of([&] {
        write_half();
        const rlimit small{1U << 20, 1U << 20};
        setrlimit(RLIMIT_STACK, &small);
        EXPECT_GT(depth_without_end(0), 0);
    })));
    EXPECT_EQ(files(), 1) << "when the stack is full";
#endif
    EXPECT_EQ(content(name), "old");
    EXPECT_EQ(end_of([&] {
                  signal(SIGHUP, SIG_IGN);
                  OutputFile file = OutputFile::create(name);
                  raise(SIGHUP);
                  file.write("new");
                  std::_Exit(file.commit() ? 0 : 1);
              }),
              0)
        << "a signal that is ignored stays so";
    EXPECT_EQ(content(name), "new");
}

TEST_F(OutputFileTest, AFullFileIsAFaultNotAnEnd) {
    const std::string name = dir_.write("page", "old");
    EXPECT_EQ(end_of([&] {
                  const rlimit limit{100000, 100000};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  OutputFile file = OutputFile::create(name);
                  for (int i = 0; i < 200; ++i) file.write(std::string(1000, 'x'));
                  std::_Exit(!file.commit() && file.fault() == "File too large" ? 0 : 1);
              }),
              0);
    EXPECT_EQ(content(name), "old");
    EXPECT_EQ(files(), 1);
}

/// As a user whom permissions bind.
TEST_F(OutputFileTest, PermissionsHold) {
    if (geteuid() != 0) GTEST_SKIP() << "needs two users";
    const std::string open = dir_.write("open", "old"), closed = dir_.write("closed", "old");
    const std::string shared = dir_.write("shared/open", "old");
    fs::permissions(dir_.path(), fs::perms(0755));
    fs::permissions(dir_.at("shared"), fs::perms(01777));
    for (const std::string &name : {open, shared}) fs::permissions(name, fs::perms(0666));
    fs::permissions(closed, fs::perms(0644));
    EXPECT_EQ(symlink(open.c_str(), dir_.at("shared/planted").c_str()), 0);
    EXPECT_EQ(lchown(dir_.at("shared/planted").c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(fault_of(dir_.at("shared/planted")), "Permission denied") << "laid by another user";
    const int status = end_of([&] {
        if (setuid(kNobody) != 0) std::_Exit(10);
        if (!replace(open).empty()) std::_Exit(11);
        if (!replace(shared).empty()) std::_Exit(12);
        if (fault_of(closed) != "Permission denied") std::_Exit(13);
        if (fault_of(dir_.at("none")) != "Permission denied") std::_Exit(14);
        std::_Exit(0);
    });
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(content(open), "new") << "in a directory where no file can be made";
    EXPECT_EQ(content(shared), "new") << "in one where it cannot be replaced";
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_.at("shared")), fs::directory_iterator()), 2);
}

TEST_F(OutputFileTest, NamesOfOutputsAndInputs) {
    DateRecord date;
    date.year = 2003;
    date.month = 7;
    const std::vector<NameKey> keys{{'p', "a b"}};
    FILE_set_key('p', "N0R");
    EXPECT_EQ(FILE_name_output("@my maps/%p of %m.png", date, keys), "my maps/a_b of 07.png");
    EXPECT_EQ(FILE_get_key('p'), "N0R") << "the key of the input";

    const std::string first = dir_.write("one", "1"), other = dir_.write("two", "2");
    RES_put("filename", first + ",none");
    fs::create_symlink("one", dir_.at("link"));
    for (const char *spelling : {"one", "./one", "link"}) EXPECT_TRUE(FILE_is_input(dir_.at(spelling)));
    EXPECT_FALSE(FILE_is_input(other));
    EXPECT_FALSE(FILE_is_input(dir_.at("none")));
    FILE_set_filename(other);
    EXPECT_TRUE(FILE_is_input(other)) << "the current file";
}

} // namespace
