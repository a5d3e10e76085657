#include "plot/places/station_priority.h"

#include <array>
#include <string_view>

#include "lib/resources/database.h"

namespace {

struct State {
    int priority = 3;  ///< of stations
    int loc_prior = 4; ///< of locations
};
State state;

} // namespace

void DOM_set_base_prior(float height) {
    static constexpr std::array heights{50.0F, 25.0F, 12.5F, 6.25F, 3.0F};
    state.priority = 1;
    for (const float limit : heights) state.priority += height > limit ? 0 : 1;
    const char *given = RES_get("stat_prior");
    const std::string_view text = given == nullptr ? std::string_view() : given;
    const bool relative = text.starts_with('+') || text.starts_with('-');
    // One digit, with or without a sign; anything else is for the city database alone.
    if (text.size() != (relative ? 2U : 1U)) return;
    const char digit = text.back();
    if (digit < '0' || digit > '9') return;
    const int number = digit - '0';
    state.priority = !relative ? number : text[0] == '+' ? state.priority + number : state.priority - number;
}

int DOM_get_prior() {
    return state.priority;
}

void DOM_set_loc_prior(int priority) {
    state.loc_prior = priority;
}

int DOM_get_loc_prior() {
    return state.loc_prior;
}
