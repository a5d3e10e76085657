#include "graphics/devices/print/cgm.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace {

constexpr unsigned kLongForm = 31, kPartition = 0x8000;
constexpr std::size_t kPointBytes = 4;
constexpr std::size_t kMostInPartition = 32764; ///< bytes, whole points

struct Element {
    unsigned element_class, id;
};
constexpr Element kBeginMetafile{0, 1}, kEndMetafile{0, 2}, kBeginPicture{0, 3}, kBeginBody{0, 4},
    kEndPicture{0, 5}, kVersion{1, 1}, kDescription{1, 2}, kMaxColor{1, 9}, kColorExtent{1, 10},
    kElementList{1, 11}, kColorMode{2, 2}, kLineWidthMode{2, 3}, kVdcExtent{2, 6}, kBackground{2, 7},
    kClipRectangle{3, 5}, kPolyline{4, 1}, kPolygon{4, 7}, kLineType{5, 2}, kLineWidth{5, 3},
    kLineColor{5, 4}, kInteriorStyle{5, 22}, kFillColor{5, 23};

void add_byte(std::string &to, unsigned value) {
    to += static_cast<char>(value & 0xFFU);
}

void add_word(std::string &to, unsigned value) {
    add_byte(to, value >> 8U);
    add_byte(to, value);
}

void add_element(std::string &to, const Element &element, std::string_view parameters = {}) {
    add_word(to, element.element_class << 12U | element.id << 5U | static_cast<unsigned>(parameters.size()));
    to += parameters;
    if (parameters.size() % 2 != 0) add_byte(to, 0); // elements begin at even places
}

std::string words(std::initializer_list<unsigned> values) {
    std::string result;
    for (const unsigned value : values) add_word(result, value);
    return result;
}

std::string color_bytes(const Rgb &color) {
    constexpr float kFull = 255;
    std::string bytes;
    for (const float part : {color.red, color.green, color.blue})
        add_byte(bytes, static_cast<unsigned>(std::lround(std::clamp(part, 0.0F, 1.0F) * kFull)));
    return bytes;
}

unsigned tenths(float units) {
    constexpr float kTenths = 10, kLargest = 32767;
    const float value = std::clamp(std::nearbyint(units * kTenths), -kLargest, kLargest);
    return static_cast<std::uint16_t>(static_cast<std::int16_t>(value));
}

void put(PrintWriter &out, const Element &element, std::string_view parameters) {
    std::string bytes;
    add_element(bytes, element, parameters);
    out.text(bytes);
}

/// The long form; what is longer than it holds comes in parts.
void put_points(PrintWriter &out, const Element &element, std::span<const Point> points) {
    std::string bytes;
    add_word(bytes, element.element_class << 12U | element.id << 5U | kLongForm);
    while (true) {
        const std::size_t count = std::min(points.size(), kMostInPartition / kPointBytes);
        const bool last = count == points.size();
        add_word(bytes, static_cast<unsigned>(count * kPointBytes) | (last ? 0U : kPartition));
        for (const Point &point : points.first(count)) {
            add_word(bytes, tenths(point.x));
            add_word(bytes, tenths(point.y));
        }
        out.text(bytes);
        if (last) return;
        bytes.clear();
        points = points.subspan(count);
    }
}

/// 1 solid, 2 dashes, 3 dots, 4 dashes and dots.
unsigned standard_line_type(int type) {
    constexpr std::array<unsigned, 5> kTypes{1, 2, 2, 4, 3};
    return type < 1 || type > static_cast<int>(kTypes.size()) ? 1
                                                              : kTypes[static_cast<std::size_t>(type - 1)];
}

bool same(const std::optional<Rgb> &a, const Rgb &b) {
    return a && a->red == b.red && a->green == b.green && a->blue == b.blue;
}

} // namespace

std::string Cgm::begin() const {
    constexpr std::string_view kName = "VYXCGM-1.0";
    std::string head, name;
    add_byte(name, static_cast<unsigned>(kName.size()));
    name += kName;
    add_element(head, kBeginMetafile);
    add_element(head, kVersion, words({1}));
    add_element(head, kDescription, name);
    add_element(head, kElementList, words({1, 0xFFFF, 1})); // the drawing set and the control set
    // Colours are no indices in the full form, and a highest one above 127 stops some readers.
    if (full_)
        add_element(head, kColorExtent, std::string_view("\0\0\0\xFF\xFF\xFF", 6));
    else
        add_element(head, kMaxColor, std::string_view("\xFF", 1));
    add_element(head, kVdcExtent, words({0, 0, 10000, 8000}));
    return head + picture();
}

std::string Cgm::picture() const {
    constexpr Rgb kWhite{1, 1, 1};
    std::string bytes;
    add_element(bytes, kBeginPicture);
    if (full_) {
        add_element(bytes, kColorMode, words({1}));     // by red, green and blue
        add_element(bytes, kLineWidthMode, words({0})); // in units of the extent
        add_element(bytes, kVdcExtent, words({0, 0, 10000, 8000}));
        add_element(bytes, kBackground, color_bytes(kWhite));
    }
    add_element(bytes, kBeginBody);
    if (full_) add_element(bytes, kInteriorStyle, words({1})); // solid
    return bytes;
}

std::string Cgm::next_picture() const {
    std::string bytes;
    add_element(bytes, kEndPicture);
    return bytes + picture();
}

std::string Cgm::end() {
    std::string bytes;
    add_element(bytes, kEndPicture);
    add_element(bytes, kEndMetafile);
    return bytes;
}

void Cgm::forget_look() {
    *this = Cgm(full_);
}

void Cgm::clip(PrintWriter &out, const Rect &area) const {
    put(out, kClipRectangle,
        words({tenths(area.xmin), tenths(area.ymin), tenths(area.xmax), tenths(area.ymax)}));
}

void Cgm::polyline(PrintWriter &out, std::span<const Point> points) const {
    put_points(out, kPolyline, points);
}

void Cgm::polygon(PrintWriter &out, std::span<const Point> points) const {
    if (full_ && points.size() > 2) put_points(out, kPolygon, points);
}

void Cgm::set_line(PrintWriter &out, const Rgb &color, float width, int type) {
    if (!full_) return;
    if (!same(line_color_, color)) put(out, kLineColor, color_bytes(color));
    if (width != line_width_) put(out, kLineWidth, words({tenths(width)}));
    if (type != line_type_) put(out, kLineType, words({standard_line_type(type)}));
    line_color_ = color;
    line_width_ = width;
    line_type_ = type;
}

void Cgm::set_fill(PrintWriter &out, const Rgb &color) {
    if (!full_) return;
    if (!same(fill_color_, color)) put(out, kFillColor, color_bytes(color));
    fill_color_ = color;
}
