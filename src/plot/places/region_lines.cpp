#include "plot/places/region_lines.h"

#include <cerrno>
#include <vector>

#include "lib/report/message.h"
#include "lib/resources/data_files.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr unsigned kFileTrace = 0x80000000;
constexpr std::size_t kLongestLine = 500;
constexpr std::size_t kDescriptionLength = 20;

RegionLine decode_line(std::string_view text, const TextLines &lines) {
    RegionLine line;
    Scanner scan(text);
    for (const auto &word : {scan.word(), scan.word(), scan.word(), scan.word()}) {
        if (!word) break;
        switch (++line.words) {
        case 1: line.abbreviation = line.domain = *word; break;
        case 2:
            line.description = word->substr(0, kDescriptionLength);
            if (word->size() > kDescriptionLength)
                lines.tell(format_text("Of the description only the first %zu characters are shown",
                                       kDescriptionLength));
            line.domain.clear();
            break;
        case 3: line.menu_flag = Scanner(*word).integer().value_or(0); break;
        default: line.domain = *word;
        }
    }
    fill_string(line.description, '_', ' ');
    return line;
}

} // namespace

TextLines open_region_file(std::string_view name) {
    const std::string path = FILE_find_data(name);
    TextLines lines(FILE_open(path, "r"), path, kLongestLine);
    if (!lines) {
        const int fault = errno;
        MESS_print(kFileTrace, "Unable to open region file: %s\n", path.c_str());
        MESS_print_fault(kFileTrace, "open_region_file", path, fault);
    }
    return lines;
}

std::optional<RegionLine> read_region_line(TextLines &lines) {
    std::string text;
    while (lines.next(text)) {
        if (text.starts_with('#')) continue;
        RegionLine line = decode_line(text, lines);
        if (line.words > 0) return line;
    }
    return std::nullopt;
}

int DOM_search_file(std::string_view file, std::string_view key, std::string &out) {
    TextLines lines = open_region_file(file);
    if (!lines) return 0;
    while (const auto line = read_region_line(lines)) {
        if (line->domain.empty()) continue;
        if (line->words > 1 && !key.empty() && stricmp(key, line->abbreviation) != 0) continue;
        out = line->domain;
        return 1;
    }
    return 0;
}

void DOM_print_file(std::string_view file) {
    TextLines lines = open_region_file(file);
    if (!lines) return;
    MESS_print(kPrint, " Abbr    Description\n");
    while (const auto line = read_region_line(lines))
        MESS_print(kPrint, "%-8s %-50s\n", line->abbreviation.c_str(), line->description.c_str());
}
