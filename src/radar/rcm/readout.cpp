/// The level under the pointer: the report of the file that is seen, read again.

#include <cmath>

#include "lib/report/message.h"
#include "radar/common/input.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"

bool RCM_read_place(const std::string &file, RadarReading &reading) {
    const MessagePause told(~kPrint); // all that is to be said of the file was said when it was drawn
    Stream stream = RADAR_open_input(file);
    RcmReport report;
    if (!stream || !RCM_find_report(stream, report)) {
        reading.value = "it cannot be read";
        return false;
    }
    const RcmPlotState &state = RCM_state();
    RADAR_set_way(SphereOrigin(static_cast<double>(state.lat), static_cast<double>(state.lon)), reading);
    const RcmGrid grid = RCM_grid(state.lat, state.lon);
    const Point place = CellFrame(grid.plane).grid_point(reading.lat, reading.lon);
    const float column = std::floor((place.x - grid.x) / kRcmCellSize),
                row = std::floor((grid.y - place.y) / kRcmCellSize);
    const auto inside = [](float index) { return index >= 0 && index < kRcmGridSize; };
    reading.value = kOutsideWords;
    if (!is_missing(place.x) && inside(column) && inside(row))
        RADAR_set_level(report.cells[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)],
                        reading);
    return true;
}
