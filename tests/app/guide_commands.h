#pragma once
/// The commands that the user guide prints, as it prints them.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

struct GuideBlock {
    int chapter = 0;
    std::string text; ///< lines of one indented block

    /// A window is held until somebody ends it.
    [[nodiscard]] bool opens_window() const {
        return text.find("-de d ") != std::string::npos && text.find("-ba") == std::string::npos;
    }
};

/// Blocks in which the program runs. Chapter 0, which makes program and samples, is not among them.
inline std::vector<GuideBlock> guide_blocks() {
    constexpr std::string_view kIndent = "    ";
    std::ifstream guide(VYX_SOURCE_DIR "/docs/user-guide.md");
    std::vector<GuideBlock> blocks;
    GuideBlock block;
    const auto end_block = [&] {
        const bool runs = block.text.find("vyxradar -") != std::string::npos;
        if (runs && block.chapter > 0) blocks.push_back(block);
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
    return blocks;
}

/// Each command of a block.
inline std::vector<std::string> guide_commands(const GuideBlock &block) {
    if (block.text.find("\ndone") != std::string::npos) return {block.text}; // a loop
    std::vector<std::string> commands;
    for (std::size_t at = 0; at < block.text.size();) {
        const std::size_t end = block.text.find('\n', at);
        commands.push_back(block.text.substr(at, end - at));
        at = end + 1;
    }
    return commands;
}

/// Goes where the commands are to run: program and samples are at hand, as the guide's beginning makes them.
inline bool enter_guide_directory(const std::string &directory) {
    std::filesystem::current_path(directory);
    const std::string path =
        std::filesystem::path(VYX_PROGRAM).parent_path().string() + ":" + std::getenv("PATH");
    setenv("PATH", path.c_str(), 1);
    return std::system("make_samples samples") == 0;
}
