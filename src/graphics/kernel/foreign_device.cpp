#include "graphics/kernel/foreign_device.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/common/drawing_area.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/raster_device.h"
#include "lib/report/message.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr const char *kOpen = "gopen_ws";
/// Longest that an owner may take for a frame: it may be drawing a long series of its own.
constexpr float kFrameWait = 60;

struct State {
    PixMode mode = PixMode::plain;
    bool drawn = false; ///< a picture is there
} state;

PixelRect drawing_area() {
    const GraphicsState &s = gstate();
    return {s.win_x, s.win_y, s.win_width, s.win_height};
}

// Window parameters

/// The numbers in turn, whatever stands between them being as it must; stops at the first that does not.
class Numbers {
public:
    explicit Numbers(std::string_view text) : text_(text) {}
    [[nodiscard]] std::string_view rest() const { return text_; }
    bool take(char before, int base, unsigned long &value) {
        std::string_view text = text_;
        if (before != '\0') {
            if (!text.starts_with(before)) return false;
            text.remove_prefix(1);
        }
        const char *const end = text.data() + text.size();
        const auto [at, fault] = std::from_chars(text.data(), end, value, base);
        constexpr unsigned long kLargestNumber = 0xFFFFFFFF; // 32 bits go to the server
        if (fault != std::errc{} || value > kLargestNumber) return false;
        text_ = std::string_view(at, static_cast<std::size_t>(end - at));
        return true;
    }
    bool take(char before, int &value) {
        constexpr unsigned long kLargestSide = 32767;
        unsigned long number = 0;
        const std::string_view start = text_;
        if (take(before, 10, number) && number > 0 && number <= kLargestSide) {
            value = static_cast<int>(number);
            return true;
        }
        text_ = start;
        return false;
    }

private:
    std::string_view text_;
};

std::string id_file_name(std::string_view number) {
    return "vyxloop." + (number.empty() ? "win" : std::string(number));
}

/// The first word of a window id file. Nothing after a message when it cannot be opened.
std::optional<std::string> read_id_file(std::string_view number) {
    if (!std::ranges::all_of(number, is_digit)) {
        MESS_print(kWarn, "window: Not understood: w%s\n", std::string(number).c_str());
        return std::string();
    }
    const std::string name = id_file_name(number);
    Stream file = FILE_open_data(name);
    if (!file) file = FILE_open(name, "r"); // where this program's windows write it
    if (!file) {
        gerr_printf(kOpen, "unable to open window id file\n");
        MESS_print(kWarn, "gopen_ws: No such file: %s\n", name.c_str());
        return std::nullopt;
    }
    constexpr std::size_t kMostBytes = 4096;
    const std::vector<std::byte> bytes = file.read_all(kMostBytes);
    Scanner scan({reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    return std::string(scan.word().value_or(""));
}

bool names_id_file(std::string_view parameters) {
    return parameters.starts_with('w') || parameters.starts_with('W');
}

std::string given_parameters(std::string_view device_spec) {
    const std::vector<std::string> spec = parse_string(device_spec, ',');
    if (spec.size() > 1 && !spec[1].empty()) return std::string(trimmed(spec[1]));
    for (const char *const variable : {"vyxwindow", "WINDOW"})
        if (const char *const value = std::getenv(variable); value != nullptr && *value != '\0') return value;
    return {};
}

std::optional<ForeignPicture> find_picture(std::string_view device_spec) {
    std::string parameters = given_parameters(device_spec);
    if (parameters.empty()) {
        gerr_printf(kOpen, "window parameters not specified\n");
        return std::nullopt;
    }
    if (names_id_file(parameters)) {
        const auto found = read_id_file(std::string_view(parameters).substr(1));
        if (!found) return std::nullopt;
        parameters = *found;
    }
    const auto picture = parse_foreign_picture(parameters);
    if (!picture) gerr_printf(kOpen, "window id not specified\n");
    return picture;
}

// The device

/// The part of the picture that the user wants to be drawn into.
bool place(const ForeignPicture &picture) {
    DrawingArea area{picture.width, picture.height, 0, 0};
    const char *const geometry = RES_get("geometry");
    if (geometry != nullptr && !place_by_geometry(geometry, {1, 0, 0, true}, area)) return false;
    GraphicsState &s = gstate();
    s.win_width = std::min(area.width, picture.width);
    s.win_height = std::min(area.height, picture.height);
    s.win_x = area.x;
    s.win_y = area.y;
    return true;
}

bool add_frame() {
    if (gx11_ask_owner(static_cast<int>(PixMode::new_frame), kFrameWait)) return true;
    gerr_printf(kOpen, "the owner of the window has added no frame\n");
    return false;
}

int open(std::string_view device_spec) {
    GraphicsState &s = gstate();
    if (std::getenv("vyxinverse") != nullptr) s.inverse = true;
    const auto picture = find_picture(device_spec);
    if (!picture || !place(*picture)) return -1;
    RasterWish wish;
    wish.display = device_spec.substr(0, device_spec.find(','));
    wish.program = s.program;
    wish.inverse = s.inverse;
    wish.foreign = picture;
    RasterWindow window;
    if (!graster_open(RasterDisplay::x11, wish, window)) return -1;
    if (!window.title.empty()) s.title = window.title;
    s.rw_colors = false; // cells would be the owner's to know
    state.drawn = false;
    if (state.mode != PixMode::new_frame || add_frame()) return 0;
    graster_close();
    return -1;
}

void init_background() {
    (void)raster_store_background(); // what stands in the picture stays
    if (state.mode == PixMode::clear) gx11_clear_area(drawing_area());
}

int close() {
    gx11_show_area(drawing_area());
    gx11_leave_picture();
    if (state.mode == PixMode::finish && !gx11_tell_owner(static_cast<int>(PixMode::finish)))
        MESS_print(kWarn, "gclose_ws: A pixmap has no owner that can be told to finish\n");
    graster_close();
    return 0;
}

/// The next picture of a series takes the place of the one before, unless it has a frame of its own.
int new_picture() {
    gx11_show_area(drawing_area());
    if (state.mode == PixMode::new_frame) return add_frame() ? 0 : -1;
    gx11_clear_area(drawing_area());
    return 0;
}

} // namespace

constinit const Device kForeignDevice = [] {
    Device device = raster_device();
    device.open = open;
    device.close = close;
    device.new_page = new_picture;
    device.init_background = init_background;
    return device;
}();

void gset_pix_mode(PixMode mode) {
    state.mode = mode;
}

std::optional<ForeignPicture> parse_foreign_picture(std::string_view parameters) {
    constexpr int kDecimal = 10, kHexadecimal = 16;
    ForeignPicture picture;
    Numbers numbers(parameters);
    bool named = false;
    if (parameters.starts_with('+')) {
        named = numbers.take('+', kDecimal, picture.window) && numbers.take(':', kDecimal, picture.drawable);
    } else if (parameters.starts_with("0x") || parameters.starts_with("0X")) {
        numbers = Numbers(parameters.substr(2));
        named = numbers.take('\0', kHexadecimal, picture.drawable);
    } else {
        named = numbers.take('\0', kDecimal, picture.drawable);
    }
    if (!named || picture.drawable == 0) return std::nullopt;
    const bool whole = numbers.take(':', picture.width) && numbers.take('x', picture.height) &&
                       numbers.take(':', kDecimal, picture.colormap);
    if (!whole && !numbers.rest().empty())
        MESS_print(kWarn, "window: Not understood: %s\n", std::string(parameters).c_str());
    return picture;
}
