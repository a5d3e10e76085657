#include "plot/background/item.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "lib/text/scan.h"

namespace {

constexpr std::size_t kGuardNumbers = 5;

/// Removes `mark` number [`other` number] ":" from the front of the item. A mark that no number and ":"
/// follow belongs to a file name.
bool take_bounds(std::string_view &item, std::string_view mark, char other, std::optional<float> &first,
                 std::optional<float> &second) {
    if (!item.starts_with(mark)) return false;
    Scanner scanner(item.substr(mark.size()));
    first = scanner.real();
    if (other != '\0' && scanner.rest().starts_with(other)) {
        scanner.literal(other);
        second = scanner.real();
    }
    if (!scanner.literal(':')) return false;
    item = scanner.rest();
    return true;
}

bool meets_least(std::string_view &item, std::string_view mark, char other, float height) {
    std::optional<float> least, most;
    if (!take_bounds(item, mark, other, least, most)) return true;
    return height >= *least && (!most || height <= *most);
}

bool meets_most(std::string_view &item, std::string_view mark, char other, float height) {
    std::optional<float> least, most;
    if (!take_bounds(item, mark, other, most, least)) return true;
    return height <= *most && (!least || height >= *least);
}

/// Removes the next ":"-separated part.
std::string_view take_part(std::string_view &text) {
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

/// A part that is a number and nothing else.
std::optional<float> whole_number(std::string_view part) {
    Scanner scanner(part);
    const auto value = scanner.real();
    return scanner.at_end() ? value : std::nullopt;
}

} // namespace

bool is_foreign_body(std::string_view body) {
    return body.starts_with("rf:");
}

int take_map_pass(std::string_view &item) {
    constexpr int underlay = 1, overlay = 2, unmarked = 4;
    if (!item.starts_with('-') && !item.starts_with('+')) return unmarked;
    const int pass = item.front() == '-' ? underlay : overlay;
    item.remove_prefix(1);
    return pass;
}

bool RegionGuard::matches(float lat, float lon, float height) const {
    return unconditional ||
           (south <= lat && lat <= north && west <= lon && lon <= east && height <= max_height);
}

std::optional<RegionGuard> parse_region_guard(std::string_view item) {
    if (!item.starts_with('[')) return std::nullopt;
    RegionGuard guard;
    std::array<float, kGuardNumbers> numbers{0, 0, 0, 0, guard.max_height};
    Scanner scanner(item.substr(1));
    std::size_t count = 0;
    while (count < kGuardNumbers) {
        const auto number = scanner.real();
        if (!number) break;
        numbers[count++] = *number;
        if (!scanner.literal(',')) break;
    }
    guard.unconditional = count <= 3;
    std::tie(guard.south, guard.north) = std::minmax(numbers[0], numbers[1]);
    std::tie(guard.west, guard.east) = std::minmax(numbers[2], numbers[3]);
    guard.max_height = numbers[4];
    return guard;
}

bool take_size_conditions(std::string_view &item, float height) {
    bool met = meets_least(item, "s+", '\0', height);
    met = meets_least(item, ">", '<', height) && met;
    met = meets_most(item, "s-", '\0', height) && met;
    met = meets_most(item, "<", '>', height) && met;
    met = meets_least(item, "s+", '\0', height) && met;
    return meets_least(item, ">", '\0', height) && met;
}

MapFileItem parse_map_file_item(std::string_view body) {
    MapFileItem item;
    item.file = take_part(body);
    item.attributes = body;
    return item;
}

MapImageItem parse_image_item(std::string_view text) {
    MapImageItem item;
    item.file = take_part(text);
    item.transparent = take_part(text);
    item.x = Scanner(take_part(text)).integer().value_or(0);
    item.y = Scanner(take_part(text)).integer().value_or(0);
    return item;
}

LatLonItem parse_latlon_item(std::string_view text) {
    LatLonItem item;
    if (const auto spacing = whole_number(text.substr(0, text.find(':')))) {
        item.lat_spacing = item.lon_spacing = *spacing;
        take_part(text);
    } else if (text.starts_with(':')) {
        take_part(text);
    }
    if (const auto spacing = whole_number(text.substr(0, text.find(':')))) {
        item.lon_spacing = *spacing;
        take_part(text);
    }
    item.attributes = text;
    return item;
}
