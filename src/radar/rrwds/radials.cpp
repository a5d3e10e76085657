/// The radials of a file, drawn, and read under the pointer.

#include <cmath>

#include "graphics/kernel/helpers.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/time/date.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_choice.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "radar/common/input.h"
#include "radar/common/intensity_legend.h"
#include "radar/common/level_lists.h"
#include "radar/rrwds/plot.h"

namespace {

/// The six intensities, and a seventh level that is no echo.
constexpr std::string_view kLevels = "None,Blue,Cyan,Green,Yellow,Red,Magenta,Off";
constexpr std::size_t kNoEcho = 7;
/// A radial reaches a tenth of a degree into the next.
constexpr float kWidthDeg = 1.1F;

/// Bins that end nearer to the radar are clutter.
std::size_t clutter_bins(float clutter_nm, float bin_nm) {
    std::size_t bins = 0;
    while (bins < kRrwdsBins && static_cast<float>(bins + 1) * bin_nm < clutter_nm) ++bins;
    return bins;
}

} // namespace

void RRWDS_draw_radials(const CellSink *other_sink) {
    const RrwdsPlotState &state = RRWDS_state();
    const RrwdsInfo &info = state.info;
    std::array<float, kCellLevels> values{};
    for (std::size_t level = 0; level <= kNoEcho; ++level) values[level] = static_cast<float>(level);
    const LevelInk ink = CELL_ink(values);
    CellFiller filler(ink);
    const CellSink sink = other_sink != nullptr ? *other_sink : filler.sink();
    const CellFrame frame(RRWDS_site_domain(), info.lat, info.lon);
    RadialCells cells(frame);
    const float bin = info.bin_nm * kKmPerNauticalMile / kKmPerPlaneUnit;
    const std::size_t skip = clutter_bins(state.options.clutter, info.bin_nm);
    for (int azimuth = 0; azimuth < kRrwdsRadials; ++azimuth) {
        const RrwdsLevels levels = RRWDS_levels(state.bytes, azimuth);
        const auto from = static_cast<float>(azimuth);
        cells.draw(from, from + kWidthDeg, 0, bin, levels, skip, ink, sink);
    }
}

int RRWDS_plot_data() {
    const RrwdsPlotState &state = RRWDS_state();
    GPH_trans(kDataTransform);
    PLT_label_up_left(state.info.title);
    PLT_label_up_right(DATE_make_label(state.info.date));
    PLT_label_low_right(state.info.subtitle);
    PLT_label_date(state.info.date);
    CONT_choose_levels({kLevels, {}, kSummaryBase, kSummaryInterval, 0, kSummaryTop});
    if (FLAG_getplot(kPlotSummary) > 0) RRWDS_draw_radials(nullptr);
    Attribute ink;
    ATTRIB_get("color_data", ATTRIB_text_default(), ink);
    GPH_line_attr(nullptr);
    GPH_line_attr(&ink);
    GPH_mark_attr(&ink, 1.0F);
    Point radar{kMissingF, kMissingF};
    MAP_tran(radar.x, radar.y, state.info.lat, state.info.lon);
    RADAR_draw_site(state.options, radar.x, radar.y);
    return 0;
}

bool RRWDS_read_place(const std::string &file, RadarReading &reading) {
    const RrwdsInfo &info = RRWDS_state().info;
    Stream stream = RADAR_open_input(file);
    const std::vector<std::byte> bytes = stream.read_all(kRrwdsFileBytes);
    RrwdsHeader header;
    if (!RRWDS_decode_header(bytes, header)) {
        reading.value = "it cannot be read";
        return false;
    }
    RADAR_set_way(SphereOrigin(static_cast<double>(info.lat), static_cast<double>(info.lon)), reading);
    if (!is_missing(info.elevation)) {
        reading.beam_m = static_cast<float>(
            RADAR_beam_height(static_cast<double>(reading.range_km), static_cast<double>(info.elevation), 0));
        reading.above_radar = true;
    }
    const float bin = std::floor(reading.range_km / (info.bin_nm * kKmPerNauticalMile));
    reading.value = kOutsideWords;
    if (!(bin >= 0 && bin < kRrwdsBins)) return true;
    const int azimuth = static_cast<int>(std::floor(reading.azimuth)) % kRrwdsRadials;
    const std::size_t level = RRWDS_levels(bytes, azimuth)[static_cast<std::size_t>(bin)];
    if (level == 0 || level == kNoEcho) {
        reading.value = level == 0 ? kBelowWords : kNoDataWords;
    } else {
        reading.number = RAD_intensity_dbz(static_cast<int>(level));
        reading.value = RADAR_value_text(reading.number, "dBZ");
    }
    return true;
}
