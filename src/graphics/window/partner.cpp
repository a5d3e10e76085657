#include "graphics/window/partner.h"

#include <cstdio>
#include <string>

#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "graphics/window/surface.h"
#include "lib/files/output_file.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"

namespace {

struct State {
    bool shared = false;
    std::string file;       ///< window id file
    std::string parameters; ///< what stands in it
    unsigned frames = 0;    ///< added for cooperating programs
} state;

bool is_x11_window() {
    return gtype_is_WIN() && graster_display() == RasterDisplay::x11;
}

/// The picture that a cooperating program draws into.
PixmapId shared_picture() {
    return gget_num_images() > 0 ? gget_frame_id(kFrameLast) : graster_base();
}

std::string window_parameters() {
    const GraphicsState &s = gstate();
    return format_text("+%lu:%lu:%dx%d:%lu", gx11_window_id(), shared_picture(), s.win_width, s.win_height,
                       gx11_colormap_id());
}

/// The first frame is the window's picture; what the window shows goes on in another pixmap.
bool make_first_frame() {
    (void)gcreate_frame(0); // seen by the copy
    if (gcopy_frame(0, kFrameBase) == 0) return false;
    gswitch_frame(0, kFrameBase);
    gclear_frame(0);
    gset_looping(1);
    gselect_frame(0);
    return true;
}

bool make_next_frame() {
    const int last = gget_num_images() - 1;
    const int added = gcreate_frame(-1);
    if (added != last + 1) return false;
    (void)gcopy_frame(added, last); // both have just been there
    gswitch_frame(added, last);
    gclear_frame(added);
    return true;
}

} // namespace

void gshare_window(std::string_view number) {
    state.shared = true;
    state.file = "vyxloop." + (number.empty() ? "win" : std::string(number));
}

void gupdate_shared() {
    if (!state.shared || !is_x11_window()) return;
    const std::string now = window_parameters();
    if (now == state.parameters) return;
    OutputFile file = OutputFile::create(state.file);
    if (file) file.write(now + "\n");
    if (!file || !file.commit())
        MESS_print(kWarn, "gshare_window: Unable to write window id file: %s: %s\n", state.file.c_str(),
                   file.fault().c_str());
    state.parameters = now;
}

void gend_sharing() {
    if (!state.parameters.empty()) (void)FILE_delete(state.file); // gone already, it need not go
    state.parameters.clear();
    state.frames = 0;
}

void gadd_partner_frame() {
    gset_win_title_extra("+");
    const bool added = gget_num_images() == 0 ? make_first_frame() : make_next_frame();
    if (added) ++state.frames;
    gupdate_shared();
    gx11_tell_frames(state.frames, added);
    gset_win_title_extra("");
}

bool gshow_partner_frame() {
    const int last = gget_num_images() - 1;
    const bool seen = gget_cur_frame() == last || last == 0;
    return state.frames > 0 && last >= 0 && seen && gdisplay_frame(last) == 1;
}
