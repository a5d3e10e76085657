#include "graphics/text/stroke.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "graphics/core/state.h"
#include "graphics/core/stroke_output.h"
#include "graphics/text/current_font.h"
#include "graphics/text/font.h"

namespace {

constexpr float kUnitsPerHeight = 105;
/// Glyph units of 1.0 of the spacing attribute, and of one fixed pitch.
constexpr float kUnitsPerSpace = 100, kPitch = 100;

/// Glyph units from a reference line down to the bottom of the cell, by vertical alignment code.
constexpr std::array<float, 6> kVerticalOffset{-35, -160, -140, -85, -35, 0};

/// Characters without glyph take no room, except the space.
bool takes_room(const StrokeFont &font, char character) {
    return character == ' ' || font.has_glyph(static_cast<std::uint8_t>(character));
}

/// From one character's start to the next one's, glyph units before expansion.
float advance(const StrokeFont &font, const TextState &attributes, char character) {
    const float gap = attributes.space * kUnitsPerSpace;
    if (attributes.char_space > 0) return (gap + kPitch) * attributes.char_space;
    return static_cast<float>(font.advance[static_cast<std::uint8_t>(character)]) + gap;
}

/// Width of a string before expansion: the last character counts without the gap behind it.
float string_width(const StrokeFont &font, const TextState &attributes, std::string_view string) {
    while (!string.empty() && !takes_room(font, string.back())) string.remove_suffix(1);
    if (string.empty()) return 0;
    float width = 0;
    for (const char character : string.substr(0, string.size() - 1))
        if (takes_room(font, character)) width += advance(font, attributes, character);
    if (attributes.char_space > 0) return width + attributes.char_space * kPitch;
    return width + static_cast<float>(font.advance[static_cast<std::uint8_t>(string.back())]);
}

float horizontal_offset(const TextState &attributes, float width) {
    switch (attributes.horizontal) {
    case kAlignCenter: return std::trunc(-(width * attributes.expansion) / 2);
    case kAlignRight: return -(width * attributes.expansion);
    default: return 0;
    }
}

float vertical_offset(const TextState &attributes) {
    const auto code = static_cast<std::size_t>(attributes.vertical);
    return code < kVerticalOffset.size() ? kVerticalOffset[code] : kVerticalOffset[kAlignVNormal];
}

/// Collects connected points and hands them on in runs of a fixed size, each beginning where the last one
/// ended.
class RunBuffer {
public:
    void draw_to(const Point &point) {
        points_[count_++] = point;
        if (count_ < points_.size()) return;
        flush();
        points_[count_++] = point;
    }
    void move_to(const Point &point) {
        flush();
        draw_to(point);
    }
    void flush() {
        if (count_ >= 2) gstroke_run({points_.data(), count_});
        count_ = 0;
    }

private:
    static constexpr std::size_t kRunPoints = 30;
    std::array<Point, kRunPoints> points_;
    std::size_t count_ = 0;
};

/// Glyph units to world: turned by the up vector and moved to the string's position.
struct Placing {
    Point origin, up;
    float world_per_unit, expansion, across;

    [[nodiscard]] Point at(float along, std::uint8_t glyph_x, std::uint8_t glyph_y) const {
        const float u = (static_cast<float>(glyph_x) * expansion + along) * world_per_unit;
        const float v = (static_cast<float>(glyph_y) + across) * world_per_unit;
        return {origin.x + u * up.y + v * up.x, origin.y - u * up.x + v * up.y};
    }
};

void draw_glyph(const StrokeFont &font, int start, const Placing &placing, float along) {
    RunBuffer run;
    for (auto at = static_cast<std::size_t>(start); at + 1 < font.data.size(); at += 2) {
        const std::uint8_t x = font.data[at], y = font.data[at + 1];
        if (x == StrokeFont::kGlyphEnd) break;
        if (x < StrokeFont::kPenUp)
            run.draw_to(placing.at(along, x, y));
        else
            run.move_to(placing.at(along, static_cast<std::uint8_t>(x - StrokeFont::kPenUp), y));
    }
    run.flush();
}

/// Text in a font of the window's: its size is the font's, only the alignment counts.
void draw_window_text(std::string_view string, const Point &origin) {
    const WindowFonts &fonts = window_fonts();
    const TextState &attributes = gstate().text;
    if (fonts.draw == nullptr || string.empty()) return;
    gstroke_begin(origin, string);
    const Point pixel = world_to_pixel(gstate().map, origin);
    int x = round_pixel(pixel.x), y = round_pixel(pixel.y);
    if (attributes.horizontal == kAlignCenter) x -= fonts.width(string) / 2;
    if (attributes.horizontal == kAlignRight) x -= fonts.width(string);
    switch (attributes.vertical) {
    case kAlignTop:
    case kAlignCap: y += fonts.ascent(); break;
    case kAlignHalf: y += fonts.ascent() / 2; break;
    case kAlignBottom: y -= fonts.descent(); break;
    default: break;
    }
    fonts.draw(x, y, string);
}

} // namespace

int text(std::string_view string, float x, float y) {
    if (has_window_font())
        draw_window_text(string, {x, y});
    else if (!string.empty())
        draw_stroke_text(current_stroke_font(), string, {x, y});
    return 0;
}

void draw_stroke_text(const StrokeFont &font, std::string_view string, const Point &origin) {
    const TextState &attributes = gstate().text;
    gstroke_begin(origin, string);
    const Placing placing{origin, attributes.up, attributes.height / kUnitsPerHeight, attributes.expansion,
                          vertical_offset(attributes)};
    float along = horizontal_offset(attributes, string_width(font, attributes, string));
    for (const char character : string) {
        const int start = font.start[static_cast<std::uint8_t>(character)];
        if (start != StrokeFont::kNoGlyph) draw_glyph(font, start, placing, along);
        if (takes_room(font, character)) along += advance(font, attributes, character) * attributes.expansion;
    }
}

float gtext_height() {
    return gstate().text.height;
}

float gtext_width(std::string_view string) {
    const TextState &attributes = gstate().text;
    if (has_window_font()) {
        const Mapping &m = gstate().map;
        const float world_pixels = m.window_to_view.x * m.ws_to_device.x;
        return safe_ratio(static_cast<float>(window_fonts().width(string)), world_pixels);
    }
    return string_width(current_stroke_font(), attributes, string) * attributes.expansion *
           attributes.height / kUnitsPerHeight;
}
