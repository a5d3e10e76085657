#include "lib/resources/settings_files.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/report/text_lines.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/system/trust.h"
#include "lib/text/missing.h"
#include "lib/text/strings.h"

namespace {

namespace fs = std::filesystem;

struct State {
    std::vector<std::string> read; ///< the settings files, in the order of their reading
};
State state;

constexpr std::size_t kLongestLine = 249;
constexpr unsigned kTraceLevel = 0x80000000;

constexpr std::string_view kStandardPath = ".:/home/vyx/etc:/usr/local/vyx/etc";
/// In the order of their preference.
constexpr std::array<std::string_view, 3> kFileNames{"vyx.cfg", ".vyxdef", "Vyx.res"};
constexpr std::string_view kPlainFile = ".vyxdef"; ///< what an empty element reads

/// Where the data stand beside the program: in its build tree, and where it was installed.
constexpr std::array<std::string_view, 2> kBesideProgram{"../../data", "../etc"};
/// A directory with this file holds the program's data.
constexpr std::string_view kDataMark = "vyx.clr";

bool is_blank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// Takes the next run of characters that are not blank.
std::string_view take_word(std::string_view &text) {
    const auto start = std::find_if_not(text.begin(), text.end(), is_blank);
    const auto end = std::find_if(start, text.end(), is_blank);
    const std::string_view word(start, end);
    text = std::string_view(end, text.end());
    return word;
}

/// A quoted value may hold blanks (and may be empty); any other is one word.
std::optional<std::string_view> take_value(std::string_view rest) {
    const auto start = std::find_if_not(rest.begin(), rest.end(), is_blank);
    if (start == rest.end()) return std::nullopt;
    if (*start == '"') return std::string_view(start + 1, std::find(start + 1, rest.end(), '"'));
    return take_word(rest);
}

void store_entry(std::string_view key, const std::string &value, const ResourceProgram &program) {
    const std::string prefix = program.qualifier() + ".";
    const auto &descriptors = program.descriptors;
    const auto matches = [&](const ResourceDescriptor &descriptor) {
        return !descriptor.name.empty() && RES_key_matches(key, prefix + std::string(descriptor.name));
    };
    // A key such as "*label" fits several names; the first in list order is meant.
    if (const auto found = std::find_if(descriptors.begin(), descriptors.end(), matches);
        found != descriptors.end()) {
        RES_store(program, static_cast<std::size_t>(found - descriptors.begin()), value.c_str());
        MESS_print(kTraceLevel, "RESRC: %s=%s\n", std::string(found->name).c_str(), value.c_str());
        return;
    }
    const std::string name(key.substr(key.find_last_of(".*") + 1)); // npos + 1 is 0
    if (!name.empty() && RES_key_matches(key, prefix + name))
        RES_new(kMissing, name, value.c_str(), ResourceKind::text);
}

/// Carries out one line of a resource file: comment, section word, or entry.
void read_line(std::string_view line, ResourceSections &sections, const ResourceProgram &program) {
    line = line.substr(0, kLongestLine);
    line = line.substr(0, line.find('\0'));
    if (line.starts_with('#')) return;
    std::string_view rest = line;
    const std::string_view word = take_word(rest);
    std::string_view after = rest;
    if (word.empty() || sections.directive(word, take_word(after)) || !sections.active()) return;
    const std::optional<std::string_view> value = take_value(rest);
    if (!value) return;
    std::string key = lower_case(word);
    if (key.ends_with(':')) key.pop_back();
    store_entry(key, std::string(*value), program);
}

bool read_file(const std::string &path, ResourceSections &sections, const ResourceProgram &program) {
    errno = 0;
    TextLines lines(FILE_open(path, "r"), path, kLongestLine);
    if (!lines) return false;
    state.read.push_back(path);
    std::string line;
    while (lines.next(line)) read_line(line, sections, program);
    sections.end_file();
    return true;
}

/// The first of the files that exists in the directory, else the last.
std::string resource_file_of(const std::string &directory) {
    std::string path;
    for (const std::string_view name : kFileNames) {
        path = directory;
        FILE_add_path_delim(path);
        path += name;
        if (FILE_exist(path) != 0) break;
    }
    return path;
}

fs::path program_directory() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path(RES_get_prog()).parent_path() : program.parent_path();
}

/// A name that means another file in another current directory.
bool is_relative(std::string_view path) {
    return !path.starts_with('/') && !path.starts_with('~');
}

/// True for a file that the user has not named, that lies where the user happens to be, and that others have
/// a hand in; which is told.
bool is_refused(const std::string &path, bool named, const char *what) {
    if (named || !is_relative(path) || FILE_exist(path) == 0) return false;
    const std::string fault = TRUST_fault(path);
    if (fault.empty()) return false;
    const std::string directory = fs::path(path).parent_path().string();
    WORD_tell("-df (default)", path + ": " + what + ", " + fault + "; -df " +
                                   (directory.empty() ? "." : directory) + " allows it");
    return true;
}

bool read_found_file(const std::string &path, ResourceSections &sections, const ResourceProgram &program,
                     bool named) {
    return !is_refused(path, named, "Settings are not read") && read_file(path, sections, program);
}

/// Reads what a path element names; `named` by an option, which is told when it cannot be read. Returns the
/// directory when the element is one and its file was read.
std::string read_element(const std::string &element, ResourceSections &sections,
                         const ResourceProgram &program, bool named) {
    if (element.starts_with('+')) {
        sections.define(std::string_view(element).substr(1));
    } else if (element.starts_with('#')) {
        // Windows of a loop viewer answer over its message queue, which this program does not have: to it no
        // window is running.
        MESS_print(kWarn, "VYXloop window: %s not running or no message queue exists\n", element.c_str() + 1);
    } else if (element.empty()) {
        read_found_file(std::string(kPlainFile), sections, program, named);
    } else if (FILE_is_dir(element) != 0) {
        if (read_found_file(resource_file_of(element), sections, program, named)) return element;
    } else if (!read_found_file(element, sections, program, named) && named) {
        const std::string cause = std::strerror(errno);
        WORD_tell("-df (default)", "Unable to read settings file: " + element + ": " + cause);
    }
    return {};
}

/// The directories beside the program where its data may lie.
std::vector<std::string> directories_beside_program() {
    std::vector<std::string> directories;
    for (const std::string_view beside : kBesideProgram) {
        std::error_code error;
        const fs::path directory = fs::weakly_canonical(program_directory() / beside, error);
        if (!error && fs::is_directory(directory, error)) directories.push_back(directory.string());
    }
    return directories;
}

/// The program's own settings, for a user who has none. The directory they were read from.
std::string read_beside_program(ResourceSections &sections, const ResourceProgram &program) {
    for (const std::string &directory : directories_beside_program())
        if (FILE_exist(resource_file_of(directory)) != 0)
            return read_element(directory, sections, program, false);
    return {};
}

/// The data of a directory count as found when its name is relative and the user has not named it.
bool has_refused_data(const std::string &directory, bool named) {
    std::string mark = directory;
    FILE_add_path_delim(mark);
    return is_refused(mark.append(kDataMark), named, "Its directory is no place of data");
}

/// The directories with the program's colour table among those given, the standard ones and those beside the
/// program.
std::vector<std::string> data_directories(std::vector<std::string> directories, bool here_is_named) {
    for (const std::string &standard : parse_string(kStandardPath, ':'))
        if (!has_refused_data(standard, here_is_named)) directories.push_back(standard);
    for (const std::string &beside : directories_beside_program()) directories.push_back(beside);
    std::erase_if(directories, [](const std::string &directory) {
        return FILE_exist(FILE_add_path(directory, kDataMark)) == 0;
    });
    return directories;
}

bool names_here(const std::vector<std::string> &elements) {
    return std::ranges::any_of(elements, [](const std::string &element) {
        std::error_code error;
        return fs::equivalent(element, ".", error);
    });
}

} // namespace

bool RES_key_matches(std::string_view key, std::string_view target) {
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    std::size_t k = 0;
    std::size_t t = 0;
    std::size_t star = std::string_view::npos; // last "*" passed in the key
    std::size_t resume = 0;                    // where the text it stands for ends so far
    while (t < target.size()) {
        if (k < key.size() && key[k] == '*') {
            star = k++;
            resume = t;
        } else if (k < key.size() && same(key[k], target[t])) {
            ++k;
            ++t;
        } else if (star != std::string_view::npos) {
            k = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    return key.find_first_not_of('*', k) == std::string_view::npos;
}

void RES_read_entries(std::string_view text, ResourceSections &sections, const ResourceProgram &program) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        read_line(text.substr(0, end), sections, program);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    sections.end_file();
}

std::string RES_read_search_path(const ResourceProgram &program) {
    ResourceSections sections;
    const char *given = RES_get("default");
    std::vector<std::string> elements = parse_string(given != nullptr ? given : kStandardPath, ':');
    if (elements.empty()) elements.emplace_back();
    state.read.clear();
    const bool named = program.path_is_option;
    std::vector<std::string> directories;
    for (const std::string &element : elements) {
        const std::string directory = read_element(element, sections, program, named);
        if (!directory.empty() && !has_refused_data(directory, named)) directories.push_back(directory);
    }
    if (given == nullptr && directories.empty())
        directories.push_back(read_beside_program(sections, program));
    std::vector<std::string> with_data = data_directories(directories, named && names_here(elements));
    std::string directory;
    if (!with_data.empty() || !directories.empty())
        directory = with_data.empty() ? directories.front() : with_data.front();
    FILE_add_path_delim(directory);
    FILE_set_data_directories(std::move(with_data));
    return directory;
}

void RES_tell_settings() {
    for (const std::string &path : state.read) MESS_print(kMess, "Settings file: %s\n", path.c_str());
}
