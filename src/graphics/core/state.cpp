#include "graphics/core/state.h"

namespace {

GraphicsState state;

} // namespace

GraphicsState &gstate() {
    return state;
}
