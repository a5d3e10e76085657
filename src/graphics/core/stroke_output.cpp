#include "graphics/core/stroke_output.h"

namespace {

struct State {
    StrokeOutput output;
} state;

} // namespace

void gset_stroke_output(const StrokeOutput &output) {
    state.output = output;
}

void gstroke_begin(const Point &world, std::string_view text) {
    if (state.output.begin != nullptr) state.output.begin(world, text);
}

void gstroke_run(std::span<const Point> world) {
    if (state.output.run != nullptr) state.output.run(world);
}
