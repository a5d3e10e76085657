#include "lib/files/listing.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <glob.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"

namespace {

using Names = std::vector<std::string>;

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 3; ///< a column with one letter
constexpr std::size_t kTab = 8;
constexpr std::size_t kUsualWidth = 80;

/// Letters, where a byte that continues one counts as none.
std::size_t letters(const std::string &name) {
    return static_cast<std::size_t>(std::count_if(name.begin(), name.end(), [](char c) {
        constexpr unsigned char kKind = 0xC0, kContinues = 0x80;
        return (static_cast<unsigned char>(c) & kKind) != kContinues;
    }));
}

/// Widths of `count` columns, gaps included, when a row of them fits.
std::optional<std::vector<std::size_t>> column_widths(const Names &names, std::size_t count,
                                                      std::size_t width) {
    std::vector<std::size_t> widths(count, kNarrowest);
    std::size_t row = count * kNarrowest;
    for (std::size_t i = 0; i < names.size() && row < width; ++i) {
        const std::size_t column = i % count;
        const std::size_t needed = letters(names[i]) + (column + 1 == count ? 0 : kGap);
        if (needed <= widths[column]) continue;
        row += needed - widths[column];
        widths[column] = needed;
    }
    if (row >= width) return std::nullopt;
    return widths;
}

std::string indent(std::size_t from, std::size_t to) {
    std::string text;
    while (from < to) {
        const bool tab = to / kTab > (from + 1) / kTab;
        text += tab ? '\t' : ' ';
        from = tab ? (from / kTab + 1) * kTab : from + 1;
    }
    return text;
}

std::size_t width_of_output() {
    struct winsize size {};
    if (isatty(STDOUT_FILENO) != 0 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    const char *columns = std::getenv("COLUMNS");
    const int given = columns != nullptr ? Scanner(columns).integer().value_or(0) : 0;
    return given > 0 ? static_cast<std::size_t>(given) : kUsualWidth;
}

/// In the order of the user's language.
void sort_names(Names &names) {
    static const locale_t order = newlocale(LC_COLLATE_MASK, "", nullptr);
    std::sort(names.begin(), names.end(), [](const std::string &a, const std::string &b) {
        const int by_language = order != nullptr ? strcoll_l(a.c_str(), b.c_str(), order) : 0;
        return by_language != 0 ? by_language < 0 : a < b;
    });
}

/// Names side by side, row after row, in the most columns that fit into less than `width` characters; two
/// blanks at least stand between columns, tabs where they reach the next column.
std::string columns_of(const Names &names, std::size_t width) {
    std::vector<std::size_t> widths{0};
    for (std::size_t count = 2; count <= std::min(names.size(), width / kNarrowest); ++count)
        if (auto fitting = column_widths(names, count, width)) widths = std::move(*fitting);
    std::string text;
    std::size_t column_begin = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += names[i];
        const std::size_t column = i % widths.size();
        if (column + 1 == widths.size() || i + 1 == names.size()) {
            text += '\n';
            column_begin = 0;
            continue;
        }
        text += indent(column_begin + letters(names[i]), column_begin + widths[column]);
        column_begin += widths[column];
    }
    return text;
}

void print_names(Names names) {
    sort_names(names);
    // A name must not give orders to the terminal.
    if (isatty(STDOUT_FILENO) != 0)
        for (std::string &name : names)
            std::replace_if(
                name.begin(), name.end(),
                [](char c) { return std::iscntrl(static_cast<unsigned char>(c)) != 0; }, '?');
    const std::string text = columns_of(names, width_of_output());
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void print_directory(const std::string &path) {
    std::error_code error;
    Names names;
    for (std::filesystem::directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error))
        if (std::string name = entry->path().filename().string(); !name.starts_with('.'))
            names.push_back(std::move(name));
    if (error) MESS_print(kWarn, "FILE_list_file: %s: %s\n", path.c_str(), error.message().c_str());
    print_names(std::move(names));
}

Names matches(std::string_view pattern) {
    std::string literal;
    for (const char c : pattern) literal.append(c == '\\' ? 1 : 0, '\\') += c;
    glob_t found{};
    Names names;
    if (glob(literal.c_str(), GLOB_TILDE | GLOB_NOSORT, nullptr, &found) == 0)
        names.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    return names;
}

} // namespace

void FILE_list_pattern(std::string_view pattern) {
    if (pattern.empty()) {
        print_directory(".");
        return;
    }
    const Names found = matches(pattern);
    if (found.empty()) MESS_print(kWarn, "FILE_list_file: No file fits: %s\n", std::string(pattern).c_str());
    Names files, directories;
    for (const std::string &name : found) (FILE_is_dir(name) != 0 ? directories : files).push_back(name);
    print_names(files);
    sort_names(directories);
    bool first = files.empty();
    for (const std::string &directory : directories) {
        if (found.size() > 1) std::printf("%s%s:\n", first ? "" : "\n", directory.c_str());
        first = false;
        print_directory(directory);
    }
}
