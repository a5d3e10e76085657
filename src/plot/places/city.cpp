#include "plot/places/city.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <map>
#include <optional>

#include "lib/report/message.h"
#include "lib/report/text_lines.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/text/keyed_table.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/map/current_map.h"
#include "plot/places/city_selection.h"

namespace {

constexpr std::string_view kDefaultFile = "sao.cty";
constexpr int kLineBytes = 59; // of a usual entry, to estimate their number
constexpr int kMostEstimated = 4000;
constexpr float kHighestElevation = 9000; // metres; above, the elevation is not known
constexpr int kNoWmo = 99999;
constexpr std::size_t kStationNameLength = 12;
constexpr std::size_t kLongestLine = 1000;

enum StoreMode : int { kStoreEntries = 1, kStoreStations = 2, kStoreStationsByPlace = 3 };
enum KeyIndex : std::size_t { kKeyName = 1, kKeyNumber = 2 };

struct State {
    std::map<int, TextLines> files; ///< open databases by descriptor
    int next_descriptor = 1;        ///< never used twice, so an old descriptor never meets a new file
    int id_type = 0;
    std::optional<Table<CityStation>> stored; ///< by name text, number text and, in mode 3, place
    int stored_mode = 0;
    int stored_descriptor = 0;
};

State state;

TextLines *open_file(int fd) {
    const auto found = state.files.find(fd);
    return found == state.files.end() ? nullptr : &found->second;
}

int enter_file(TextLines &&lines) {
    if (!lines) return -1;
    state.files.emplace(state.next_descriptor, std::move(lines));
    return state.next_descriptor++;
}

// A digit, with a star before it, behind it, or both.
void set_priority(CityEntry &entry, std::string_view token) {
    if (token.starts_with('*')) {
        entry.star_before = '*';
        token.remove_prefix(1);
    }
    if (token.empty() || token[0] < '0' || token[0] > '9') return;
    entry.priority = token[0] - '0';
    if (token.substr(1).starts_with('*')) entry.star_after = '*';
}

int decode_entry(std::string_view line, CityEntry &entry, const TextLines &lines) {
    entry = CityEntry{};
    Scanner scan(line);
    int fields = 0;
    const auto count = [&fields](const auto &field) {
        if (field) ++fields;
        return field;
    };
    const struct {
        std::string &target;
        std::size_t width;
    } words[] = {{entry.name, 20}, {entry.state, 2}, {entry.country, 2}, {entry.id, 9}};
    for (const auto &word : words) {
        const auto text = count(scan.word(word.width));
        if (text) word.target = *text;
        // What is too long is read as the beginning of the next field.
        if (text && !line.starts_with('#') && text->size() == word.width && !scan.at_end() &&
            scan.rest().front() != ' ' && scan.rest().front() != '\t')
            lines.tell(format_text("\"%s\" goes on beyond the width of its field, %zu",
                                   std::string(*text).c_str(), word.width));
    }
    if (const auto token = count(scan.word())) set_priority(entry, *token);
    for (float *target : {&entry.lat, &entry.lon, &entry.elevation})
        if (const auto number = count(scan.real())) *target = *number;
    if (entry.elevation > kHighestElevation) entry.elevation = kMissingF;
    for (int *target : {&entry.wmo, &entry.extra})
        if (const auto number = count(scan.integer())) *target = *number;
    return fields;
}

std::string number_text(const CityEntry &entry) {
    return format_text(entry.country == "B_" ? "b%05d" : "%05d", entry.wmo);
}

bool has_no_id(const CityEntry &entry) {
    return entry.id.size() > 1 && entry.id[1] == '-';
}

bool all_digits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A WMO number as an identifier: its first digit as a letter ("A" for 0), the other four as they are.
std::string wmo_to_id(int wmo) {
    std::string text = format_text("%05d", std::clamp(wmo, 0, kNoWmo));
    text[0] = static_cast<char>('A' + (text[0] - '0'));
    return text;
}

/// The WMO number text of such an identifier; empty when it is none.
std::string id_to_wmo(std::string_view id) {
    if (id.size() != 5 || id[0] < 'A' || id[0] > 'J' || !all_digits(id.substr(1))) return "";
    std::string text(id);
    text[0] = static_cast<char>('0' + (id[0] - 'A'));
    return text;
}

std::string station_name(const CityEntry &entry, const std::string &number) {
    switch (state.id_type) {
    case 1: return entry.wmo == kNoWmo ? entry.id : number;
    case 2:
        if (!has_no_id(entry)) return entry.id;
        return entry.country == "B_" ? number : wmo_to_id(entry.wmo);
    default: return has_no_id(entry) ? number : entry.id;
    }
}

void store_entry(const CityEntry &entry, float x, float y) {
    const std::string number = number_text(entry);
    CityStation station;
    station.wmo = entry.wmo;
    station.x = x;
    station.y = y;
    station.elevation = entry.elevation;
    station.priority = entry.priority;
    if (state.stored_mode == kStoreEntries) {
        station.name = entry.id;
        station.entry = entry;
        state.stored->enter(std::move(station), {entry.id, number});
        return;
    }
    station.name = station_name(entry, number).substr(0, kStationNameLength);
    const std::string name = station.name;
    const std::string place =
        format_text("%5.0f%6.0f", static_cast<double>(entry.lat) * 10, static_cast<double>(entry.lon) * 10);
    state.stored->enter(std::move(station), {name, number, place});
}

} // namespace

int CTY_open_file(const char *name, int &count) {
    count = 0;
    std::string file(name != nullptr ? std::string_view(name) : kDefaultFile);
    if (const char *named = RES_get("city_file"); named != nullptr && *named != '\0') file = named;
    if (file == "none") return -1;
    const std::string path = FILE_find_data(file);
    const int fd = CTY_open(path, 0, 0);
    if (fd < 0) {
        const int fault = errno;
        MESS_print(kWarn, "CTY_open_file: Database file not found: %s\n", path.c_str());
        if (fault != ENOENT) MESS_print_fault(kWarn, "CTY_open_file", path, fault);
        return -1;
    }
    count = static_cast<int>(std::clamp<std::int64_t>(FILE_size(path) / kLineBytes, 0, kMostEstimated));
    return fd;
}

int CTY_open(std::string_view path, int mode, int) {
    if (mode != 0 && mode != 1) return -1;
    return enter_file(TextLines(FILE_open(path, mode == 0 ? "r" : "w"), path, kLongestLine));
}

int CTY_read(int fd, CityEntry &entry) {
    TextLines *lines = open_file(fd);
    if (lines == nullptr) return -1;
    std::string line;
    while (lines->next(line))
        if (const int fields = decode_entry(line, entry, *lines); fields > 0) return fields;
    return -1;
}

int CTY_rewind(int fd) {
    TextLines *lines = open_file(fd);
    if (lines == nullptr) return -1;
    lines->restart();
    return 0;
}

int CTY_close(int fd) {
    return state.files.erase(fd) > 0 ? 0 : -1;
}

int CTY_get(const char *file, std::string_view id, CityEntry &entry) {
    int count = 0;
    const int fd = CTY_open_file(file, count);
    if (fd < 0) return 0;
    MESS_print(kMess, "Searching the city database file for: %s ...\n", std::string(id).c_str());
    (void)CTY_rewind(fd); // it has just been opened
    bool found = false;
    CityEntry read;
    while (!found && !id.empty() && CTY_read(fd, read) > 0)
        found =
            stricmp(id, read.id) == 0 || stricmp(id, read.name) == 0 || id == format_text("%05d", read.wmo);
    CTY_close(fd);
    if (found) entry = read;
    return found ? 1 : 0;
}

int CTY_get_loc(const char *file, std::string_view id, float &lat, float &lon) {
    CityEntry entry;
    if (CTY_get(file, id, entry) == 0 || is_missing(entry.lat) || is_missing(entry.lon)) return 0;
    lat = entry.lat;
    lon = entry.lon;
    return 1;
}

int CTY_get_prior() {
    int priority = 10;
    (void)RES_getval("stat_prior", priority); // unset, the default stays
    return priority;
}

void CTY_set_id_type(int type) {
    state.id_type = type;
}

int CTY_store(const char *file, int mode, const PlotDomain &domain, int priority) {
    int count = 0;
    CTY_close(state.stored_descriptor);
    const int fd = CTY_open_file(file, count);
    if (fd < 0) return 0;
    state.stored_descriptor = fd;
    state.stored_mode = mode;
    MAP_domain(&domain);
    MESS_print(kMess, "Reading the city database file...\n");
    const CitySelection selection(RES_getvals("identifier"), domain);
    if (is_missing(priority)) priority = CTY_get_prior();
    (void)CTY_rewind(fd); // it has just been opened
    state.stored.emplace(static_cast<std::size_t>(count), mode == kStoreStationsByPlace ? 3U : 2U);
    CityEntry entry;
    while (CTY_read(fd, entry) > 0) {
        if (entry.priority > priority || !selection.passes(entry)) continue;
        float x = kMissingF, y = kMissingF;
        if (MAP_tran(x, y, entry.lat, entry.lon) == 1 && MAP_in_grid_domain(x, y) == 1)
            store_entry(entry, x, y);
    }
    return fd;
}

int CTY_search(std::string_view text, CityStation &station) {
    if (!state.stored) return 0;
    std::string key(text);
    KeyIndex index = kKeyName;
    if (const std::string number = id_to_wmo(text); !number.empty()) {
        key = number;
        index = kKeyNumber;
    } else if ((text.size() == 5 && all_digits(text)) || (text.size() == 6 && text[0] == 'b')) {
        index = kKeyNumber;
    }
    const CityStation *found = state.stored->search(index, key);
    if (found == nullptr) return 0;
    station = *found;
    return 1;
}
