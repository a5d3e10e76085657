#include "plot/places/region.h"

#include <algorithm>
#include <array>
#include <climits>
#include <vector>

#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/resources/prompt.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/places/domain_string.h"
#include "plot/places/region_lines.h"
#include "plot/places/station_priority.h"
#include "plot/projection/names.h"
#include "plot/projection/transform.h"

namespace {

constexpr char kDomainKey = 'r'; ///< file-naming key of the domain text
constexpr std::string_view kRegionFile = "vyx.reg";
constexpr std::size_t kMostRegions = 19;
constexpr int kAnswersTaken = 5;
constexpr int kAnswerLength = PATH_MAX; ///< a domain string may name a file
constexpr int kNx = 25, kNy = 17;

struct BuiltInRegion {
    std::string_view abbreviation, description;
    float clat, clon, spacing; ///< degrees, plane units; a missing centre is asked for
};

constexpr std::array kBuiltIn{
    BuiltInRegion{"us", "Contiguous US", 39.0F, -97.0F, 2.3F},
    BuiltInRegion{"ne", "New England", 42.0F, -76.0F, 0.9F},
    BuiltInRegion{"at", "Atlantic", 37.0F, -82.0F, 0.9F},
    BuiltInRegion{"se", "Southeastern", 31.0F, -88.0F, 1.1F},
    BuiltInRegion{"mw", "Midwestern", 43.0F, -93.0F, 1.1F},
    BuiltInRegion{"sp", "Southern Plains", 32.5F, -100.0F, 1.2F},
    BuiltInRegion{"nw", "Northwestern", 44.0F, -112.0F, 1.0F},
    BuiltInRegion{"sw", "Southwestern", 37.0F, -112.0F, 1.0F},
    BuiltInRegion{"var", "Variable", kMissingF, kMissingF, 1.2F},
};

struct MenuEntry {
    std::string description, abbreviation;
    bool shown;
};

std::vector<MenuEntry> built_in_menu() {
    std::vector<MenuEntry> menu{{"Return to previous menu", "back", true}};
    for (const BuiltInRegion &region : kBuiltIn)
        menu.push_back({std::string(region.description), std::string(region.abbreviation), true});
    return menu;
}

struct State {
    std::vector<MenuEntry> menu = built_in_menu(); ///< entry 0 is the way back
    int num_regs = 0;          ///< one more than the last entry read from a file; 0 until one was read
    bool prompt_region = true; ///< the region may still be asked for
};

State state;

void read_default_menu() {
    if (state.num_regs == 0) (void)DOM_read_menu(kRegionFile); // told where it fails
}

[[noreturn]] void end_with_invalid_domain() {
    MESS_print(kError, "Invalid domain\n");
    VYX_exit(kExitRegion);
}

/// Decodes the first resource of the list that is set; 0 with a not-given domain when none is.
int decode_resource(std::initializer_list<std::string_view> names, PlotDomain &domain) {
    DOM_init(domain);
    for (const std::string_view name : names) {
        const char *text = RES_get(name);
        if (text == nullptr) continue;
        const int result = DOM_decode(std::string(text), domain);
        if (result == kDomainInvalid) end_with_invalid_domain();
        return result;
    }
    return 0;
}

int decode_region(std::string_view token, PlotDomain &domain, int depth);

// The name of a region, without a colon.
int decode_plain_region(std::string_view name, PlotDomain &domain, int depth) {
    std::string text;
    if (DOM_search_file(kRegionFile, name, text) == 1) {
        // A region that names itself means the built-in one.
        const int result =
            stricmp(text, name) == 0 ? kDomainInvalid : decode_domain(text, domain, depth, decode_region);
        if (result > 0) return kDomainRegion;
        if (stricmp(text, name) != 0) return kDomainInvalid;
    }
    return DOM_get_def_region(name, domain) == 1 && is_possible_domain(domain) ? kDomainRegion
                                                                               : kDomainInvalid;
}

int decode_region(std::string_view token, PlotDomain &domain, int depth) {
    std::string text;
    int found = 0;
    if (begins_with(token, "fi:")) {
        found = DOM_search_file(token.substr(3), "", text);
    } else if (const std::size_t colon = token.find(':'); colon == std::string_view::npos) {
        const int result = decode_plain_region(token, domain, depth);
        if (result == kDomainInvalid) domain.proj = kProjUnknown;
        return result;
    } else if (colon + 1 == token.size()) {
        return DOM_read_menu(token.substr(0, colon)) > 0 ? kDomainMenu : kDomainInvalid;
    } else {
        found = DOM_search_file(token.substr(0, colon), token.substr(colon + 1), text);
    }
    return found == 1 && decode_domain(text, domain, depth, decode_region) > 0 ? kDomainRegion
                                                                               : kDomainInvalid;
}

void show_menu() {
    MESS_print(kPrint, "\n        Region Menu\n");
    for (std::size_t i = 1; i < state.menu.size(); ++i)
        if (state.menu[i].shown)
            MESS_print(kPrint, "%3d - %-20s (%s)\n", static_cast<int>(i), state.menu[i].description.c_str(),
                       state.menu[i].abbreviation.c_str());
    MESS_print(kPrint, "%3d - %s\n", 0, state.menu[0].description.c_str());
}

/// What was chosen: the abbreviation of a numbered entry, or the answer itself.
std::string ask_menu() {
    show_menu();
    std::string answer = VYX_prompts("Enter the region: ", kAnswerLength);
    const bool digits = answer.find_first_not_of("0123456789") == std::string::npos;
    if (!digits || answer.empty() || answer.size() > 2) return answer;
    const auto number = static_cast<std::size_t>(Scanner(answer).integer().value_or(0));
    return number < state.menu.size() ? state.menu[number].abbreviation : answer;
}

int prompt_with_menu(PlotDomain &domain) {
    for (int answers = 0; answers < kAnswersTaken; ++answers) {
        const std::string answer = ask_menu();
        if (stricmp(answer, "quit") == 0) VYX_exit(kExitOk);
        if (stricmp(answer, "back") == 0) return 0;
        if (stricmp(answer, "list") == 0) {
            DOM_print_file(kRegionFile);
            continue;
        }
        const int result = DOM_decode(answer, domain);
        if (result > 0 || result == kMissing) return result;
        if (result == kDomainInvalid) MESS_print(kWarn, "Invalid domain\n");
    }
    return -1;
}

} // namespace

int DOM_decode(std::string_view text, PlotDomain &domain) {
    const int result = decode_domain(text, domain, 0, decode_region);
    FLAG_set(kFlagDomain, result);
    FILE_set_key(kDomainKey, text);
    if (result > 0) DOM_set_base_prior(static_cast<float>(domain.ny - 1) * domain.dy);
    if (result == kDomainInvalid) MESS_print(kWarn, "DOM_decode: Invalid plot domain\n");
    return result;
}

void DOM_print(unsigned level, const PlotDomain &domain) {
    std::string line(projection_name(domain.proj));
    if (domain.ellipsoid == 1) line += ":e";
    for (const float value : {domain.plat, domain.plon, domain.p3, domain.p4, domain.p5})
        line += is_missing(value) ? ":" : format_text(":%3.3f", static_cast<double>(value));
    line += format_text(",%3.3f,%3.3f,%d,%d,%4.4f,%4.4f\n", static_cast<double>(domain.clat),
                        static_cast<double>(domain.clon), domain.nx, domain.ny,
                        static_cast<double>(domain.dx), static_cast<double>(domain.dy));
    MESS_print(level, "%s", line.c_str());
}

int DOM_get_def_region(std::string_view name, PlotDomain &domain) {
    const auto found = std::find_if(kBuiltIn.begin(), kBuiltIn.end(), [name](const BuiltInRegion &region) {
        return stricmp(region.abbreviation, name) == 0;
    });
    if (found == kBuiltIn.end()) return 0;
    DOM_init(domain);
    domain.proj = kProjPolar;
    domain.clat = is_missing(found->clat) ? VYX_promptf("Enter the central latitude: ") : found->clat;
    domain.clon = is_missing(found->clon) ? VYX_promptf("Enter the central longitude: ") : found->clon;
    domain.plon = domain.clon;
    domain.nx = kNx;
    domain.ny = kNy;
    domain.dx = domain.dy = found->spacing;
    FLAG_set(kFlagDomain, kDomainExplicit);
    DOM_set_base_prior(static_cast<float>(domain.ny - 1) * domain.dy);
    return 1;
}

int DOM_read_menu(std::string_view file) {
    TextLines lines = open_region_file(file);
    if (!lines) return 0;
    state.menu.resize(1);
    while (state.menu.size() <= kMostRegions) {
        const auto line = read_region_line(lines);
        if (!line) break;
        if (line->menu_flag != 0) state.menu.push_back({line->description, line->abbreviation, true});
    }
    state.num_regs = static_cast<int>(state.menu.size());
    return state.num_regs;
}

int DOM_get_region(PlotDomain &domain, int mode) {
    const bool from_domain = mode == 1 || mode == 3 || mode == 4;
    if (from_domain && RES_get("plot_domain") != nullptr) return decode_resource({"plot_domain"}, domain);
    if (RES_get("region") != nullptr || mode != 4) return decode_resource({"region"}, domain);
    read_default_menu();
    DOM_init(domain);
    return state.menu.size() > 1 ? DOM_decode(state.menu[1].abbreviation, domain) : 0;
}

int DOM_prompt_region(PlotDomain &domain, int mode) {
    DOM_init(domain);
    if (!state.prompt_region) return 0;
    if (mode == 1) {
        const int result = decode_resource({"plot_domain", "region"}, domain);
        if (result > 0 || result == kMissing) state.prompt_region = false;
        if (result > 0) return result;
    }
    read_default_menu();
    if (FLAG_batch() == 1) {
        const int result =
            state.menu.size() > 1 ? DOM_decode(state.menu[1].abbreviation, domain) : int{kDomainInvalid};
        if (result == kDomainInvalid) end_with_invalid_domain();
        state.prompt_region = false;
        return result;
    }
    return prompt_with_menu(domain);
}

void DOM_need_map(const PlotDomain &domain) {
    if (is_map_projection(domain.proj)) return;
    MESS_print(kWarn, "DOM_need_map: A size or a diagram is no map\n");
    end_with_invalid_domain();
}

int DOM_get_grid_domain(PlotDomain &domain) {
    return decode_resource({"grid_domain", "region", "plot_domain"}, domain);
}
