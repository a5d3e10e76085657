#include "graphics/text/stroke_font.h"

#include <algorithm>

#include "lib/text/scan.h"

namespace {

constexpr int kDataEnd = 254;
/// A space is this wide whether or not it has a glyph, which it need not have.
constexpr std::uint8_t kSpaceAdvance = 40;

/// The glyph bytes up to the end mark; false when the text ends first or holds something else.
bool read_glyphs(Scanner &scan, std::vector<std::uint8_t> &data) {
    bool labelled = false;
    for (bool first = true;; first = false) {
        const auto value = scan.integer();
        if (!value) return false;
        if (first && *value != StrokeFont::kGlyphEnd) {
            labelled = true;
            if (!scan.word()) return false;
            continue;
        }
        if (*value == kDataEnd) return true;
        if (*value < 0 || *value > StrokeFont::kGlyphEnd || data.size() >= StrokeFont::kMaxData) return false;
        data.push_back(static_cast<std::uint8_t>(*value));
        if (labelled && *value == StrokeFont::kGlyphEnd && !scan.word()) return false;
    }
}

/// The largest x of a glyph, pen-up points included.
std::uint8_t glyph_advance(const StrokeFont &font, int start) {
    std::uint8_t advance = 0;
    for (auto at = static_cast<std::size_t>(start); at + 1 < font.data.size(); at += 2) {
        const std::uint8_t x = font.data[at];
        if (x == StrokeFont::kGlyphEnd) break;
        const int position = x < StrokeFont::kPenUp ? x : x - StrokeFont::kPenUp;
        advance = std::max(advance, static_cast<std::uint8_t>(position));
    }
    return advance;
}

} // namespace

std::optional<StrokeFont> parse_stroke_font(std::string_view text) {
    StrokeFont font;
    Scanner scan(text);
    if (!read_glyphs(scan, font.data)) return std::nullopt;
    for (std::size_t character = 0; character < font.start.size(); ++character) {
        const auto start = scan.integer();
        if (!start) return std::nullopt;
        if (*start < 0 || static_cast<std::size_t>(*start) >= font.data.size()) continue;
        font.start[character] = *start;
        font.advance[character] = glyph_advance(font, *start);
    }
    font.advance[' '] = kSpaceAdvance;
    return font;
}
