#include "plot/session/images.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "graphics/images/animated_gif.h"
#include "graphics/images/capture.h"
#include "graphics/images/image.h"
#include "graphics/kernel/identity.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "lib/files/naming.h"
#include "lib/files/output_name.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/session/layout.h"
#include "plot/session/outcome.h"

namespace {

constexpr std::string_view kAnimationName = "vyx_anim.gif";
/// Plots whose label bands take more than this have no picture of a map.
constexpr float kLargestMapOffset = 0.7F;

/// An image file of every picture.
struct Dump {
    int type;
    std::string name; ///< empty: the default of the type
    bool operator==(const Dump &) const = default;
};

struct State {
    std::vector<Dump> dumps;
    bool animate = false, rock = false;
    std::string animation_name;
    AnimatedGif animation;
    /// Files of this session's pictures, and the place in `dumps` that each belongs to.
    std::unordered_map<std::string, std::size_t> written;
    bool failed = false; ///< a file could not be written
    bool asked = false;  ///< this session has been told of an image file
} state;

bool wants(int type) {
    return std::ranges::any_of(state.dumps, [type](const Dump &dump) { return dump.type == type; });
}

/// Two types share a default name. Where both are wanted, the package's image has its own.
std::string_view name_of(const Dump &dump) {
    if (!dump.name.empty()) return dump.name;
    switch (dump.type) {
    case kDumpGif: return "vyx.gif";
    case kDumpPng: return "vyx.png";
    case kDumpImg: return wants(kDumpXwd) ? "vyx.img" : "vyx.xwd";
    default: return "vyx.xwd";
    }
}

std::string two_digits(int number) {
    return format_text("%2.2d", number);
}

std::string image_path(std::string_view name) {
    std::string directory;
    (void)RES_getval("image_path", directory, ResourceKind::directory); // unset, the default stays
    return FILE_add_path(directory, name);
}

/// A command that the user gave instead of a file. What a naming convention makes is none.
bool is_command(std::string_view dump_name) {
    return dump_name.starts_with('|');
}

/// The path that a dump name stands for, at the date of the current file; `frame` is empty without frames.
std::string path_of(std::string_view dump_name, std::string_view frame) {
    const std::array keys{NameKey{'i', std::string(frame.empty() ? "win" : frame)},
                          NameKey{'p', gget_win_title()}};
    std::string name = FILE_name_output(dump_name, FILE_get_full_date(), keys);
    if (!is_command(dump_name)) return image_path(name);
    FILE_allow_command(name);
    return name;
}

/// A name without %i or time would let each frame write over the one before; then the number joins the name.
std::string path_of_own(std::string_view dump_name, int frame, std::size_t dump) {
    std::string path = path_of(dump_name, two_digits(frame));
    const auto earlier = state.written.find(path);
    if (earlier == state.written.end() || earlier->second != dump || is_command(dump_name)) return path;
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    const bool has_suffix = dot != path.npos && (slash == path.npos || dot > slash);
    return path.insert(has_suffix ? dot : path.size(), "-" + two_digits(frame));
}

/// The plot's map domain; the writer gives it a grid point for each pixel.
ImageDomain image_domain() {
    const PlotDomain &map = MAP_get_domain();
    if (PLT_get_view_offset() > kLargestMapOffset || is_missing(map.proj)) return {};
    return {map.proj, map.plat, map.plon, map.p3, map.p4, map.p5,
            map.clat, map.clon, map.dx,   map.dy, map.nx, map.ny};
}

int write_package_image(const std::string &path) {
    const std::string title =
        format_text("%s [%s]", PLT_get_label(0, 0).c_str(), PLT_get_label(5, 0).c_str());
    return IMG_dump(path, PLT_get_label(2, 0), title, image_domain());
}

struct DumpWriter {
    const char *name;
    int (*write)(const std::string &path);
};

DumpWriter writer_of(int type) {
    switch (type) {
    case kDumpGif: return {"GIF", [](const std::string &path) { return GIF_dump(path); }};
    case kDumpImg: return {"IMG", write_package_image};
    case kDumpPng: return {"PNG", [](const std::string &path) { return PNG_dump(path); }};
    default: return {"xdump", [](const std::string &path) { return XWD_dump(path); }};
    }
}

void tell(const char *kind, const std::string &path, bool written) {
    if (written) {
        MESS_print(kMess, "Wrote %s file: %s\n", kind, path.c_str());
        return;
    }
    MESS_print(kWarn, "PLT_dump: Unable to write %s file: %s\n", kind, path.c_str());
    state.failed = true;
}

/// What needs as much memory as a picture. False, told of, when there is none.
template <typename Work> bool with_memory(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc &) {
        MESS_print(kWarn, "PLT_dump: Out of memory\n");
        PLT_lack_memory();
        return false;
    }
}

void write_dump(std::size_t number, const std::string &path) {
    const DumpWriter writer = writer_of(state.dumps[number].type);
    const auto [earlier, is_new] = state.written.try_emplace(path, number);
    if (earlier->second != number) {
        MESS_print(kWarn, "PLT_dump: Another image of this picture has the name, %s file not written: %s\n",
                   writer.name, path.c_str());
        state.failed = true;
        return;
    }
    const bool written = with_memory([&] { return writer.write(path) == 1; });
    tell(writer.name, path, written);
    if (!written && is_new) state.written.erase(path);
}

/// The picture of the drawable, as picture `number` of a series, or the only one.
void take_picture(std::optional<int> number) {
    if (state.animate) {
        ImageRecord record;
        const auto add = [&record] {
            if (gget_image(record) == 1) state.animation.add(record, gget_loop_delay());
            return true;
        };
        if (!with_memory(add)) state.failed = true;
    }
    for (std::size_t dump = 0; dump < state.dumps.size(); ++dump) {
        const std::string_view name = name_of(state.dumps[dump]);
        write_dump(dump, number ? path_of_own(name, *number, dump) : path_of(name, {}));
    }
}

void take_frame(int frame, int named) {
    gselect_frame(frame);
    take_picture(named);
}

void write_animation() {
    const std::string path = path_of(state.animation_name, {});
    if (state.written.contains(path)) {
        MESS_print(kWarn, "PLT_dump: Another image of this picture has the name, GIF file not written: %s\n",
                   path.c_str());
        state.failed = true;
        return;
    }
    if (state.animation.frames() > 1) state.animation.set_last_delay(kLastDelay);
    tell("GIF", path, state.animation.write(path) == 1);
}

void clear_animation() {
    state.animation = AnimatedGif{};
    if (state.rock) state.animation.rock();
}

} // namespace

void PLT_set_dump(int type, std::string_view name) {
    if (!std::exchange(state.asked, true)) state.dumps.clear();
    if (type == kDumpNone) state.dumps.clear();
    const Dump dump{type, std::string(name)};
    if (type != kDumpNone && std::ranges::find(state.dumps, dump) == state.dumps.end())
        state.dumps.push_back(dump);
}

void PLT_set_animation(std::string_view name) {
    state.animate = true;
    state.animation_name = name.empty() ? kAnimationName : name;
    clear_animation();
}

void PLT_rock_animation() {
    state.rock = true;
    clear_animation();
}

bool PLT_wants_image() {
    return !state.dumps.empty() || state.animate;
}

int PLT_dump(int frame) {
    const int count = gget_num_images();
    if (frame == kDumpAllFrames && count >= 2) {
        clear_animation();
        for (int i = 0; i < count; ++i) take_frame(i, i);
    } else if (count > 0) {
        take_frame(frame == kDumpAllFrames ? kFrameCurrent : frame, std::max(gget_cur_frame(), 0));
    } else {
        take_picture({});
    }
    return state.dumps.empty() ? -1 : 0;
}

int PLT_dump_numbered(int number) {
    take_picture(number);
    return state.dumps.empty() ? -1 : 0;
}

void PLT_begin_images() {
    state.written.clear();
    clear_animation();
}

bool PLT_finish_images() {
    if (state.animate) write_animation();
    const bool complete = !state.failed;
    PLT_begin_images();
    state.failed = state.asked = false;
    return complete;
}
