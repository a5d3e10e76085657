#include "radar/common/driver.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <map>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/events.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "graphics/window/surface.h"
#include "lib/files/naming.h"
#include "lib/files/series.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/system/memory_reserve.h"
#include "lib/system/stream.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/map/settings.h"
#include "plot/places/region.h"
#include "plot/session/images.h"
#include "plot/session/outcome.h"
#include "plot/session/plot_session.h"
#include "plot/session/view.h"

namespace {

constexpr int kRefreshSeconds = 60;
/// A file that changed less than kRefreshSeconds ago may still be on its way: it is looked at more often.
constexpr int kArrivalSeconds = 5;

/// Tells a file from what it was before.
struct FileStamp {
    std::int64_t modified = kMissing; ///< seconds since 1970
    std::int64_t size = kMissing;     ///< bytes
    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

struct State {
    bool series = false;
    bool started = false;                ///< a series has been drawn, and its loop begun
    bool reselected = false;             ///< `shown` is no longer what the file selection would give
    std::vector<std::string> shown;      ///< the files, oldest first
    std::vector<std::string> drawn;      ///< those of the series that is being drawn
    std::vector<std::string> unreadable; ///< tried before the first that could be read, and told
    bool lacks_file = false;             ///< a file of the series could not be read
    std::int64_t last_time = kMissing;   ///< of the last file, seconds since 1970 cut to the file interval
    FileStamp opened;                    ///< of the open file, before it was opened
    std::map<std::string, FileStamp> stamps; ///< of the files shown, before they were opened
    std::optional<std::chrono::steady_clock::time_point> found; ///< when a look met a new or changed file
};
State state;

std::int64_t time_of_file() {
    DateRecord date = FILE_get_date();
    if (is_missing(date.year)) return kMissing;
    const std::int64_t time = DATE_num_sec(date);
    return time - time % FILE_get_offset();
}

bool was_tried(const std::string &name) {
    return std::ranges::find(state.unreadable, name) != state.unreadable.end();
}

FileStamp stamp_of(const std::string &name) {
    return {FILE_modtime(name), FILE_size(name)};
}

bool open_file(const RadarSteps &steps, const std::string &name) {
    state.opened = stamp_of(name); // what is written from now on shows as a change
    return steps.open_file(name);
}

/// Opens the first file of the series that can be read and leaves it open; its name, empty when there is
/// none.
std::string open_first(const RadarSteps &steps, const DateRecord &base_date) {
    std::string name;
    FILE_set_date(&base_date, name);
    FILE_first(base_date);
    const bool series = FILE_get_num_file() != 0;
    do {
        if (was_tried(name)) continue;
        if (open_file(steps, name)) return name;
        state.unreadable.push_back(name);
    } while (series && FILE_get_next(name) == 1);
    return {};
}

/// Walks the files of the selection, or those shown when they are others by now.
class FileWalk {
public:
    explicit FileWalk(const DateRecord &base_date) {
        FILE_first(base_date);
        state.series = FILE_get_num_file() != 0;
        if (state.reselected) again_ = state.shown;
        state.drawn.clear();
    }
    bool next(std::string &name) {
        if (!state.reselected) return FILE_get_next(name) == 1;
        if (at_ >= again_.size()) return false;
        FILE_set_file(again_[at_++], name);
        return true;
    }

private:
    std::vector<std::string> again_;
    std::size_t at_ = 0;
};

/// Files that are shown no more are forgotten.
void forget_stamps() {
    std::erase_if(state.stamps, [](const auto &entry) {
        return std::ranges::find(state.shown, entry.first) == state.shown.end();
    });
}

/// Draws the open file and closes it.
void draw_open_file(const RadarSteps &steps, const std::string &name) {
    state.last_time = time_of_file();
    state.drawn.push_back(name);
    state.stamps[name] = state.opened;
    steps.plot_frame();
    steps.close_file();
}

/// A frame of its own for picture `n`, of file `name`, where frames are kept, else a page, or the window's
/// picture anew. False after a message when there can be no more.
bool begin_picture(int n, const std::string &name) {
    if (!state.series || !PLT_keeps_frames()) {
        if (gget_num_images() > 0) ginit_loop(); // those of another program, as with those of a series
        return n == 0 || gnew_page() == 0;
    }
    if (n >= kMaxFrames) {
        MESS_print(kWarn, "RADAR_plot: only the first %d files are shown\n", kMaxFrames);
        return false;
    }
    (void)gcreate_frame(n); // seen where it is selected
    gset_frame_source(n, name);
    if (gselect_frame(n) == 1) return true;
    MESS_print(kWarn, "RADAR_plot: out of memory; only the first %d files are shown\n", n);
    PLT_lack_memory();
    return false;
}

void end_picture(int n) {
    if (!state.series) {
        (void)PLT_dump(n); // what is missing is counted there
    } else if (PLT_keeps_frames()) {
        gdisplay_frame(n);
    } else {
        gupdate_window();
        (void)PLT_dump_numbered(n);
    }
}

/// Opens a file of the series unless it has been tried before. A time of a series that has no file is none.
bool open_next(const RadarSteps &steps, const std::string &name) {
    const bool opened = !was_tried(name) && open_file(steps, name);
    if (opened) return true;
    if (FILE_exist(name) == 1 || RES_getvals("filename").size() > 1) state.lacks_file = true;
    return false;
}

/// What draws a file. False, told of, when memory ran out: the file says how much it takes, so those before
/// it are shown.
template <typename Work> bool with_memory(const RadarSteps &steps, const std::string &name, Work work) {
    VYX_reserve_memory();
    try {
        work();
        return true;
    } catch (const std::bad_alloc &) {
    } catch (const std::length_error &) {
    } catch (const DrawingStopped &) {
        steps.close_file();
        throw;
    }
    steps.close_file();
    MESS_print(kError, "RADAR_plot: Out of memory at file: %s\n", name.c_str());
    PLT_lack_memory();
    return false;
}

/// Draws a file of the selection as picture number `drawn`, which counts on. False when there can be no more.
bool draw_file(const RadarSteps &steps, const std::string &name, bool is_open, int &drawn) {
    const bool ready = is_open || open_next(steps, name);
    if (!ready && !state.series) PLT_exit(kExitNoFile);
    if (!ready) return true;
    if (!begin_picture(drawn, name)) {
        PLT_miss_picture();
        return false;
    }
    draw_open_file(steps, name);
    end_picture(drawn);
    ++drawn;
    return true;
}

/// Draws every file that can be read; `open` is open already.
void draw_series(const RadarSteps &steps, const DateRecord &base_date, std::string open) {
    FileWalk files(base_date);
    int drawn = 0;
    std::string name;
    bool more = true;
    while (more && files.next(name)) {
        const bool is_open = name == open;
        if (is_open) open.clear();
        const bool whole = with_memory(steps, name, [&] {
            gpump_events(); // reading takes its time, too
            more = draw_file(steps, name, is_open, drawn);
        });
        more = more && whole;
    }
    steps.close_file();
    state.unreadable.clear(); // they may be there when the picture is drawn again
    state.shown = std::move(state.drawn);
    forget_stamps();
    if (!state.series || !PLT_keeps_frames()) return;
    while (gget_num_images() > drawn) gdelete_frame(kFrameLast);
    if (!std::exchange(state.started, true)) gset_looping(1);
}

void set_map(const PlotDomain &domain) {
    if (gchk_graphics() == 1) MAP_setup(domain);
    MAP_fill_cont(0);
}

/// A window that stays follows the size that the user gives it; an image file has the size asked for.
template <typename Work> bool is_drawn(Work work) {
    try {
        const StoppableDrawing drawing(!PLT_wants_image());
        work();
        return true;
    } catch (const DrawingStopped &) {
        return false;
    }
}

/// Until a picture is whole that no change of size has overtaken, or the user asks for something else.
void draw(const RadarSteps &steps, const DateRecord &base_date, const PlotDomain &domain, std::string open) {
    while (!is_drawn([&] { draw_series(steps, base_date, std::exchange(open, {})); })) {
        if (gquit_wanted() && PLT_wants_image()) {
            MESS_print(kWarn, "RADAR_plot: The window was closed before every image was written\n");
            PLT_miss_picture();
        }
        if (gquit_wanted() || gview_wanted()) return;
        gfollow_size();
        PLT_begin_images();
        PLT_reset(DOM_aspect(domain));
        set_map(domain);
    }
}

/// The user has deleted a frame: its file stays away.
void forget_file(int frame) {
    if (frame < 0 || static_cast<std::size_t>(frame) >= state.shown.size()) return;
    state.shown.erase(state.shown.begin() + frame);
    state.reselected = true;
}

/// The last file was written, or found changed, so short a time ago that its writer may only be slow.
bool may_grow() {
    if (state.shown.empty()) return false;
    const auto last = state.stamps.find(state.shown.back());
    return last != state.stamps.end() &&
           (std::abs(std::time(nullptr) - last->second.modified) < kRefreshSeconds ||
            (state.found &&
             std::chrono::steady_clock::now() - *state.found < std::chrono::seconds(kRefreshSeconds)));
}

/// Looks for newer files from now on: soon where the last file may still be growing.
void watch_files(const RadarSteps &steps) {
    if (steps.next_file == nullptr) return;
    PLT_set_refresh_func(may_grow() ? kArrivalSeconds : kRefreshSeconds, steps.next_file);
}

void listen(const RadarSteps &steps) {
    PLT_set_callback(steps.mouse);
    PLT_set_zoom_func(steps.plot);
    PLT_set_resize_func(steps.plot);
    gset_delete_callback(forget_file);
}

} // namespace

bool RADAR_is_open() {
    return gchk_graphics() == 1;
}

void RADAR_plot(const RadarSteps &steps, DateRecord base_date, PlotDomain &domain) {
    if (RADAR_is_open()) {
        PLT_reset(DOM_aspect(domain));
        set_map(domain);
        draw(steps, base_date, domain, {});
        return;
    }
    state = State{};
    const std::string first = open_first(steps, base_date);
    if (first.empty()) VYX_exit(kExitNoFile);
    const PlotDomain product = steps.product_domain();
    // A product without a place on the earth (a wind profile) has only its own screen to stand on.
    const bool own_screen = !is_map_projection(product.proj);
    if (own_screen && !is_missing(domain.proj))
        MESS_print(kWarn, "RADAR_plot: The product has a screen of its own, the plot domain is not used\n");
    if (is_missing(domain.proj) || own_screen)
        domain = product;
    else
        DOM_need_map(domain);

    PLT_open(DOM_aspect(domain));
    listen(steps);
    set_map(domain);
    draw(steps, base_date, domain, first);
    watch_files(steps);
    PLT_close();
    if (steps.strict && state.lacks_file) VYX_exit(kExitNoFile);
}

namespace {

/// The look for a newer file has moved the file selection on; without one it is again what a redraw draws.
void stay() {
    std::string name;
    if (!state.shown.empty()) FILE_set_file(state.shown.back(), name);
}

} // namespace

void RADAR_next_file(const RadarSteps &steps) {
    std::string name;
    const std::int64_t time = FILE_set_current(nullptr, name);
    MESS_print(kOut4, "File: %d %s\n", static_cast<int>(time), name.c_str());
    watch_files(steps);
    const bool known = !state.shown.empty() && state.shown.back() == name;
    if (known ? stamp_of(name) == state.stamps[name] : time == state.last_time) return stay();
    const int frames = gget_num_images();
    // The last file has grown: its picture is drawn anew, unless the user has deleted it, and no other moves.
    const bool grown = known && time == state.last_time;
    if (grown && frames > 0 && gget_frame_source(kFrameLast) != name) return stay();
    if (FILE_exist(name) == 0 || !open_file(steps, name)) return stay();
    state.found = std::chrono::steady_clock::now();
    for (int i = 0; !grown && i + 1 < frames; ++i) (void)gcopy_frame(i, i + 1);
    const int target = frames > 0 ? frames - 1 : kFrameBase;
    gselect_frame(target);
    gclear_frame(target);
    if (frames > 0) gset_frame_source(target, name);
    if (!state.shown.empty()) state.shown.erase(grown ? state.shown.end() - 1 : state.shown.begin());
    state.shown.push_back(name);
    state.reselected = true;
    const bool drawn = is_drawn([&] { with_memory(steps, name, [&] { draw_open_file(steps, name); }); });
    forget_stamps();
    if (!drawn && !gquit_wanted() && !gview_wanted() && steps.plot != nullptr) {
        gfollow_size();
        PlotDomain domain = MAP_get_domain();
        steps.plot(domain);
        return;
    }
    watch_files(steps);
    if (frames > 0 && (!grown || gget_cur_frame() == target)) gdisplay_frame(target);
}

std::string RADAR_seen_file() {
    if (gget_num_images() > 0) return gget_frame_source(kFrameCurrent);
    return state.shown.empty() ? std::string() : state.shown.back();
}

RadarFileNow RADAR_file_now(const std::string &name) {
    if (FILE_exist(name) == 0 && !FILE_is_command(name)) return RadarFileNow::gone;
    const auto drawn = state.stamps.find(name);
    const bool plain = drawn != state.stamps.end() && !FILE_is_command(name) && FILE_is_stdio(name) == 0;
    return plain && stamp_of(name) != drawn->second ? RadarFileNow::changed : RadarFileNow::as_drawn;
}

void RADAR_draw_bar() {
    if (CONT_get_bar() <= 0) return;
    GPH_trans(kViewTransform);
    CONT_draw_bar(1, "");
    GPH_trans(kDataTransform);
}
