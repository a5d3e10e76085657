#include "plot/colour/level_list.h"

#include <algorithm>
#include <utility>

#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/colour/data_lines.h"

namespace {

constexpr std::size_t kLabelLength = 9;
constexpr std::size_t kLineLength = 80;
constexpr std::string_view kLabelKey = ":la=";

/// Where an element's explicit label begins; npos without one.
std::size_t find_label(std::string_view element) {
    for (std::size_t at = element.find(':'); at != std::string_view::npos; at = element.find(':', at + 1))
        if (begins_with(element.substr(at), kLabelKey)) return at;
    return std::string_view::npos;
}

Attribute decode_attributes(std::string_view text) {
    Attribute attribute;
    attribute.color = kColorBackground;
    ATTRIB_parse(text, attribute);
    return attribute;
}

/// "a-b": one level for each colour index from a's to b's, with a's other attributes.
void add_range(std::string_view first, std::string_view last, std::vector<LevelElement> &levels) {
    LevelElement level;
    level.attribute = decode_attributes(first);
    const int end = decode_attributes(last).color;
    const int step = level.attribute.color > end ? -1 : 1;
    while (levels.size() < kMaxLevels) {
        levels.push_back(level);
        if (level.attribute.color == end) return;
        level.attribute.color += step;
    }
}

/// The value before the first ":" with the rest behind it; nothing when the element does not begin with a
/// value.
std::optional<std::pair<float, std::string_view>> split_value(std::string_view element) {
    Scanner scan(element);
    const auto value = scan.real();
    scan.skip_blanks();
    if (!scan.literal(':')) return std::nullopt;
    return std::pair{*value, scan.rest()};
}

void add_element(std::string_view element, std::vector<LevelElement> &levels) {
    LevelElement level;
    std::string_view attributes = element;
    const std::size_t label_at = find_label(element);
    if (label_at != std::string_view::npos) {
        level.label = element.substr(label_at + kLabelKey.size()).substr(0, kLabelLength);
        attributes = element.substr(0, label_at);
    }
    // A value with nothing behind it but a label still is a value.
    if (const auto valued = split_value(element)) {
        level.value = valued->first;
        const std::size_t colon = element.find(':');
        if (level.label.empty()) level.label = element.substr(0, std::min(colon, kLabelLength));
        attributes.remove_prefix(std::min(colon + 1, attributes.size()));
        level.attribute = decode_attributes(attributes);
        levels.push_back(level);
        return;
    }
    const std::size_t dash = attributes.find('-');
    if (dash != std::string_view::npos && dash > 0) {
        add_range(attributes.substr(0, dash), attributes.substr(dash + 1), levels);
        return;
    }
    level.keeps_value = true;
    level.attribute = decode_attributes(attributes);
    levels.push_back(level);
}

/// False when the list is full or ended.
bool decode_element(std::string_view element, std::vector<LevelElement> &levels) {
    add_element(trimmed(element), levels);
    const auto ended = [](const LevelElement &level) { return level.attribute.color == kColorEnd; };
    const auto end = std::find_if(levels.begin(), levels.end(), ended);
    if (end == levels.end()) return levels.size() < kMaxLevels;
    levels.erase(end, levels.end());
    return false;
}

} // namespace

void check_level_element(std::string_view resource, std::string_view element) {
    element = trimmed(element);
    std::string_view attributes = element;
    if (const std::size_t label_at = find_label(element); label_at != element.npos) {
        const std::string_view label = element.substr(label_at + kLabelKey.size());
        if (label.size() > kLabelLength)
            WORD_tell(resource, format_text("Of the label %s only the first %zu characters are shown",
                                            std::string(label).c_str(), kLabelLength));
        attributes = element.substr(0, label_at);
    }
    if (split_value(element)) {
        ATTRIB_check(resource, attributes.substr(std::min(element.find(':') + 1, attributes.size())));
        return;
    }
    const std::size_t dash = attributes.find('-');
    const bool range = dash != attributes.npos && dash > 0;
    ATTRIB_check(resource, attributes.substr(0, range ? dash : attributes.npos));
    if (range) ATTRIB_check(resource, attributes.substr(dash + 1));
}

std::vector<LevelElement> decode_level_list(const std::vector<std::string> &elements) {
    std::vector<LevelElement> levels;
    for (const std::string &element : elements)
        if (!decode_element(element, levels)) break;
    return levels;
}

std::optional<std::vector<LevelElement>> read_level_file(std::string_view name) {
    TextLines lines(FILE_open_data(name), name, kLineLength);
    if (!lines) return std::nullopt;
    std::vector<LevelElement> levels;
    std::string line;
    while (PLT_read_line(lines, line)) {
        if (line.empty() || line.front() == '@' || line.front() == '#') continue;
        check_level_element(name, line);
        if (!decode_element(line, levels)) break;
    }
    return levels;
}
