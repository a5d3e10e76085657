#pragma once
/// The commands that the documents print, as they print them.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

inline constexpr const char *kGuide = VYX_SOURCE_DIR "/docs/user-guide.md";
inline constexpr const char *kReadme = VYX_SOURCE_DIR "/README.md";

struct GuideCommand {
    int chapter = 0;  ///< 0 outside numbered ones
    std::string text; ///< a line, or a whole loop

    /// A window is held until somebody ends it.
    [[nodiscard]] bool opens_window() const {
        return text.find("-de d ") != std::string::npos && text.find("-ba") == std::string::npos;
    }
};

/// The commands of the indented blocks in which the program runs, or an interpreter shows what it has made.
inline std::vector<GuideCommand> document_commands(const char *document) {
    constexpr std::string_view kIndent = "    ";
    std::ifstream guide(document);
    std::vector<GuideCommand> commands;
    GuideCommand block;
    const auto end_block = [&] {
        const bool runs = block.text.find("vyxradar -") != std::string::npos || block.text.starts_with("gs ");
        const bool loop = block.text.find("\ndone") != std::string::npos;
        for (std::size_t at = 0; runs && at < block.text.size();) {
            const std::size_t end = loop ? block.text.size() : block.text.find('\n', at);
            commands.push_back({block.chapter, block.text.substr(at, end - at)});
            at = end + 1;
        }
        block.text.clear();
    };
    for (std::string line; std::getline(guide, line);) {
        if (line.starts_with(kIndent)) {
            block.text += line.substr(kIndent.size()) + "\n";
            continue;
        }
        end_block();
        if (line.starts_with("## ")) block.chapter = std::atoi(line.c_str() + 3);
    }
    end_block();
    return commands;
}

/// Goes where the commands are to run: the program, samples and a file of one's own are at hand.
inline bool enter_guide_directory(const std::string &directory) {
    std::filesystem::current_path(directory);
    const std::string path =
        std::filesystem::path(VYX_PROGRAM).parent_path().string() + ":" + std::getenv("PATH");
    setenv("PATH", path.c_str(), 1);
    return std::system("make_samples samples && cp samples/KLSX_N0R_20030704_2200 FILE") == 0;
}
