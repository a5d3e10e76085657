#include "radar/rrwds/plot.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/background/background_map.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/places/city.h"
#include "plot/places/region.h"
#include "plot/session/labels.h"
#include "radar/common/beam_location.h"
#include "radar/common/driver.h"
#include "radar/common/input.h"
#include "radar/common/intensity_legend.h"

namespace {

constexpr const char *kCityFile = "rad.cty";
constexpr std::size_t kMostLabelBytes = 50;

RrwdsPlotState state;

/// The end of the program, unless pictures would be lost by it.
int give_up(ExitStatus status) {
    RRWDS_close_file();
    if (!RADAR_is_open()) VYX_exit(status);
    return 0;
}

/// A date near that of the file: what selected the file, else when it was written, else now.
DateRecord date_near(const std::string &name) {
    DateRecord near = FILE_get_date();
    if (is_missing(near.year)) near = state.base_date;
    if (!is_missing(near.year)) return near;
    const std::int64_t written = FILE_is_command(name) || FILE_is_stdio(name) == 1 ? -1 : FILE_modtime(name);
    const std::int64_t time = written > 0 ? written : DATE_get_time();
    DATE_get_gmdate(&time, near);
    return near;
}

void take_header(const RrwdsHeader &header, RrwdsInfo &info) {
    info.title = ("Reflectivity for " + header.station).substr(0, kMostLabelBytes);
    info.subtitle = format_text("Range: %3.0f", static_cast<double>(header.range_nm));
    if (!is_missing(header.elevation))
        info.subtitle += format_text(" Elev:%2.1f", static_cast<double>(header.elevation));
    info.date = header.date;
    info.elevation = header.elevation;
    info.range_nm = header.range_nm;
    info.bin_nm = header.range_nm / kRrwdsBins;
}

/// Header and station of the first bytes of a file.
int complete_header(std::span<const std::byte> bytes, const std::string &name, RrwdsInfo &info) {
    RrwdsHeader header;
    if (!RRWDS_decode_header(bytes, header)) {
        MESS_print(kError, "RRWDS_get_header: No header%s%s\n", name.empty() ? "" : ":", name.c_str());
        return give_up(kExitNoFile);
    }
    MESS_print(kOut3, "RANGE: %d\n", header.short_range ? 1 : 0);
    info = RrwdsInfo();
    take_header(header, info);
    CityEntry station;
    if (CTY_get(kCityFile, header.station, station) == 0 || is_missing(station.lat)) {
        MESS_print(kError, "RRWDS_get_header: Station not found\n");
        return give_up(kExitHeader);
    }
    info.lat = station.lat;
    info.lon = station.lon;
    return 1;
}

/// Tells once what the open file lacks, or has too much of. True when it is whole.
bool tell_survey(const std::string &name, bool longer) {
    const std::size_t records = RRWDS_count_radials(state.bytes.size());
    const bool whole = records == kRrwdsRadials && FILE_input_is_whole(name);
    if (state.told == name) return whole;
    state.told = name;
    const auto tell = [&name](const std::string &what) {
        MESS_print(kWarn, "RRWDS_open_file: %s: %s\n", name.c_str(), what.c_str());
    };
    if (records < kRrwdsRadials) tell(format_text("%zu of %d radials are there", records, kRrwdsRadials));
    if (longer) tell("What stands behind the last radial is not read");
    if (is_missing(state.info.date.month)) tell("The header has no time");
    if (is_missing(state.info.elevation)) tell("The header has no elevation");
    return whole;
}

RadarSteps driver_steps() {
    RadarSteps steps{[](std::string_view name) { return RRWDS_open_file(name) == 1; },
                     [] { RRWDS_close_file(); },
                     [] {
                         PlotDomain domain;
                         RRWDS_domain(domain);
                         return domain;
                     },
                     [] { RRWDS_plot_frame(); }};
    steps.mouse = RRWDS_callback;
    steps.plot = RRWDS_plot;
    if (state.options.refresh) steps.next_file = [](PlotDomain &) { return RRWDS_plot_nextfile(); };
    steps.strict = true; // a file that cannot be read is an error, wherever it stands
    return steps;
}

} // namespace

RrwdsPlotState &RRWDS_state() {
    return state;
}

int RRWDS_get_header(Stream &stream, RrwdsInfo &info) {
    return complete_header(stream.read_all(kRrwdsHeaderBytes), {}, info);
}

int RRWDS_open_file(std::string_view name) {
    const std::string copy(name);
    RRWDS_close_file();
    Stream stream = RADAR_open_input(copy);
    if (!stream) {
        const int fault = errno;
        MESS_print(kError, "RRWDS_open_file: Unable to open file:%s\n", copy.c_str());
        MESS_print_fault(kError, "RRWDS_open_file", copy, fault);
        return give_up(kExitNoFile);
    }
    state.bytes = stream.read_all(kRrwdsFileBytes + 1);
    const bool longer = state.bytes.size() > kRrwdsFileBytes;
    state.bytes.resize(std::min(state.bytes.size(), kRrwdsFileBytes));
    if (complete_header(state.bytes, copy, state.info) != 1) return 0;
    if (!tell_survey(copy, longer) && state.options.strict) {
        MESS_print(kError, "RRWDS_open_file: Incomplete file:%s\n", copy.c_str());
        return give_up(kExitNoFile);
    }
    RrwdsInfo &info = state.info;
    if (!is_missing(info.date.month)) info.date.year = RRWDS_year(info.date, date_near(copy));
    FILE_set_data_date(info.date);
    MESS_print(kMess, "Product type: %s\n", info.title.c_str());
    MESS_print(kMess, "Product date: %s\n", DATE_make_label(info.date).c_str());
    MESS_print(kMess, "Product location: %5.2f %5.2f\n", static_cast<double>(info.lat),
               static_cast<double>(info.lon));
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return 1;
}

int RRWDS_close_file() {
    state.bytes.clear();
    return 1;
}

int RRWDS_rewind_file() {
    return state.bytes.empty() ? 0 : 1;
}

PlotDomain RRWDS_site_domain() {
    constexpr int kLines = 401, kColumns = 601;
    const RrwdsInfo &info = state.info;
    PlotDomain domain;
    DOM_init(domain);
    domain.proj = kProjPolar;
    domain.clat = info.lat;
    domain.plon = domain.clon = info.lon;
    domain.nx = kColumns;
    domain.ny = kLines;
    const MapDomainScope scope(domain);
    domain.dx = domain.dy = info.bin_nm * kKmPerNauticalMile / kKmPerPlaneUnit * MAP_factor(info.lat);
    return domain;
}

int RRWDS_domain(PlotDomain &domain) {
    if (!is_missing(domain.proj)) return -1;
    domain = RRWDS_site_domain();
    MESS_print(kOut1, "Domain: ");
    DOM_print(kOut1, domain);
    return 0;
}

void RRWDS_set_date(const DateRecord *date) {
    state.base_date = date != nullptr ? *date : FILE_get_date();
}

void RRWDS_plot_param() {
    state.options = {};
    for (const std::string &given : RES_getvals("plot_param"))
        (void)RADAR_option_word(trimmed(given), state.options); // words of others are told elsewhere
}

void RRWDS_check_variables() {
    for (const std::string &entry : RES_getvals("variable"))
        if (const std::string_view word = trimmed(entry); !word.empty())
            WORD_tell("variable", format_text("\"%.*s\" is not used, the file holds intensities alone",
                                              static_cast<int>(word.size()), word.data()));
}

int RRWDS_plot_frame() {
    MAP_draw(kMapUnderlay);
    RRWDS_plot_data();
    MAP_draw(kMapOverlay);
    PLT_labels();
    RAD_draw_bar();
    return 0;
}

void RRWDS_callback(int /*kind*/, std::string_view event, float x, float y) {
    RADAR_on_event(event, x, y, RRWDS_read_place, [=] {
        NIDS_print_loc_elev(event, x, y, state.info.lat, state.info.lon, state.info.elevation);
    });
    RAD_flash_levels(event, x, y);
}

int RRWDS_plot_nextfile() {
    RADAR_next_file(driver_steps());
    return 0;
}

int RRWDS_plot(PlotDomain &domain) {
    if (!RADAR_is_open()) RRWDS_plot_param();
    RADAR_plot(driver_steps(), state.base_date, domain);
    return 0;
}
