#pragma once
/// A stroke font in memory and the reading of its file's text.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// Glyphs are byte pairs (x, y), one after the other. 105 units are one character height. x below kPenUp
/// draws to the point, x - kPenUp moves there, kGlyphEnd in place of x ends the glyph.
struct StrokeFont {
    static constexpr int kCharacters = 256;
    static constexpr int kNoGlyph = -1;
    static constexpr std::uint8_t kPenUp = 128;
    static constexpr std::uint8_t kGlyphEnd = 255;
    static constexpr std::size_t kMaxData = 15000;

    std::vector<std::uint8_t> data;
    std::array<int, kCharacters> start{};            ///< into `data`, always inside it, or kNoGlyph
    std::array<std::uint8_t, kCharacters> advance{}; ///< width of a character; 0 without glyph

    StrokeFont() { start.fill(kNoGlyph); }
    [[nodiscard]] bool has_glyph(std::uint8_t character) const { return start[character] != kNoGlyph; }
};

/// Reads the text of a font file: white-space separated integers, the first 255 or a number with a label
/// behind it and behind every later 255; 254 ends the glyphs and one start per character code follows.
/// nullopt for anything else: too short, not a number, not a byte, more than kMaxData entries. Starts outside
/// the data count as no glyph.
[[nodiscard]] std::optional<StrokeFont> parse_stroke_font(std::string_view text);
