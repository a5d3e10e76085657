#include "plot/symbols/watch.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"

namespace {

struct State {
    std::vector<WatchBox> boxes;
    bool labels = true;
};
State state;

constexpr std::size_t kMaxFiles = 2000, kMaxFileSize = 1 << 20;
constexpr int kLongestWatch = 8 * 3600, kShortestPeriod = 60; ///< seconds
constexpr float kLabelHeight = 0.02F;                         ///< fraction of the height of the plot

/// Files of the naming convention "watch", oldest first; empty when there is no such convention.
std::vector<std::string> named_files(const DateRecord &date) {
    std::vector<std::string> names;
    FILE_save_name_conv();
    if (FILE_set_name("watch") == 1) {
        const int period = std::max(FILE_get_offset(), kShortestPeriod);
        for (int back = kLongestWatch; back >= 0; back -= std::min(period, kLongestWatch)) {
            std::string name;
            FILE_set_date_off(date, -back, name);
            if (FILE_exist(name) == 1 && (names.empty() || names.back() != name)) names.push_back(name);
        }
    }
    FILE_restore_name_conv();
    return names;
}

/// Every regular file directly in the watch path, by name.
std::vector<std::string> folder_files() {
    std::string folder;
    std::vector<std::string> names;
    if (RES_getval("watch_path", folder, ResourceKind::directory) != 1 || folder.empty()) return names;
    if (FILE_is_dir(folder) == 0) WORD_tell("watch_path", "Not a directory: " + folder);
    std::error_code error;
    namespace fs = std::filesystem;
    for (fs::directory_iterator entry(FILE_add_user_path(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unreadable;
        if (entry->is_regular_file(unreadable) && names.size() < kMaxFiles)
            names.push_back(entry->path().string());
    }
    std::ranges::sort(names);
    return names;
}

/// A later bulletin of the same watch takes the place of the earlier one.
void enter(WatchBox box) {
    const auto same = std::ranges::find_if(state.boxes, [&](const WatchBox &other) {
        return other.kind == box.kind && other.number == box.number;
    });
    if (same == state.boxes.end())
        state.boxes.push_back(std::move(box));
    else
        *same = std::move(box);
}

void read_watches(const std::string &file, const DateRecord &date) {
    Stream stream = FILE_open(file, "r");
    if (!stream) {
        const int fault = errno;
        MESS_print(kWarn, "WATCH_decode: Unable to open file:%s\n", file.c_str());
        MESS_print_fault(kWarn, "WATCH_decode", file, fault);
        return;
    }
    DateRecord copy = date;
    const std::int64_t now = DATE_num_sec(copy);
    const std::vector<std::byte> bytes = stream.read_all(kMaxFileSize);
    const std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    for (WatchBulletin &bulletin : parse_watch_text(text))
        if (date.year == kMissing || watch_in_force(bulletin, now)) enter(std::move(bulletin.box));
}

void draw_box(const WatchBox &box, const Attribute &outline, const Attribute &label) {
    std::vector<Point> corners;
    for (const WatchPoint &corner : box.corners) {
        Point point;
        if (MAP_tran(point.x, point.y, corner.lat, corner.lon) == 1) corners.push_back(point);
    }
    if (corners.size() < 3) return;
    Point middle;
    for (const Point &corner : corners) {
        middle.x += corner.x / static_cast<float>(corners.size());
        middle.y += corner.y / static_cast<float>(corners.size());
    }
    corners.push_back(corners.front());
    GPH_line_attr(&outline);
    if (outline.color != kColorBackground) gpolyline(corners);
    if (!state.labels || label.color == kColorBackground) return;
    GPH_text_attr(&label, kLabelHeight * MAP_get_vert());
    GPH_text_align(kAlignCenter, kAlignHalf);
    GPH_printf(middle.x, middle.y, "%s %d", box.kind == "TORNADO" ? "TOR" : "SVR", box.number);
}

} // namespace

int WATCH_decode(const DateRecord &date) {
    state.boxes.clear();
    std::vector<std::string> files = named_files(date);
    if (files.empty()) files = folder_files();
    for (const std::string &file : files) read_watches(file, date);
    return static_cast<int>(state.boxes.size());
}

const std::vector<WatchBox> &WATCH_boxes() {
    return state.boxes;
}

void WATCH_set_label(int flag) {
    state.labels = flag != 0;
}

void WATCH_plot() {
    Attribute outline, label;
    ATTRIB_parse("yellow:w2", outline);
    ATTRIB_parse("red", label);
    const std::vector<std::string> colors = RES_getvals("color_watch");
    if (!colors.empty() && !colors[0].empty()) ATTRIB_parse(colors[0], outline);
    if (colors.size() > 1 && !colors[1].empty()) ATTRIB_parse(colors[1], label);
    GPH_trans(kDataTransform);
    GPH_line_attr(nullptr);
    for (const WatchBox &box : state.boxes) draw_box(box, outline, label);
}
