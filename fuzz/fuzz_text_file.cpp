// The text files of places and plots: cities, regions, watch bulletins, plot variables.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "lib/report/message.h"
#include "plot/places/city.h"
#include "plot/places/region.h"
#include "plot/places/region_lines.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch_text.h"
#include "scratch_file.h"

namespace {

void read_cities(const std::string &name) {
    int count = 0;
    const int file = CTY_open_file(name.c_str(), count);
    CityEntry entry;
    while (CTY_read(file, entry) >= 0)
        if (entry.name.size() > 20 || entry.id.size() > 9) std::abort();
    CTY_close(file);
    CTY_get(name.c_str(), "KLSX", entry);
    CTY_get(name.c_str(), "72434", entry);
    (void)CTY_store(name.c_str(), 1, PlotDomain{}, 3);
    CityStation station;
    (void)CTY_search("KLSX", station);
}

void read_regions(const std::string &name) {
    if (DOM_read_menu(name) < 0) std::abort();
    std::string domain;
    (void)DOM_search_file(name, "a", domain);
    (void)DOM_search_file(name, "", domain);
}

void read_watches(std::string_view text) {
    for (const WatchBulletin &bulletin : parse_watch_text(text)) {
        if (bulletin.box.corners.size() < 3) std::abort();
        (void)watch_in_force(bulletin, 1'057'356'000);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const int quiet = MESS_set(0, 0);
    static_cast<void>(quiet);
    if (size < 1) return 0;
    const std::string_view text(reinterpret_cast<const char *>(data + 1), size - 1);
    const ScratchFile file(text);
    switch (data[0] % 4) {
    case 0: read_cities(file.name()); break;
    case 1: read_regions(file.name()); break;
    case 2: read_watches(text); break;
    default: VAR_known_names(file.name()); (void)VAR_setup(file.name());
    }
    return 0;
}
