#include "app/option_check.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "lib/options/table.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/resources/list_words.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/levels.h"
#include "plot/session/parameters.h"
#include "radar/common/mosaic.h"
#include "radar/common/options.h"
#include "radar/lev2/plot.h"
#include "radar/nids/plot.h"
#include "radar/rcm/plot.h"
#include "radar/summary/plot.h"

namespace {

constexpr std::string_view kNoEffect = "has no effect in this version";

constexpr WordRule without_effect(std::string_view word) {
    return {word, PARAM_text, {}, kNoEffect};
}

/// Plot parameters of data that this version does not read.
constexpr std::array kLaterParams{without_effect("gridx"),  without_effect("plt_grid"),
                                  without_effect("nohdr"),  without_effect("max_bad"),
                                  without_effect("grdfmt"), without_effect("maxl")};

constexpr std::array kOutputKinds{WordRule{"gif", PARAM_text}, WordRule{"png", PARAM_text},
                                  WordRule{"vyx", PARAM_text}};

void check_lists() {
    const std::array params{PLT_param_words(),  CONT_param_words(), RADAR_param_words(),
                            NIDS_param_words(), LEV2_param_words(), MOSAIC_param_words(),
                            RCM_param_words(),  RAD_param_words(),  std::span<const WordRule>(kLaterParams)};
    PARAM_check("plot_param", params);
    const std::array kinds{std::span<const WordRule>(kOutputKinds)};
    PARAM_check("out_file", kinds);
}

void check_numbers() {
    for (const std::string_view resource : {"con_interval", "plot_scale"})
        if (const char *text = RES_get(resource); text != nullptr && !WORD_is_number(text))
            WORD_not(resource, text, "a number");
    if (const char *text = RES_get("stat_prior"); text != nullptr && !WORD_is_integer(text))
        WORD_not("stat_prior", text, "a whole number");
    for (const std::string &entry : RES_getvals("con_base")) {
        std::string_view text = trimmed(entry);
        if (text.starts_with('<') || text.starts_with('>')) text.remove_prefix(1);
        if (!WORD_is_number(text)) WORD_not("con_base", entry, "a number");
    }
}

/// A command stands in the name of an input or an output; nothing is put behind or before one to make a name.
void check_paths() {
    constexpr std::array<std::string_view, 7> kNames{"image_path", "city_file",   "map_file", "name_conv",
                                                     "in_file",    "color_table", "font_list"};
    for (const int id : RES_keyed_ids()) {
        const ResourceDescriptor *row = RES_descriptor(id);
        if (row->kind != ResourceKind::directory && std::ranges::find(kNames, row->name) == kNames.end())
            continue;
        for (const std::string &entry : RES_getvals(row->name))
            if (entry.starts_with('|'))
                WORD_tell(row->name, '"' + entry + "\" is not run, no command stands here");
    }
}

/// A switch may have a word behind "=", or in a file. Only an icon can be switched off.
void check_switches() {
    struct Switch {
        std::string_view resource;
        bool has_off;
    };
    constexpr std::array<std::string_view, 6> kWords{"true", "on", "yes", "false", "off", "no"};
    constexpr std::size_t kOnWords = 3;
    for (const Switch &row : {Switch{"help", false}, Switch{"batch", false}, Switch{"icon", true}}) {
        const char *text = RES_get(row.resource);
        if (text == nullptr || *text == '\0' || std::string_view(text) == "1") continue;
        const KnownWords known = KnownWords(kWords).first(row.has_off ? kWords.size() : kOnWords);
        const auto same = [text](std::string_view word) { return stricmp(word, text) == 0; };
        if (!std::ranges::any_of(known, same)) WORD_unknown(row.resource, text, known, "it counts as \"on\"");
    }
}

void check_device() {
    const char *text = RES_get("device");
    if (text == nullptr || *text == '\0') return;
    const std::vector<std::string> fields = parse_string(text, ',');
    constexpr std::string_view kLetters = "dDpPqQhHmMwW";
    if (fields.empty() || fields.front().empty()) return;
    if (kLetters.find(fields.front().front()) == kLetters.npos)
        WORD_not("device", fields.front(), "one of d, p, q, h, m and w; it counts as d");
    constexpr std::string_view kWithOptions = "pPqQhHmM";
    if (kWithOptions.find(fields.front().front()) != kWithOptions.npos) return;
    const bool foreign = stricmp(fields.front().substr(0, 1), "w") == 0; // whose parameters are no options
    for (std::size_t i = foreign ? 3 : 2; i < fields.size(); ++i)
        WORD_not("device", fields[i], "an option of a window, which has none");
}

/// "WxH", "+X+Y" or both; "P" and a panel.
bool is_geometry(std::string_view text) {
    if (text.starts_with('=')) text.remove_prefix(1);
    if (begins_with(text, "P")) text.remove_prefix(1);
    Scanner scan(text);
    const auto begins_place = [&scan] {
        return scan.rest().starts_with('+') || scan.rest().starts_with('-');
    };
    if (!begins_place()) {
        scan.real();
        scan.literal(scan.rest().starts_with('X') ? 'X' : 'x');
        scan.real();
    }
    if (scan.failed() || scan.at_end()) return !scan.failed();
    for (int i = 0; i < 2 && begins_place(); ++i) scan.real();
    return !scan.failed() && scan.at_end();
}

void check_geometry() {
    const char *text = RES_get("geometry");
    if (text != nullptr && !is_geometry(trimmed(text)))
        WORD_not("geometry", text, "WIDTHxHEIGHT, +X+Y, or both");
}

} // namespace

void check_options() {
    check_lists();
    check_numbers();
    check_paths();
    check_switches();
    check_device();
    check_geometry();
}
