#include "graphics/devices/common/panel.h"

#include <algorithm>

#include "lib/report/message.h"

namespace {

constexpr float kMostPanels = 8; ///< columns, and rows, of a grid
constexpr float kHair = 1e-4F;   ///< what lies less than this on the page does not lie on it

} // namespace

bool PanelFractions::meets_page() const {
    return x < 1 - kHair && y < 1 - kHair && std::min(x + width, 1.0F) > std::max(x, 0.0F) + kHair &&
           std::min(y + height, 1.0F) > std::max(y, 0.0F) + kHair;
}

PanelFractions panel_fractions(float columns, float rows, float column, float row, bool downwards) {
    if (!(columns > 1)) return {columns, rows, column, row};
    if (columns > kMostPanels || rows > kMostPanels)
        MESS_print(kWarn, "panel: At most %.0f columns and rows\n", static_cast<double>(kMostPanels));
    const float across = std::min(columns, kMostPanels), down = std::clamp(rows, 1.0F, kMostPanels);
    return {1 / across, 1 / down, column / across, downwards ? row / down : 1 - (row + 1) / down};
}
