#include "plot/projection/names.h"

#include <array>

#include "lib/text/strings.h"
#include "plot/domain/plot_domain.h"

namespace {

struct ProjectionName {
    std::string_view prefix;
    int code;
    std::string_view printed;
};

// In the order of matching. A printed name is not always read back as its code: "lambaz" begins with "lamb".
constexpr std::array kNames{
    ProjectionName{"ll", kProjLatLon, "latlon"},    ProjectionName{"lat", kProjLatLon, "latlon"},
    ProjectionName{"polar", kProjPolar, "pstereo"}, ProjectionName{"ps", kProjPolar, "pstereo"},
    ProjectionName{"sat", kProjSatellite, "sat"},   ProjectionName{"lamb", kProjLambert, "lamb"},
    ProjectionName{"lc", kProjLambert, "lamb"},     ProjectionName{"la", kProjLambertAzim, "lambaz"},
    ProjectionName{"gn", kProjGnomonic, "gnom"},    ProjectionName{"or", kProjOrtho, "ortho"},
    ProjectionName{"mo", kProjMollweide, "moll"},   ProjectionName{"me", kProjMercator, "merc"},
    ProjectionName{"pix", kProjPixel, "pixel"},     ProjectionName{"xy", kProjXY, "xy"},
    ProjectionName{"xlogy", kProjXLogY, "xlogp"},   ProjectionName{"xlogp", kProjXLogY, "xlogp"},
    ProjectionName{"cat", kProjCat, "cat"},         ProjectionName{"skewt", kProjSkewT, "skewt"},
    ProjectionName{"ema", kProjEma, "ema"},         ProjectionName{"teph", kProjTeph, ""},
    ProjectionName{"rteph", kProjRTeph, ""},        ProjectionName{"therm", kProjSkewT, "skewt"},
    ProjectionName{"stuve", kProjStuve, "stuve"},   ProjectionName{"hodo", kProjHodo, "polar"},
    ProjectionName{"vert", kProjXLogY, "xlogp"},    ProjectionName{"xp", kProjXP, ""},
    ProjectionName{"zoom", kProjZoom, "zoom"},      ProjectionName{"size", kProjSize, ""},
};

constexpr bool no_prefix_hides_a_later_one() {
    for (std::size_t earlier = 0; earlier < kNames.size(); ++earlier)
        for (std::size_t later = earlier + 1; later < kNames.size(); ++later)
            if (kNames[later].prefix.starts_with(kNames[earlier].prefix)) return false;
    return true;
}
static_assert(no_prefix_hides_a_later_one());

} // namespace

int DOM_proj_str(std::string_view name) {
    for (const ProjectionName &row : kNames)
        if (begins_with(name, row.prefix)) return row.code;
    return stricmp(name, "miss") == 0 ? kProjNone : kProjUnknown;
}

int MAP_proj_str(std::string_view name) {
    return DOM_proj_str(name);
}

std::string_view projection_name(int code) {
    if (code == kProjXZ) return "xz"; // no name is read as this code
    for (const ProjectionName &row : kNames)
        if (row.code == code) return row.printed;
    return "";
}
