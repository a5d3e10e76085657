#include "plot/session/graphics_setup.h"

#include <cstdlib>
#include <string>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/identity.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "graphics/window/hold.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/colour/look_check.h"
#include "plot/colour/named_colors.h"
#include "plot/session/images.h"

namespace {

/// The user's title, else the program's name as the user gave it, else its own.
std::string window_title() {
    const char *title = RES_get("title");
    if (title && *title) return title;
    const char *name = RES_get("name");
    if (name && *name == '+') ++name;
    if (name && *name) return name;
    return RES_get_progname();
}

DeviceKind chosen_device() {
    const int flag = FLAG_get(kFlagDevice);
    if (flag > 0) return static_cast<DeviceKind>(flag);
    return FLAG_batch() ? DeviceKind::win : DeviceKind::none;
}

/// The name that X resources of the window stand under.
std::string program_name() {
    const char *name = RES_get("name");
    return name != nullptr && *name != '\0' ? name : RES_get_progname();
}

bool table_color(std::string_view name, Rgb &color) {
    const int index = CLR_get_ind(name);
    if (index < 0 || index >= CLR_get_num()) return false;
    color = CLR_get_rgb(index);
    return true;
}

/// In batch mode a picture that is wanted as a file needs no display: without one it is drawn in memory.
bool memory_serves(std::string_view spec, DeviceKind device) {
    const char *const display = std::getenv("DISPLAY");
    const bool named = !spec.substr(0, spec.find(',')).empty() || (display != nullptr && *display != '\0');
    return FLAG_batch() == 1 && device == DeviceKind::win && !named && PLT_wants_image();
}

} // namespace

int GPH_setup(int &ws_id, DeviceKind &device, Rect &panel, float aspect) {
    gsetup_window();
    std::string spec;
    (void)RES_getval("device", spec, ResourceKind::device); // unset, the default stays
    device = chosen_device();
    if (memory_serves(spec, device)) spec = "memory";
    GPH_set_win_title(window_title());
    gset_prog_name(program_name());
    gset_color_lookup(table_color);
    CLR_read_table("");
    GPH_begin(ws_id, spec, device);
    PLT_check_looks();
    return GPH_reset(ws_id, device, panel, aspect);
}

int GPH_reset(int ws_id, DeviceKind, Rect &panel, float aspect) {
    gclear_ws(ws_id, 1);
    GPH_set_maxview(ws_id);
    GPH_panel(ws_id, panel, aspect);
    CLR_load_kernel();
    (void)GPH_text_font(""); // told where it fails
    return 0;
}
