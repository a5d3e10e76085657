// What options hold besides the domains, levels, colours and names that have targets of their own: the
// command line itself, times and zones, words of devices and plots, items of map lists; and the lines of
// storm pages.

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "app/option_check.h"
#include "graphics/devices/print/postscript_options.h"
#include "graphics/devices/print/setup_file.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/resources/sources.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "lib/time/fixed_time.h"
#include "plot/background/item.h"
#include "plot/session/labels.h"
#include "radar/common/options.h"
#include "radar/nids/storm.h"

namespace {

void read_times(const std::string &text) {
    DateRecord date;
    (void)DATE_decode_seq(text.c_str(), date);
    DATE_decode_label(text, date);
    DATE_set_TZ(text);
    DATE_make_label(date);
    (void)DATE_decode_month(text);
    FILE_set_hour_text(text);
    if (FILE_read_time_digits(text, date) > text.size()) std::abort();
}

void read_devices(const std::string &text) {
    parse_print_output(text);
    split_device_spec(text);
    PostScriptOptions options;
    bool inverse = false;
    apply_postscript_options(options, text, inverse);
    if (!(options.scale >= kSmallestScale && options.scale <= kLargestScale)) std::abort();
    DrawingArea page = postscript_area(options.page);
    (void)place_by_geometry(text, {}, page);
    eps_layout(options, page);
}

void read_plot_words(const std::string &text) {
    RadarOptions options;
    for (const std::string &word : parse_string(text, ',')) (void)RADAR_option_word(word, options);
    PLT_label_format(text);
    NidsStormReader reader(10, text.size() % 2 == 0);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) reader.line(line);
    if (reader.storms().size() > 10) std::abort();
}

void read_map_item(std::string_view item) {
    take_map_pass(item);
    if (const auto guard = parse_region_guard(item)) static_cast<void>(guard->matches(40, -90, 10));
    (void)take_size_conditions(item, 10);
    (void)is_foreign_body(item);
    parse_map_file_item(item);
    parse_image_item(item);
    parse_latlon_item(item);
}

/// Words as a shell gives them, one a line. What they set is only looked at: nothing is opened or carried
/// out.
void read_command_line(const std::string &text) {
    std::vector<std::string> words{"radar"};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) words.push_back(line.substr(0, line.find('\0')));
    std::vector<const char *> arguments;
    for (const std::string &word : words) arguments.push_back(word.c_str());
    ResourceProgram program;
    program.name = "radar";
    for (const int id : RES_keyed_ids()) program.descriptors.push_back(*RES_descriptor(id));
    for (const int id : RES_positional_ids()) program.descriptors.push_back(*RES_descriptor(id));
    RES_clear();
    RES_scan_command(arguments, program);
    RES_read_command(arguments, program);
    check_options();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const int quiet = MESS_set(0, 0);
    static_cast<void>(quiet);
    if (size < 1) return 0;
    const std::string text(data + 1, data + size);
    switch (data[0] % 5) {
    case 0: read_times(text); break;
    case 1: read_devices(text); break;
    case 2: read_plot_words(text); break;
    case 3: read_map_item(text); break;
    default: read_command_line(text); break;
    }
    return 0;
}
