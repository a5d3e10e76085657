#include "plot/background/background_map.h"

#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include "graphics/images/capture.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/metafile_reader.h"
#include "graphics/text/font.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/background/item.h"
#include "plot/background/outline.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/map/settings.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"

namespace {

/// Where the walk through the region blocks of a map list stands.
enum class RegionState {
    ended = -1,  ///< the block that matched is over
    missed = 0,  ///< in a block that does not match
    outside = 1, ///< before the first block
    matched = 2  ///< in the block that matches
};

struct State {
    std::string map_name;                      ///< the map list; chosen at the first use and kept
    int over = kMapUnderlay | kMapOverlay;     ///< mask of the current pass
    RegionState region = RegionState::outside; ///< restarts with every MAP_draw
    MapStyle style = MapStyle::lines;          ///< of the current map file item
};
State state;

constexpr float kLabelHeight = 0.018F, kDiagramLabelHeight = 0.015F; ///< fractions of the domain height
constexpr std::string_view kListPrefix = "fi:";

/// A regional map of North America serves up to this height, plane units.
constexpr float kRegionalHeight = 75;

bool in_north_america() {
    const float lat = MAP_get_clat(), lon = MAP_get_clon();
    return lat > 25 && lat < 80 && lon > -160 && lon < -65 && MAP_get_vert() < kRegionalHeight;
}

const std::string &choose_map_list() {
    if (const char *named = RES_get("map_file"))
        state.map_name = named;
    else if (state.map_name.empty())
        state.map_name = in_north_america() ? "vyx.map" : "cont.map,country.map";
    return state.map_name;
}

void enter_region(const RegionGuard &guard) {
    if (state.region == RegionState::matched)
        state.region = RegionState::ended;
    else if (guard.matches(MAP_get_clat(), MAP_get_clon(), MAP_get_vert()))
        state.region = RegionState::matched;
    else if (state.region == RegionState::outside)
        state.region = RegionState::missed;
}

/// The attributes that an item of the map list has itself.
void parse_own(std::string_view own, Attribute &record) {
    ATTRIB_check("map_file", own);
    ATTRIB_parse(own, record);
}

/// Line and text attributes of latitude and longitude lines; false when they are not to be drawn.
bool set_grid_attributes(std::string_view own) {
    const bool is_map = is_map_projection(MAP_get_proj());
    Attribute record;
    if (own.empty())
        ATTRIB_get("color_line", is_map ? "magenta:s4" : "red", record);
    else
        parse_own(own, record);
    // Nothing of the lines and texts before.
    GPH_line_attr(nullptr);
    GPH_text_attr(nullptr, 0);
    GPH_line_attr(&record);
    GPH_text_attr(&record, (is_map ? kLabelHeight : kDiagramLabelHeight) * MAP_get_vert());
    return record.color != kColorBackground;
}

int draw_grid_item(std::string_view text) {
    const LatLonItem item = parse_latlon_item(text);
    if (set_grid_attributes(item.attributes)) MAP_lines(item.lat_spacing, item.lon_spacing);
    return 0;
}

Attribute map_attributes(std::string_view own) {
    Attribute record;
    if (!own.empty())
        parse_own(own, record);
    else if (MAP_get_fill_cont() != 0)
        ATTRIB_get("color_cmap", "black", record);
    else
        ATTRIB_get("color_map", "red", record);
    return record;
}

int draw_map_item(std::string_view body) {
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    PLT_mess("Map: %s", std::string(body).c_str());
    const MapFileItem item = parse_map_file_item(body);
    const Attribute record = map_attributes(item.attributes);
    GPH_line_attr(&record);
    state.style = record.fill == kMissing ? MapStyle::lines : MapStyle::areas;
    if (state.style == MapStyle::areas) GPH_fill_attr(&record);
    Stream stream = FILE_open_data(item.file);
    if (!stream) {
        const int fault = errno;
        MESS_print(kWarn, "MAP_process: Map file not found: %s\n", std::string(item.file).c_str());
        if (fault != ENOENT) MESS_print_fault(kWarn, "MAP_process", item.file, fault);
        return -1;
    }
    if (record.color != kColorBackground) MAP_map(stream);
    return 0;
}

/// "file", "file:colour:x:y" or "file::x:y". The image lies in the map's panel, or in the whole view.
int draw_image_item(std::string_view text, bool whole_view) {
    PLT_mess("Map-image: %s", std::string(text).c_str());
    if (!gtype_is_WIN_PIX()) {
        MESS_print(kWarn, "MAP_process: Only pictures of pixels have images: %s\n",
                   std::string(text).c_str());
        return -1;
    }
    const MapImageItem item = parse_image_item(text);
    std::string directory;
    (void)RES_getval("image_path", directory, ResourceKind::directory); // unset, the default stays
    Rgb transparent;
    const bool has_transparent = gnamed_color(item.transparent, transparent);
    if (whole_view) GPH_trans(kViewTransform);
    const int drawn = goverlay_image_file(FILE_add_path(directory, item.file),
                                          has_transparent ? &transparent : nullptr, item.x, item.y);
    if (whole_view) GPH_trans(kDataTransform);
    return drawn == 1 ? 0 : -1;
}

/// A metafile has transforms and attributes of its own; behind it the plot's are as they were.
int draw_metafile_item(std::string_view file) {
    PLT_mess("Map-metafile: %s", std::string(file).c_str());
    std::array<std::pair<Rect, Rect>, kTransformCount> saved;
    for (std::size_t i = 0; i < saved.size(); ++i)
        ginq_norm_tran(static_cast<int>(i), saved[i].first, saved[i].second);
    const AttributeSet attributes = gget_attributes();
    const int drawn = gread_metafile(FILE_find_data(file));
    gset_attributes(attributes);
    for (std::size_t i = 1; i < saved.size(); ++i) {
        gset_win(static_cast<int>(i), saved[i].first);
        gset_vp(static_cast<int>(i), saved[i].second);
    }
    GPH_trans(kDataTransform);
    return drawn;
}

void process_list_file(std::string_view name) {
    Stream stream = FILE_open_data(name);
    if (!stream) {
        const int fault = errno;
        MESS_print(kWarn, "MAP_draw: Unable to open map list file: %s\n", std::string(name).c_str());
        MESS_print_fault(kWarn, "MAP_draw", name, fault);
        return;
    }
    std::string line;
    while (stream.get_line(line)) {
        Scanner words(line);
        while (const auto word = words.word()) MAP_process(*word);
    }
}

} // namespace

int MAP_draw(int mask) {
    if (FLAG_getplot(8) == 0) return 0;
    state.over = mask;
    GPH_trans(kDataTransform);
    GPH_line_attr(nullptr);
    (void)GPH_text_font({}); // told where it fails
    state.region = RegionState::outside;
    for (const std::string &entry : parse_string(choose_map_list(), ',')) {
        if (entry.starts_with(kListPrefix))
            process_list_file(std::string_view(entry).substr(kListPrefix.size()));
        else
            MAP_process(entry);
    }
    const LatLonSettings &lines = MAP_get_latlon();
    if (lines.lat_spacing > 0 && set_grid_attributes({})) MAP_lines(lines.lat_spacing, lines.lon_spacing);
    return 0;
}

int MAP_process(std::string_view item) {
    // A guard without a prefix guards the items of every pass.
    const bool wanted = item.starts_with('[') || (take_map_pass(item) & state.over) != 0;
    if (!wanted) return -1;
    if (const auto guard = parse_region_guard(item)) {
        enter_region(*guard);
        return 0;
    }
    if (state.region != RegionState::outside && state.region != RegionState::matched) return -1;
    if (!take_size_conditions(item, MAP_get_vert())) return -1;
    if (item.starts_with(kMapImagePrefix)) return draw_image_item(item.substr(kMapImagePrefix.size()), false);
    if (item.starts_with(kViewImagePrefix))
        return draw_image_item(item.substr(kViewImagePrefix.size()), true);
    if (item.starts_with(kMetafilePrefix)) return draw_metafile_item(item.substr(kMetafilePrefix.size()));
    if (is_foreign_body(item)) {
        MESS_print(kWarn, "MAP_process: Not available in this version: %s\n", std::string(item).c_str());
        return -1;
    }
    if (item.starts_with(kMapLatLonPrefix)) return draw_grid_item(item.substr(kMapLatLonPrefix.size()));
    return draw_map_item(item);
}

int MAP_map(Stream &stream) {
    return draw_map_file(stream.get(), state.style);
}
