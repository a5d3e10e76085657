#include "plot/colour/level_line.h"

#include "graphics/kernel/kernel.h"
#include "plot/colour/levels.h"

namespace {

constexpr int kSolid = 1, kDashed = 2;

int line_style(const Attribute &level, const Attribute &common, float value) {
    if (!is_missing(level.style)) return level.style;
    const float base = is_missing(CONT_get_base()) ? 0.0F : CONT_get_base();
    const int dash = CONT_get_dash();
    if (dash == 1 || (dash == -1 && (value < base || value < 0))) return kDashed;
    return is_missing(common.style) ? kSolid : common.style;
}

} // namespace

void CONT_line_attr(const Attribute &level, const Attribute &common, float value) {
    gset_line_colr_ind(level.color);
    gset_linetype(line_style(level, common, value));
    const float width = is_missing(level.width) ? common.width : level.width;
    gset_linewidth(is_missing(width) ? 1.0F : width);
}
