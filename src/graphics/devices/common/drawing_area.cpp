#include "graphics/devices/common/drawing_area.h"

#include <algorithm>
#include <string>

#include "graphics/devices/common/panel.h"
#include "lib/report/message.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

/// Far beyond any plotter, and safe in every integer sum.
constexpr float kLargestUnits = 1e6F;

int to_units(float value) {
    return static_cast<int>(std::clamp(value, -kLargestUnits, kLargestUnits));
}

bool meets(const DrawingArea &area, const DrawingArea &page) {
    return area.x < page.x + page.width && area.x + area.width > page.x && area.y < page.y + page.height &&
           area.y + area.height > page.y;
}

bool refuse(std::string_view geometry) {
    MESS_print(kError, "geometry: Nothing of the page lies in: %s\n", std::string(geometry).c_str());
    return false;
}

bool ignore(std::string_view geometry) {
    MESS_print(kWarn, "geometry: Not understood: %s\n", std::string(geometry).c_str());
    return true;
}

bool place_in_panel(std::string_view geometry, const GeometryUnits &units, DrawingArea &page) {
    PanelFractions panel;
    Scanner scan(geometry.substr(1));
    if (const auto width = scan.real()) panel.width = *width;
    scan.literal('x');
    if (const auto height = scan.real()) panel.height = *height;
    if (const auto x = scan.real()) panel.x = *x;
    if (const auto y = scan.real()) panel.y = *y;
    panel = panel_fractions(panel.width, panel.height, panel.x, panel.y, units.downwards);
    const auto width = static_cast<float>(page.width), height = static_cast<float>(page.height);
    const DrawingArea placed{to_units(width * panel.width), to_units(height * panel.height),
                             page.x + to_units(width * panel.x), page.y + to_units(height * panel.y)};
    if (!panel.meets_page() || placed.width <= 0 || placed.height <= 0) return refuse(geometry);
    page = placed;
    return true;
}

} // namespace

bool place_by_geometry(std::string_view geometry, const GeometryUnits &units, DrawingArea &area) {
    if (geometry.empty()) return true;
    if (begins_with(geometry, "P")) return place_in_panel(geometry, units, area);
    const DrawingArea whole = area;
    const auto scaled = [&units](int value) { return to_units(static_cast<float>(value) * units.scale); };
    const auto place = [&](Scanner &scan) {
        const auto x = scan.integer();
        const auto y = scan.integer();
        if (scan.failed()) return false;
        area.x = scaled(*x) + units.offset_x;
        area.y = scaled(*y) + units.offset_y;
        return true;
    };
    Scanner scan(geometry);
    const auto width = scan.integer();
    scan.literal('x');
    const auto height = scan.integer();
    if (scan.failed()) {
        Scanner position_only(geometry);
        if (!place(position_only)) return ignore(geometry);
    } else {
        area.width = scaled(*width);
        area.height = scaled(*height);
        if (area.width <= 0 || area.height <= 0) return refuse(geometry);
        if (!trimmed(scan.rest()).empty() && !place(scan)) return ignore(geometry);
    }
    return meets(area, whole) || refuse(geometry);
}
