#include "graphics/kernel/window_hooks.h"

namespace {

struct State {
    WindowHooks hooks;
} state;

} // namespace

void gset_window_hooks(const WindowHooks &hooks) {
    state.hooks = hooks;
}

const WindowHooks &gwindow_hooks() {
    return state.hooks;
}
