#include "graphics/kernel/argument_checks.h"

#include "graphics/core/state.h"
#include "graphics/kernel/device.h"
#include "graphics/kernel/kernel.h"

bool workstation_open(const char *operation) {
    if (gstate().open) return true;
    gerr_printf(operation, "GKS not opened\n");
    return false;
}

bool transform_valid(const char *operation, int transform) {
    if (transform >= 0 && transform < kTransformCount) return true;
    gerr_printf(operation, "invalid transformation number: %d\n", transform);
    return false;
}

std::optional<int> drawable_color(const char *operation, int index) {
    if (gis_valid_colr(index) == 0) {
        gerr_printf(operation, "invalid color index: %d\n", index);
        return std::nullopt;
    }
    if (!gtype_is_WIN_PIX()) return index;
    const int drawn = is_print_only_color(index) ? 1 : index;
    if (gget_color_ind(drawn) == kPixelUnset) {
        gerr_printf(operation, "color index not initialized\n");
        return std::nullopt;
    }
    return drawn;
}

void install_clip() {
    if (!gstate().open) return;
    gdevice().install_clip();
}
