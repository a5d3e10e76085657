#include "graphics/devices/print/metafile.h"

#include <array>
#include <cstdlib>
#include <string>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/cgm.h"
#include "graphics/devices/print/joined_file.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/strings.h"

namespace {

enum class MetafileType { text, cgm, full_cgm };

struct State {
    PrintWriter out;
    JoinedFile file;
    MetafileType type = MetafileType::text;
    Cgm cgm{false};
};
State state;

constexpr std::string_view kTextBegin = "VYXMETA\n";

bool is_cgm() {
    return state.type != MetafileType::text;
}

bool is_full() {
    return state.type == MetafileType::full_cgm;
}

void put_text_head(PrintWriter &out) {
    out.text(kTextBegin);
    out.text("#Title: VYX Graphics Display: ");
    out.comment_text(gstate().title);
    out.text("\n#Creator: VYX Metafile Processor-1.0\n#CreationDate: ");
    out.text(local_time_text());
}

FileEnds text_ends() {
    return {std::string(kTextBegin), {}, "metafile", true};
}

int refuse() {
    gerr_printf("gopen_ws", "unable to open metafile\n");
    return -1;
}

void watch(ObjectType type, int value, std::span<const std::byte> data) {
    meta_write_record(state.out, type, value, data);
}

void read_options(const std::vector<std::string> &spec) {
    constexpr std::array<std::string_view, 3> known{"cgm", "full", "vyx"};
    state.type = MetafileType::text;
    bool full = false;
    for (std::size_t field = 1; field < spec.size(); ++field) {
        const std::string_view word = trimmed(spec[field]);
        if (begins_with(word, "cgm"))
            state.type = MetafileType::cgm;
        else if (begins_with(word, "vyx"))
            state.type = MetafileType::text;
        else if (begins_with(word, "full"))
            full = true;
        else if (!word.empty())
            WORD_unknown("device", word, known);
    }
    if (full && !is_cgm()) MESS_print(kWarn, "device: Only a CGM can be: full\n");
    if (!full || !is_cgm()) return;
    state.type = MetafileType::full_cgm;
    gset_inverse(1); // its paper is white, as that of a page in colour
}

int open(std::string_view device_spec, DrawingArea &page) {
    constexpr int kWidth = 1000, kHeight = 800;
    constexpr float kUnitsPerNumber = 100;
    const std::vector<std::string> spec = split_device_spec(device_spec);
    read_options(spec);
    page = {kWidth, kHeight, 0, 0};
    if (!place_by_geometry(print_geometry({}), {kUnitsPerNumber, 0, 0}, page)) return -1;
    const PrintOutput output =
        parse_print_output(print_file_name(spec, {"vyxmeta_out"}, is_cgm() ? "vyx.cgm" : "vyx.meta"));
    state.cgm = Cgm(is_full());
    const FileEnds ends = is_cgm() ? FileEnds{state.cgm.begin(), Cgm::end(), "metafile"} : text_ends();
    OutputFile file = state.file.open(output, ends, "gmeta_open");
    if (!file) return refuse();
    MESS_print(kMess, "Creating metafile: %s\n", output.name.c_str());
    state.out.open(std::move(file));
    if (is_cgm()) {
        if (state.file.begins()) state.out.text(ends.begin);
        return 0;
    }
    if (state.file.begins()) put_text_head(state.out);
    gset_object_watcher(watch);
    return 0;
}

int close() {
    gset_object_watcher(nullptr);
    if (!state.out.is_open()) return 0;
    if (!state.file.is_bare()) state.out.text(state.file.ends().end);
    return state.file.close(state.out, "gmeta_close");
}

void abandon() {
    gset_object_watcher(nullptr);
    state.file.abandon(state.out);
}

int new_page() {
    if (!state.out.is_open()) return 0;
    if (is_cgm()) {
        state.out.text(state.cgm.next_picture());
        state.cgm.forget_look();
        return 0;
    }
    MESS_print(kWarn, "gmeta_new_page: One picture only in a metafile of this kind: %s\n",
               state.file.name().c_str());
    return -1;
}

void clip(const Rect &device) {
    if (is_cgm()) state.cgm.clip(state.out, device);
}

/// Print-only colours come in threes of black, white and grey.
Rgb color_of(int index) {
    constexpr std::array<float, 3> kPrintOnly{0, 1, 0.7F};
    if (!is_print_only_color(index)) return gget_color_rgb(index);
    const float grey = kPrintOnly[static_cast<std::size_t>(index - kColorPrintFirst) / 3];
    return {grey, grey, grey};
}

void set_line(int color, float width, int type) {
    if (!is_full()) return;
    const float bold = print_bold_factor(print_boldness(color), gstate().line_print_bold);
    state.cgm.set_line(state.out, color_of(color), bold * (width == 0 ? 1 : width), type);
}

void polyline(std::span<const Point> device, int color, float width, int type) {
    if (!is_cgm()) return;
    set_line(color, width, type);
    state.cgm.polyline(state.out, device);
}

// What only the full form has: the plain one is lines, and the text is written from the objects.

void fill_area(std::span<const Point> device, int color) {
    if (!is_full()) return;
    const bool black = gstate().fill_print_solid != 0 && !is_print_only_color(color);
    state.cgm.set_fill(state.out, black ? Rgb{} : color_of(color));
    state.cgm.polygon(state.out, device);
}

void clear_region(std::span<const Point> device) {
    if (!is_full()) return;
    state.cgm.set_fill(state.out, color_of(kColorBackground));
    state.cgm.polygon(state.out, device);
}

void begin_markers(int /*count*/, int color, float width) {
    constexpr int kSolid = 1;
    set_line(color, width, kSolid);
}

void begin_text(const Point & /*world*/, std::string_view /*text*/, int color, float width) {
    begin_markers(0, color, width);
}

void stroke(std::span<const Point> device) {
    if (!is_full()) return;
    if (device.size() == 1)
        state.cgm.polyline(state.out, std::array{device.front(), device.front()});
    else
        state.cgm.polyline(state.out, device);
}

void message(std::string_view /*text*/) {} // the text form writes its record from the object

bool joins_drawing() {
    return !is_cgm() && !state.file.begins();
}

} // namespace

int gmeta_write_objects(std::string_view name) {
    PrintWriter out;
    JoinedFile file;
    const PrintOutput output = parse_print_output(name);
    OutputFile opened = file.open(output, text_ends(), "gprint_meta");
    if (!opened) {
        gerr_printf("gprint_meta", "unable to open metafile\n");
        return -1;
    }
    MESS_print(kMess, "Creating metafile: %s\n", output.name.c_str());
    out.open(std::move(opened));
    if (file.begins()) put_text_head(out);
    for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next)
        meta_write_record(out, object->type, object->value, {object->data(), object->size});
    return file.close(out, "gprint_meta");
}

const PrintInk kMetafileInk{.marker_unit = 1,
                            .open = open,
                            .close = close,
                            .abandon = abandon,
                            .new_page = new_page,
                            .clip = clip,
                            .polyline = polyline,
                            .fill_area = fill_area,
                            .begin_markers = begin_markers,
                            .begin_text = begin_text,
                            .stroke = stroke,
                            .clear_region = clear_region,
                            .message = message,
                            .joins_drawing = joins_drawing};
