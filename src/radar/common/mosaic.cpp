#include "radar/common/mosaic.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>

#include "graphics/kernel/helpers.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/time/date.h"
#include "plot/background/background_map.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/places/region.h"
#include "plot/session/labels.h"
#include "plot/session/outcome.h"
#include "plot/symbols/watch.h"
#include "radar/common/input.h"
#include "radar/common/level_lists.h"

namespace {

constexpr float kBase = 0, kInterval = 5, kLowest = 0, kHighest = 76;
constexpr std::string_view kWatchWord = "watch";

bool wants_watches() {
    const std::vector<std::string> words = RES_getvals("variable");
    return std::ranges::find(words, kWatchWord) != words.end();
}

void choose_levels() {
    CONT_choose_levels({kReflectivityLevels, {}, kBase, kInterval, kLowest, kHighest});
}

using Param = ParamRow<MosaicOptions>;
constexpr std::array kParams{
    Param{{"run", PARAM_integer, "a number of cells"}, [](MosaicOptions &options, ParamValue value) {
              options.run_length = std::max(Scanner(value.value_or("1")).integer().value_or(1), 1);
          }}};

} // namespace

std::span<const WordRule> MOSAIC_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void MOSAIC_check_variables() {
    constexpr std::array known{kWatchWord};
    for (const std::string &entry : RES_getvals("variable"))
        if (const std::string_view word = trimmed(entry); !word.empty() && word != kWatchWord)
            WORD_unknown("variable", word, known);
}

bool MosaicDriver::open(std::string_view name) {
    close();
    name_ = name;
    stream_ = RADAR_open_input(name_);
    if (!stream_) {
        const int fault = errno;
        MESS_print(kWarn, "%s_open_file: Unable to open file: %s\n", format_.name, name_.c_str());
        MESS_print_fault(kWarn, format_text("%s_open_file", format_.name).c_str(), name_, fault);
        return false;
    }
    readable_ = format_.read_header(stream_, info_);
    if (!readable_) MESS_print(kWarn, "%s_open_file: Unable to read file: %s\n", format_.name, name_.c_str());
    if (options_.radar.strict && !is_whole()) {
        close();
        if (readable_) MESS_print(kWarn, "%s_open_file: Incomplete file: %s\n", format_.name, name_.c_str());
        return false;
    }
    file_date_ = info_.date;
    if (!is_missing(file_date_.year)) (void)DATE_num_sec(file_date_); // a year may have two digits
    FILE_set_data_date(file_date_);
    MESS_print(kMess, "Product domain: ");
    DOM_print(kMess, info_.domain);
    MESS_print(kMess, "Product type: %s\n", info_.title.c_str());
    const std::string label = DATE_make_label(info_.date);
    MESS_print(kMess, "Product date: %s\n", label.c_str());
    PLT_label_up_right(label);
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return true;
}

void MosaicDriver::close() {
    stream_ = Stream();
}

bool MosaicDriver::rewind() {
    if (!stream_) return false;
    std::rewind(stream_.get());
    readable_ = format_.read_header(stream_, info_);
    return readable_;
}

/// Walks all lines; the stream stands at the first one again.
bool MosaicDriver::is_whole() {
    if (!readable_) return false;
    MosaicLine line;
    while (format_.next_line(stream_, line)) {
    }
    const bool whole = format_.end() == MosaicEnd::complete && FILE_input_is_whole(name_);
    return rewind() && whole;
}

void MosaicDriver::set_date(const DateRecord *date) {
    base_date_ = date != nullptr ? *date : FILE_get_date();
}

void MosaicDriver::take_params() {
    options_ = {};
    for (const std::string &given : RES_getvals("plot_param"))
        if (const std::string_view word = trimmed(given); !RADAR_option_word(word, options_.radar))
            PARAM_take(word, kParams, options_);
}

RadarSteps MosaicDriver::complete(RadarSteps steps) const {
    if (!options_.radar.refresh) steps.next_file = nullptr;
    steps.strict = options_.radar.strict;
    return steps;
}

void MosaicDriver::plot(PlotDomain &domain, const RadarSteps &steps) {
    if (!RADAR_is_open()) take_params();
    RADAR_plot(complete(steps), base_date_, domain);
}

void MosaicDriver::next_file(const RadarSteps &steps) {
    RADAR_next_file(complete(steps));
}

void MosaicDriver::plot_frame() {
    const bool watches = wants_watches();
    if (watches) WATCH_decode(file_date_);
    MAP_draw(kMapUnderlay);
    draw();
    if (watches) WATCH_plot();
    RADAR_draw_bar();
    MAP_draw(kMapOverlay);
    PLT_labels();
}

MosaicGrid MosaicDriver::grid(const MosaicInfo &info) const {
    const PlotDomain &domain = info.domain;
    MosaicGrid grid{.dx = domain.dx, .dy = domain.dy, .columns = domain.nx, .lines = domain.ny};
    const MapDomainScope scope(domain);
    MAP_get_up_left(grid.x, grid.y);
    grid.y -= format_.first_edge * grid.dy;
    return grid;
}

void MosaicDriver::draw(const CellSink *other_sink) {
    GPH_trans(kDataTransform);
    PLT_label_up_left(info_.title);
    PLT_label_low_right("");
    PLT_label_date(info_.date);
    choose_levels();
    if (!readable_) PLT_miss_picture(); // told when it was opened
    if (!readable_ || FLAG_getplot(kPlotSummary) < 1) return;
    const LevelInk ink = CELL_ink(format_.values());
    CellFiller filler(ink);
    const CellSink sink = other_sink != nullptr ? *other_sink : filler.sink();
    const CellFrame frame(info_.domain);
    MosaicCells cells(frame, grid(info_), options_.run_length, ink, sink);
    MosaicLine line;
    int lines = 0;
    for (; format_.next_line(stream_, line); ++lines) cells.draw(line.number, line.runs);
    cells.finish();
    tell_end(lines);
}

void MosaicDriver::tell_end(int lines) {
    const bool once = told_ != name_;
    told_ = name_;
    const MosaicEnd end = format_.end();
    if (!once) return;
    if (end != MosaicEnd::complete) {
        const char *what = end == MosaicEnd::cut       ? "The file ends"
                           : end == MosaicEnd::damaged ? "The file is damaged"
                                                       : "There is more than the grid has room for";
        MESS_print(kWarn, "%s_plot: %s: %s, at line %d of %d\n", format_.name, name_.c_str(), what, lines,
                   info_.domain.ny);
    }
    (void)FILE_input_is_whole(name_); // which tells
}

void MosaicDriver::on_event(std::string_view event, float x, float y, RadarReader read) {
    RADAR_on_event(event, x, y, read);
    CONT_flash_value(event, x, y);
}

namespace {

/// The value of the cell, when the stream's lines come to it.
std::optional<float> value_of_cell(const MosaicFormat &format, Stream &stream, int line, int column) {
    MosaicLine cells;
    while (format.next_line(stream, cells)) {
        if (cells.number < line) continue;
        if (cells.number > line) break;
        for (const MosaicRun &run : cells.runs)
            if (column >= run.column && column < run.column + run.cells) return format.values()[run.level];
    }
    return {};
}

} // namespace

bool MosaicDriver::read_place(const std::string &file, RadarReading &reading) const {
    const MessagePause told(~kPrint); // all that is to be said of the file was said when it was drawn
    Stream stream = RADAR_open_input(file);
    MosaicInfo info;
    if (!stream || !format_.read_header(stream, info)) {
        reading.value = "it cannot be read";
        return false;
    }
    const MosaicGrid cells = grid(info);
    const Point place = CellFrame(info.domain).grid_point(reading.lat, reading.lon);
    reading.value = kOutsideWords;
    if (is_missing(place.x)) return true;
    const auto column = static_cast<int>(std::floor((place.x - cells.x) / cells.dx));
    const auto line = static_cast<int>(std::floor((cells.y - place.y) / cells.dy));
    const std::optional<float> value = value_of_cell(format_, stream, line, column);
    if (!value) return true;
    if (*value <= 0) {
        reading.value = kBelowWords;
    } else {
        reading.number = *value;
        reading.value = RADAR_value_text(*value, "dBZ");
    }
    return true;
}
