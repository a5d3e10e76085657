#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"

int GPH_text_font(std::string_view name) {
    constexpr int stroke_precision = 2;
    const int font = name.empty() ? gget_font_index(gget_def_font()) : gget_font_index(name);
    return gset_fontprec(font, stroke_precision);
}
