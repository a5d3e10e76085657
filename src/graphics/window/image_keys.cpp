/// The keys that write what the window shows as image files.

#include <array>
#include <cstdio>

#include "graphics/devices/raster/display.h"
#include "graphics/images/capture.h"
#include "graphics/kernel/identity.h"
#include "graphics/window/frames.h"
#include "graphics/window/keys.h"
#include "graphics/window/loop.h"
#include "graphics/window/surface.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"

namespace {

constexpr int kBusyCursor = 8;
constexpr std::size_t kNameLength = 5; ///< characters of the title that a file's name begins with
constexpr int kNoFrame = -1;

struct ImageKind {
    const char *name;   ///< in messages
    const char *ending; ///< of file names
    int (*dump)(std::string_view path);
};

std::string file_name(const ImageKind &kind, int frame) {
    std::string name = gget_win_title().substr(0, kNameLength);
    if (frame != kNoFrame) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "-%2.2d", frame);
        name += number.data();
    }
    name += kind.ending;
    fill_string(name, ' ', '_');
    std::string directory;
    (void)RES_getval("image_path", directory, ResourceKind::directory); // unset, the default stays
    return FILE_add_path(directory, name);
}

void write_pixmap(const ImageKind &kind, PixmapId pixmap, const std::string &path) {
    const PixmapId drawable = graster_drawable();
    graster_set_drawable(pixmap);
    const bool written = kind.dump(path) == 1;
    graster_set_drawable(drawable);
    if (written)
        MESS_print(kMess, "Created %s file: %s\n", kind.name, path.c_str());
    else
        MESS_print(kWarn, "gprocess_x11_event: Unable to write %s file: %s\n", kind.name, path.c_str());
}

void write_loop(const ImageKind &kind) {
    MESS_print(kMess, "Creating %s files:\n", kind.name);
    for (int frame = 0; frame < gget_num_images(); ++frame) {
        const std::string path = file_name(kind, frame);
        MESS_print(kMess, "%s\n", path.c_str());
        write_pixmap(kind, gget_frame_id(frame), path);
    }
}

void write_files(const ImageKind &kind) {
    const int cursor = gset_cursor(kBusyCursor);
    if (gget_num_images() < 2)
        write_pixmap(kind, graster_base(), file_name(kind, kNoFrame));
    else if (gget_looping() != 0)
        write_loop(kind);
    else
        write_pixmap(kind, gget_frame_id(kFrameCurrent), file_name(kind, gget_cur_frame()));
    gset_cursor(cursor);
}

} // namespace

void write_gif_files() {
    write_files({"GIF", ".gif", GIF_dump});
}

void write_xwd_files() {
    write_files({"XWD", ".xwd", XWD_dump});
}
