#include "plot/session/outcome.h"

#include <algorithm>
#include <utility>

namespace {

struct State {
    ExitStatus status = kExitOk;
} state;

} // namespace

void PLT_miss_picture() {
    state.status = std::max(state.status, kExitSession);
}

void PLT_lack_memory() {
    state.status = kExitNoMemory;
}

ExitStatus PLT_take_outcome() {
    return std::exchange(state.status, kExitOk);
}

ExitStatus PLT_outcome() {
    return state.status;
}
