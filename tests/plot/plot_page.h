#pragma once
/// A test with a scratch directory as "file_path", and what a PostScript page of the session holds.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/colour/named_colors.h"
#include "plot/session/plot_session.h"

/// A text that the page shows, from the comment before its strokes.
struct PageText {
    float x = 0, y = 0; ///< NDC
    std::string text;
};

class PlotPage : public testing::Test {
protected:
    void SetUp() override {
        FLAG_resetplot(1);
        FLAG_set(kFlagPlotType, 0);
        RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
        CLR_read_table("");
    }

    /// Opens a session that draws on a page in the scratch directory.
    void open_page(float aspect = 1) {
        RES_put("device", "ps," + scratch_.at("page.ps") + ",color");
        FLAG_set(kFlagDevice, 4);
        ASSERT_EQ(PLT_open(aspect), 0);
    }
    /// Closes the session and gives back what it wrote.
    std::string close_page() {
        EXPECT_EQ(PLT_close(), 0);
        return page_text();
    }
    [[nodiscard]] std::string page_text() const {
        std::ifstream in(scratch_.at("page.ps"));
        return {std::istreambuf_iterator<char>(in), {}};
    }

    static std::vector<PageText> texts_of(const std::string &page) {
        constexpr std::string_view mark = "%%TE:";
        std::vector<PageText> texts;
        for (auto at = page.find(mark); at != std::string::npos; at = page.find(mark, at + 1)) {
            const std::string line = page.substr(at + mark.size(), page.find('\n', at) - at - mark.size());
            PageText found;
            int used = 0;
            if (std::sscanf(line.c_str(), "%f %f %n", &found.x, &found.y, &used) == 2)
                found.text = line.substr(static_cast<std::size_t>(used));
            texts.push_back(found);
        }
        return texts;
    }

    ScratchDir scratch_;
};
