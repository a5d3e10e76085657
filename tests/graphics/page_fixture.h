#pragma once
/// A PostScript page in a temporary file, for tests that look at what the kernel told a device.

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "graphics/core/state.h"
#include "graphics/kernel/kernel.h"

class PageTest : public testing::Test {
protected:
    PageTest()
        : path_(std::filesystem::temp_directory_path() / ("vyx_page_" + std::to_string(::getpid()) + ".ps")) {
    }
    ~PageTest() override {
        if (gchk_graphics() != 0) (void)gclose_ws(1);
        gclose_gks();
        gstate() = GraphicsState{};
        std::filesystem::remove(path_);
    }
    /// Grey landscape letter page: 756 x 576 points.
    void open(const std::string &options = "") {
        ASSERT_EQ(gopen_gks("", 0), 0);
        ASSERT_EQ(gopen_ws(1, path_.string() + options, DeviceKind::ps), 0);
    }
    /// What has been written from here on is what `written` returns.
    void mark() { gmessage(0, kMark); }
    /// Closes the page; what lies between the mark and the trailer.
    std::string written() {
        EXPECT_EQ(gclose_ws(1), 0);
        std::ostringstream all;
        all << std::ifstream(path_).rdbuf();
        std::string text = all.str();
        const std::size_t start = text.find(kMark);
        if (start != std::string::npos) text.erase(0, text.find('\n', start) + 1);
        return text.substr(0, text.find("%%End of plot"));
    }
    /// Runs `action` and returns what it said on standard error.
    template <typename Action> static std::string errors_of(Action action) {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    std::filesystem::path path_;

private:
    static constexpr const char *kMark = "mark of the test";
};

inline std::size_t occurrences(const std::string &text, const std::string &part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}
