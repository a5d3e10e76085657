#pragma once
/// Runs the real program in a directory of its own.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/wait.h>

#include <gtest/gtest.h>

#include "lib/scratch_dir.h"
#include "samples/level3_products.h"

struct RunResult {
    int status = -1; ///< exit status; -1 when a signal ended the program
    std::string out, err;
};

inline std::string file_text(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ProgramRun {
public:
    ProgramRun() {
        unsetenv("DISPLAY");
        std::filesystem::current_path(dir.path());
    }
    /// `arguments` as a shell writes them; nothing on standard input. `before`: commands that end in ";".
    RunResult operator()(const std::string &arguments, const std::string &before = {}) const {
        const std::string command =
            before + "exec " VYX_PROGRAM " " + arguments + " >stdout.txt 2>stderr.txt </dev/null";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(dir.at("stdout.txt")),
                file_text(dir.at("stderr.txt"))};
    }
    /// Writes a product file; its name.
    std::string product(const std::string &name, const samples::Level3Product &product) const {
        const samples::Bytes bytes = level3_file(product, samples::Framing::wmo, samples::Compression::none);
        dir.write(name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
        return name;
    }

    ScratchDir dir;
};

inline bool contains(const std::string &text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

inline int count_of(const std::string &text, std::string_view part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

/// Runs the program on longer and longer parts of a file, named "part": each run ends with 0 or 10, each page
/// is whole, and none has fewer cells than the one before. Cells of the last page.
inline int cells_of_growing_parts(const ProgramRun &run, std::string_view bytes, std::size_t step,
                                  const std::string &arguments) {
    int drawn = 0;
    for (std::size_t begin = 0; begin < bytes.size() + step; begin += step) {
        const std::size_t size = std::min(begin, bytes.size());
        run.dir.write("part", bytes.substr(0, size));
        const RunResult result = run(arguments + " -mf none -de p,page.ps part");
        EXPECT_TRUE(result.status == 0 || result.status == 10) << size << " " << result.err;
        if (result.status != 0) continue;
        const std::string page = file_text(run.dir.at("page.ps"));
        EXPECT_TRUE(page.ends_with("%%EOF\n")) << size;
        const int cells = count_of(page, "%%FA:5\n");
        EXPECT_GE(cells, drawn) << size;
        drawn = cells;
    }
    return drawn;
}
