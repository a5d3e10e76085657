#include "plot/session_images.h"

#include <algorithm>
#include <string>
#include <vector>

#include "graphics/images/capture.h"
#include "graphics/images/image.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/session.h"
#include "graphics/window/frames.h"
#include "lib/file_naming.h"
#include "lib/flag.h"
#include "lib/message.h"
#include "lib/resource.h"
#include "lib/stream.h"
#include "lib/text.h"
#include "plot/map.h"
#include "plot/session.h"

namespace {

constexpr std::size_t kDumpNameLength = 59;
constexpr std::string_view kAnimationName = "vyx_anim.gif";
/// Plots whose label bands take more than this have no picture of a map.
constexpr float kLargestMapOffset = 0.7F;

struct State {
    int type = kDumpNone;
    std::string name; ///< at most kDumpNameLength characters
    bool animate = false;
    std::string animation;
    std::vector<std::string> written; ///< files of this session's frames
    bool failed = false;              ///< a file could not be written
} state;

std::string cut(std::string_view name) {
    return std::string(name.substr(0, kDumpNameLength));
}

std::string_view default_name(int type) {
    switch (type) {
    case kDumpGif: return "vyx.gif";
    case kDumpPng: return "vyx.png";
    default: return "vyx.xwd";
    }
}

std::string two_digits(int number) {
    return format_text("%2.2d", number);
}

std::string image_path(std::string_view name) {
    std::string directory;
    RES_getval("image_path", directory, ResourceKind::directory);
    return FILE_add_path(directory, name);
}

/// The path that a dump name stands for, at the date of the current file; `frame` is empty without frames.
std::string path_of(const std::string &dump_name, std::string_view frame) {
    DateRecord date = FILE_get_full_date();
    FILE_save_name_conv();
    FILE_set_name(dump_name);
    FILE_set_key('i', frame.empty() ? "win" : frame);
    FILE_set_key('p', gget_win_title());
    std::string name;
    FILE_set_date(&date, name);
    FILE_restore_name_conv();
    return image_path(name);
}

/// A name without %i or time would let each frame write over the one before; then the number joins the name.
std::string path_of_own(const std::string &dump_name, int frame) {
    std::string path = path_of(dump_name, two_digits(frame));
    if (std::find(state.written.begin(), state.written.end(), path) == state.written.end()) return path;
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

void write_dump(const std::string &path) {
    const DumpWriter writer = writer_of(state.type);
    const bool written = writer.write(path) == 1;
    tell(writer.name, path, written);
    if (written) state.written.push_back(path);
}

void dump_frame(int frame, int named) {
    gselect_frame(frame);
    write_dump(path_of_own(state.name, named));
}

bool add_picture(AnimatedGif &animation, float delay) {
    ImageRecord record;
    if (gget_image(record) != 1) return false;
    animation.add(record, delay);
    return true;
}

/// Every frame, or the one picture when there are no frames.
bool gather(AnimatedGif &animation) {
    const int count = gget_num_images();
    if (count == 0) return add_picture(animation, gget_loop_delay());
    for (int frame = 0; frame < count; ++frame) {
        gselect_frame(frame);
        if (!add_picture(animation, gget_frame_delay(frame))) return false;
    }
    return true;
}

void write_animation() {
    const std::string path = path_of(state.animation, {});
    AnimatedGif animation;
    tell("GIF", path, gather(animation) && animation.write(path) == 1);
}

} // namespace

void PLT_set_dump(int type, std::string_view name) {
    state.type = type;
    state.name = cut(name.empty() ? default_name(type) : name);
}

void PLT_set_animation(std::string_view name) {
    state.animate = true;
    state.animation = cut(name.empty() ? kAnimationName : name);
}

bool PLT_wants_image() {
    return state.type != kDumpNone || state.animate;
}

int PLT_dump(int frame) {
    if (state.type == kDumpNone) return -1;
    const int count = gget_num_images();
    if (frame == kDumpAllFrames && count >= 2) {
        for (int i = 0; i < count; ++i) dump_frame(i, i);
    } else if (count > 0) {
        dump_frame(frame == kDumpAllFrames ? kFrameCurrent : frame, std::max(gget_cur_frame(), 0));
    } else {
        write_dump(path_of(state.name, {}));
    }
    return 0;
}

bool PLT_finish_images() {
    if (state.animate) write_animation();
    const bool product = FLAG_batch() == 1 && gtype_is_WIN_PIX();
    const bool complete = !(product && state.failed);
    state.written.clear();
    state.failed = false;
    return complete;
}
