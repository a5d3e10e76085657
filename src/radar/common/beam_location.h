#pragma once
/// The line that a key prints of the place under the cursor: where it is, how far from the radar, and how
/// high the beam stands there.

#include <string_view>

/// On the event "v-Alt": prints place, distance and beam height (feet) under a cursor point. A missing
/// `elevation` leaves the height missing.
void NIDS_print_loc_elev(std::string_view event, float x, float y, float radar_lat, float radar_lon,
                         float elevation);
