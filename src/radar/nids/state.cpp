#include "radar/nids/state.h"

namespace {

NidsPlotState state;

} // namespace

NidsPlotState &NIDS_state() {
    return state;
}
