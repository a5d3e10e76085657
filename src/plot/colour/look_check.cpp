#include "plot/colour/look_check.h"

#include <algorithm>
#include <array>
#include <string>

#include "graphics/core/types.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_list.h"
#include "plot/colour/levels.h"
#include "plot/colour/named_colors.h"

namespace {

/// Resources that hold an attribute string, or several, separated by commas.
constexpr std::array<std::string_view, 11> kAttributeResources{
    "color_text", "color_data", "color_map",   "color_grid",   "color_line", "color_wind",
    "color_cmap", "color_cont", "color_label", "color_clabel", "color_watch"};

void check_levels() {
    const std::vector<std::string> elements = RES_getvals("color_fill");
    const bool file = elements.size() == 1 && elements.front().find('-') == std::string::npos;
    if (file) return; // one that cannot be read is told
    if (elements.size() > kMaxLevels)
        WORD_tell("color_fill",
                  format_text("Of %zu levels only the first %d are taken", elements.size(), kMaxLevels));
    for (const std::string &element : elements) check_level_element("color_fill", element);
}

void check_background() {
    const char *const name = RES_get("background");
    Rgb color;
    if (name == nullptr || *name == '\0' || gis_default_background(name)) return;
    if (*name == '#' || !gnamed_color(name, color)) CLR_check("background", name);
}

void check_font() {
    const std::string_view font = gget_def_font();
    const std::vector<std::string_view> known = gget_font_names();
    const auto same = [font](std::string_view name) { return stricmp(name, font) == 0; };
    if (!font.empty() && !WORD_is_integer(font) && std::none_of(known.begin(), known.end(), same))
        WORD_unknown("plot_param", font, known, "font 1 stands in");
}

} // namespace

void PLT_check_looks() {
    for (const std::string_view resource : kAttributeResources)
        for (const std::string &text : RES_getvals(resource)) ATTRIB_check(resource, trimmed(text));
    check_levels();
    check_background();
    check_font();
}
