#include "graphics/devices/print/metafile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/strings.h"

namespace {

enum class MetafileType { text, cgm };

struct State {
    PrintWriter out;
    std::string name; ///< of the output, for messages
    MetafileType type = MetafileType::text;
    bool appended = false; ///< joins what is there, without head and end
};
State state;

bool is_cgm() {
    return state.type == MetafileType::cgm;
}

// Binary elements: class, number, length of the parameters in bytes

constexpr unsigned kLongForm = 31, kPartition = 0x8000;
constexpr std::size_t kMostInPartition = 32764; ///< bytes, whole points

struct Element {
    unsigned element_class, id;
};
constexpr Element kBeginMetafile{0, 1}, kEndMetafile{0, 2}, kBeginPicture{0, 3}, kBeginBody{0, 4},
    kEndPicture{0, 5}, kVersion{1, 1}, kDescription{1, 2}, kMaxColor{1, 9}, kElementList{1, 11},
    kVdcExtent{2, 6}, kClipRectangle{3, 5}, kPolyline{4, 1};

void put_byte(unsigned value) {
    const char byte = static_cast<char>(value & 0xFFU);
    state.out.text({&byte, 1});
}

void put_word(unsigned value) {
    put_byte(value >> 8U);
    put_byte(value);
}

void put_header(const Element &element, unsigned length) {
    put_word(element.element_class << 12U | element.id << 5U | length);
}

void put_coordinate(float device) {
    // The picture's extent counts tenths of the device's units.
    constexpr float kTenths = 10, kLargest = 32767;
    const float value = std::clamp(std::nearbyint(device * kTenths), -kLargest, kLargest);
    put_word(static_cast<unsigned>(static_cast<std::uint16_t>(static_cast<std::int16_t>(value))));
}

void put_point(const Point &point) {
    put_coordinate(point.x);
    put_coordinate(point.y);
}

void begin_cgm_picture() {
    put_header(kBeginPicture, 0);
    put_header(kBeginBody, 0);
}

void put_cgm_head() {
    constexpr std::string_view kName = "VYXCGM-1.0";
    put_header(kBeginMetafile, 0);
    put_header(kVersion, 2);
    put_word(1);
    put_header(kDescription, static_cast<unsigned>(kName.size()) + 1);
    put_byte(static_cast<unsigned>(kName.size()));
    state.out.text(kName);
    put_byte(0); // elements begin at even places
    put_header(kElementList, 6);
    for (const unsigned word : {1U, 0xFFFFU, 1U}) put_word(word); // the drawing set
    put_header(kMaxColor, 1);
    put_byte(255);
    put_byte(0);
    put_header(kVdcExtent, 8);
    for (const unsigned word : {0U, 0U, 10000U, 8000U}) put_word(word);
    begin_cgm_picture();
}

void put_text_head() {
    state.out.text("VYXMETA\n#Title: VYX Graphics Display: ");
    state.out.comment_text(gstate().title);
    state.out.text("\n#Creator: VYX Metafile Processor-1.0\n#CreationDate: ");
    state.out.text(local_time_text());
}

// The device

void watch(ObjectType type, int value, std::span<const std::byte> data) {
    meta_write_record(state.out, type, value, data);
}

void read_options(const std::vector<std::string> &spec) {
    state.type = MetafileType::text;
    for (std::size_t field = 1; field < spec.size(); ++field) {
        const std::string_view word = trimmed(spec[field]);
        if (begins_with(word, "cgm")) {
            state.type = MetafileType::cgm;
        } else if (begins_with(word, "vyx")) {
            state.type = MetafileType::text;
        } else if (!word.empty()) {
            constexpr std::array<std::string_view, 2> known{"cgm", "vyx"};
            WORD_unknown("device", word, known);
        }
    }
}

int open(std::string_view device_spec, PrintPage &page) {
    constexpr int kWidth = 1000, kHeight = 800;
    constexpr float kUnitsPerNumber = 100;
    const std::vector<std::string> spec = split_device_spec(device_spec);
    read_options(spec);
    page = {kWidth, kHeight, 0, 0};
    if (!place_by_geometry(print_geometry({}), {kUnitsPerNumber, 0, 0}, page)) return -1;
    const PrintOutput output =
        parse_print_output(print_file_name(spec, {"vyxmeta_out"}, is_cgm() ? "vyx.cgm" : "vyx.meta"));
    state.name = output.name;
    state.appended = output.kind == PrintOutputKind::append;
    OutputFile file = open_print_output(output);
    if (!file) {
        gerr_printf("gopen_ws", "unable to open metafile\n");
        return -1;
    }
    MESS_print(kMess, "Creating metafile: %s\n", output.name.c_str());
    state.out.open(std::move(file));
    if (!state.appended) is_cgm() ? put_cgm_head() : put_text_head();
    if (!is_cgm()) gset_object_watcher(watch);
    return 0;
}

int close() {
    gset_object_watcher(nullptr);
    if (!state.out.is_open()) return 0;
    if (is_cgm() && !state.appended) {
        put_header(kEndPicture, 0);
        put_header(kEndMetafile, 0);
    }
    if (!state.out.close()) {
        MESS_print(kError, "gmeta_close: Error writing metafile: %s: %s\n", state.name.c_str(),
                   state.out.fault().c_str());
        return -1;
    }
    MESS_print(kMess, "Created metafile\n");
    return 0;
}

void abandon() {
    gset_object_watcher(nullptr);
    if (state.out.is_open()) state.out.abandon();
}

int new_page() {
    if (!state.out.is_open()) return 0;
    if (is_cgm() && !state.appended) {
        put_header(kEndPicture, 0);
        begin_cgm_picture();
        return 0;
    }
    MESS_print(kWarn, "gmeta_new_page: One picture only in a metafile of this kind: %s\n",
               state.name.c_str());
    return -1;
}

void clip(const Rect &device) {
    if (!is_cgm()) return;
    put_header(kClipRectangle, 8);
    put_point({device.xmin, device.ymin});
    put_point({device.xmax, device.ymax});
}

/// The long form; what is longer than it holds comes in parts.
void polyline(std::span<const Point> device, int /*color*/, float /*width*/, int /*type*/) {
    if (!is_cgm()) return;
    constexpr std::size_t kPointBytes = 4;
    put_header(kPolyline, kLongForm);
    while (true) {
        const std::size_t points = std::min(device.size(), kMostInPartition / kPointBytes);
        const bool last = points == device.size();
        put_word(static_cast<unsigned>(points * kPointBytes) | (last ? 0U : kPartition));
        for (const Point &point : device.first(points)) put_point(point);
        if (last) return;
        device = device.subspan(points);
    }
}

// What the plain form of neither kind has: the text form writes its records from the objects.
void no_points(std::span<const Point> /*device*/) {}
void no_area(std::span<const Point> /*device*/, int /*color*/) {}
void no_markers(int /*count*/, int /*color*/, float /*width*/) {}
void no_text(const Point & /*world*/, std::string_view /*text*/, int /*color*/, float /*width*/) {}
void no_message(std::string_view /*text*/) {}

} // namespace

const PrintInk kMetafileInk{.marker_unit = 1,
                            .open = open,
                            .close = close,
                            .abandon = abandon,
                            .new_page = new_page,
                            .clip = clip,
                            .polyline = polyline,
                            .fill_area = no_area,
                            .begin_markers = no_markers,
                            .begin_text = no_text,
                            .stroke = no_points,
                            .clear_region = no_points,
                            .message = no_message};
