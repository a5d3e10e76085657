#include "graphics/devices/print_setup.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "graphics/devices/paper.h"
#include "lib/calendar.h"
#include "lib/message.h"
#include "lib/resource.h"
#include "lib/scan.h"
#include "lib/text.h"

namespace {

/// Far beyond any plotter, and safe in every integer sum.
constexpr float kLargestUnits = 1e6F;
/// Columns and rows of a panel grid.
constexpr float kLargestGrid = 8.0F;

int to_units(float value) {
    return static_cast<int>(std::clamp(value, -kLargestUnits, kLargestUnits));
}

const char *first_set(std::initializer_list<const char *> variables) {
    for (const char *variable : variables) {
        const char *value = std::getenv(variable);
        if (value && *value) return value;
    }
    return nullptr;
}

/// Fractions of the page, y upwards.
struct Panel {
    float width = 1, height = 1, x = 0, y = 0;
};

Panel parse_panel(std::string_view text) {
    Panel panel;
    Scanner scan(text);
    if (const auto width = scan.real()) panel.width = *width;
    scan.literal('x');
    if (const auto height = scan.real()) panel.height = *height;
    if (const auto x = scan.real()) panel.x = *x;
    if (const auto y = scan.real()) panel.y = *y;
    if (panel.width > 1) {
        const float columns = std::clamp(panel.width, 1.0F, kLargestGrid);
        const float rows = std::clamp(panel.height, 1.0F, kLargestGrid);
        // Rows count from the top, device units from the bottom.
        panel = {1 / columns, 1 / rows, panel.x / columns, 1 - (panel.y + 1) / rows};
    }
    return panel;
}

void place_in_panel(std::string_view text, PrintPage &page) {
    const Panel panel = parse_panel(text);
    const auto width = static_cast<float>(page.width), height = static_cast<float>(page.height);
    const PrintPage placed{to_units(width * panel.width), to_units(height * panel.height),
                           page.x + to_units(width * panel.x), page.y + to_units(height * panel.y)};
    if (placed.width > 0 && placed.height > 0) page = placed;
}

} // namespace

PrintOutput parse_print_output(std::string_view name) {
    if (name.starts_with('|')) return {PrintOutputKind::pipe, std::string(name.substr(1))};
    if (name.starts_with('+')) return {PrintOutputKind::append, std::string(name.substr(1))};
    return {PrintOutputKind::create, std::string(name)};
}

Stream open_print_output(const PrintOutput &output) {
    switch (output.kind) {
    case PrintOutputKind::pipe: return FILE_open("|" + output.name, "w");
    case PrintOutputKind::append: return FILE_open(output.name, "a");
    case PrintOutputKind::create: break;
    }
    return FILE_open(output.name, "w");
}

void report_print_output(const PrintOutput &output) {
    switch (output.kind) {
    case PrintOutputKind::pipe: MESS_print(kMess, "Spooling to: %s\n", output.name.c_str()); return;
    case PrintOutputKind::append: MESS_print(kMess, "Appending to: %s\n", output.name.c_str()); return;
    case PrintOutputKind::create: MESS_print(kMess, "Creating: %s\n", output.name.c_str()); return;
    }
}

std::vector<std::string> split_device_spec(std::string_view spec) {
    return parse_string(spec, ',');
}

std::string print_file_name(const std::vector<std::string> &spec,
                            std::initializer_list<const char *> variables, std::string_view fallback) {
    if (!spec.empty() && !spec.front().empty()) return spec.front();
    const char *named = first_set(variables);
    return named ? std::string(named) : std::string(fallback);
}

std::optional<std::string_view> option_value(std::string_view word, std::string_view keyword) {
    if (!begins_with(word, keyword) || word.size() <= keyword.size()) return std::nullopt;
    return word.substr(keyword.size() + 1);
}

std::optional<PageInches> parse_page_size(std::string_view word) {
    if (const auto paper = find_paper(word)) return PageInches{paper->width_inch, paper->height_inch};
    const auto value = option_value(word, "sz");
    if (!value) return std::nullopt;
    Scanner scan(*value);
    const auto width = scan.real();
    scan.literal('x');
    const auto height = scan.real();
    if (scan.failed()) return std::nullopt;
    const auto [low, high] = std::minmax(*width, *height);
    if (low < kSmallestPage || high > kLargestPage) return std::nullopt;
    return PageInches{*width, *height};
}

void place_by_geometry(std::string_view geometry, const GeometryUnits &units, PrintPage &page) {
    if (begins_with(geometry, "P")) {
        place_in_panel(geometry.substr(1), page);
        return;
    }
    const auto scaled = [&units](int value) { return to_units(static_cast<float>(value) * units.scale); };
    const auto place = [&](Scanner &scan) {
        const auto x = scan.integer();
        const auto y = scan.integer();
        if (scan.failed()) return;
        page.x = scaled(*x) + units.offset_x;
        page.y = scaled(*y) + units.offset_y;
    };
    Scanner scan(geometry);
    const auto width = scan.integer();
    scan.literal('x');
    const auto height = scan.integer();
    if (scan.failed()) {
        Scanner position_only(geometry);
        place(position_only);
        return;
    }
    if (scaled(*width) > 0 && scaled(*height) > 0) {
        page.width = scaled(*width);
        page.height = scaled(*height);
    }
    place(scan);
}

std::string print_geometry(std::initializer_list<const char *> variables) {
    if (const char *resource = RES_get("geometry"); resource && *resource) return resource;
    const char *named = first_set(variables);
    return named ? named : "";
}

std::string local_time_text() {
    static constexpr std::array kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t now = DATE_get_time();
    std::tm local{};
    if (!localtime_r(&now, &local)) return "\n";
    return format_text("%s %s %2d %02d:%02d:%02d %d\n", kDays[static_cast<std::size_t>(local.tm_wday)],
                       kMonths[static_cast<std::size_t>(local.tm_mon)], local.tm_mday, local.tm_hour,
                       local.tm_min, local.tm_sec, local.tm_year + 1900);
}
