#include "plot/session/layout.h"

namespace {

/// Margin for labels and bar below and above the plot, NDC.
constexpr float kLabelBand = 0.04F;

struct State {
    Rect offsets{0, 0, kLabelBand, kLabelBand}; ///< left, right, bottom, top
    float offset = 0;                           ///< last given to PLT_set_view_offset
    Rect view;                                  ///< plot area
    int full_labels = 0;
} state;

} // namespace

void PLT_set_view_offset(float offset) {
    state.offset = offset;
    state.offsets = {0, 0, offset, offset};
}

void PLT_set_view_offsets(float left, float right, float bottom, float top) {
    state.offsets = {left, right, bottom, top};
}

float PLT_get_view_offset() {
    return state.offset;
}

Rect PLT_get_view_offsets() {
    return state.offsets;
}

Rect PLT_get_view() {
    return state.view;
}

void PLT_set_view(const Rect &view) {
    state.view = view;
}

void PLT_set_full_lab(int on) {
    state.full_labels = on;
}

int PLT_get_full_lab() {
    return state.full_labels;
}
