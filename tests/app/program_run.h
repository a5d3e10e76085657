#pragma once
/// Runs the real program in a directory of its own.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/wait.h>

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
    /// `arguments` as a shell writes them; nothing on standard input.
    RunResult operator()(const std::string &arguments) const {
        const std::string command =
            "exec " VYX_PROGRAM " " + arguments + " >stdout.txt 2>stderr.txt </dev/null";
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
