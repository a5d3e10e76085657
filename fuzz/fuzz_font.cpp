// Any bytes as the text of a font file, drawn when they make a font.

#include <cstdint>
#include <string_view>

#include "graphics/text/stroke.h"
#include "graphics/text/stroke_font.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    const auto font = parse_stroke_font({reinterpret_cast<const char *>(bytes), size});
    if (!font) return 0;
    for (const int start : font->start)
        if (start != StrokeFont::kNoGlyph && static_cast<std::size_t>(start) >= font->data.size())
            __builtin_trap();
    draw_stroke_text(*font, "A fuzz \xFF", {1, 2});
    return 0;
}
