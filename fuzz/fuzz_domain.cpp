/// Domain strings and region lines, and the projections that they lead to.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/map/current_map.h"
#include "plot/places/region.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool quiet = [] {
        MESS_set(1, 0);
        MESS_set(0, 0);
        return RES_put("file_path", "/nonexistent") == 0;
    }();
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    // The region "var" would ask at the terminal.
    if (!quiet || text.find_first_of("vV") != std::string_view::npos) return 0;
    PlotDomain domain;
    if (DOM_decode(text, domain) <= 0) return 0;
    MAP_domain(&domain);
    const Rect limits = MAP_get_limits();
    if (!std::isfinite(limits.xmin + limits.xmax + limits.ymin + limits.ymax)) std::abort();
    for (const float lat : {-90.0F, -89.0F, -30.0F, 0.0F, 45.0F, 90.0F}) {
        for (const float lon : {-180.0F, -97.0F, 0.0F, 33.0F, 180.0F}) {
            float x = 0, y = 0, lat2 = 0, lon2 = 0;
            MAP_tran(x, y, lat, lon);
            MAP_untran(lat2, lon2, x, y);
            MAP_offset(x, y, x, y, lon, lat);
            if (!std::isfinite(x + y + lat2 + lon2)) std::abort();
        }
    }
    return 0;
}
