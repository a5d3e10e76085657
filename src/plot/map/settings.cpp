#include "plot/map/settings.h"

namespace {

struct State {
    LatLonSettings lat_lon;
    int fill_cont = 0;
} state;

} // namespace

void MAP_latlon(int dot, int extra, float lat_spacing, float lon_spacing) {
    state.lat_lon = {lat_spacing, lon_spacing, extra, dot};
}

const LatLonSettings &MAP_get_latlon() {
    return state.lat_lon;
}

void MAP_fill_cont(int flag) {
    state.fill_cont = flag;
}

int MAP_get_fill_cont() {
    return state.fill_cont;
}
