#include "app/program.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>

#include "app/input_choice.h"
#include "app/input_type.h"
#include "app/option_check.h"
#include "lib/files/naming.h"
#include "lib/files/output_name.h"
#include "lib/files/series.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/message_words.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/resources/start.h"
#include "lib/system/memory_reserve.h"
#include "plot/places/region.h"
#include "plot/session/parameters.h"
#include "plot/session/plot_session.h"
#include "radar/common/mosaic.h"
#include "radar/kavrad/plot.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/reader.h"
#include "radar/nids/plot.h"
#include "radar/nids/reader.h"
#include "radar/nowrad/plot.h"
#include "radar/rcm/plot.h"
#include "radar/rrwds/plot.h"
#include "radar/summary/plot.h"

namespace {

constexpr int kNamesCarryExtras = 1; ///< file type of formats whose names may carry a product selector
constexpr int kRegionOrDomain = 3;   ///< domain choice: "plot_domain", then "region"
constexpr const char *kSummaryPrompt = "Enter the radar filename: ";

/// `chosen`: the current file has been chosen already.
void plot_nids(bool chosen) {
    std::string name;
    // Whether the file is there, the driver tells when it opens it.
    if (!chosen) (void)FILE_get_file("Enter the NIDS filename: ", name);
    NIDS_check_variables();
    NIDS_set_ext_info(FILE_get_ext_info());
    NIDS_set_date(nullptr);
    PlotDomain domain;
    DOM_get_region(domain, kRegionOrDomain);
    NIDS_plot(domain);
}

void plot_lev2(bool chosen, bool records) {
    std::string name;
    if (!chosen) (void)FILE_get_file("Enter the Level 2 filename: ", name);
    LEV2_check_variables();
    LEV2_set_date(nullptr);
    LEV2_set_compress(records ? 1 : 0);
    PlotDomain domain;
    DOM_get_region(domain, kRegionOrDomain);
    LEV2_plot(domain);
}

/// A mosaic has no radar whose surroundings are its plot: the region is asked for, one picture after the
/// other.
void plot_mosaic(bool chosen, const char *prompt, void (*set_date)(const DateRecord *),
                 int (*plot)(PlotDomain &domain)) {
    constexpr int kRegionOfUser = 1;
    std::string name;
    if (!chosen) (void)FILE_get_file(prompt, name);
    MOSAIC_check_variables();
    set_date(nullptr);
    PlotDomain domain;
    while (DOM_prompt_region(domain, kRegionOfUser) >= 1) plot(domain);
}

void plot_rrwds(bool chosen) {
    std::string name;
    if (!chosen) (void)FILE_get_file("Enter the RRWDS filename: ", name);
    RRWDS_check_variables();
    RRWDS_set_date(nullptr);
    PlotDomain domain;
    DOM_get_region(domain, kRegionOrDomain);
    RRWDS_plot(domain);
}

void plot_rcm(bool chosen) {
    std::string name;
    if (!chosen) (void)FILE_get_file("Enter the RCM filename: ", name);
    RCM_check_variables();
    RCM_set_date(nullptr);
    PlotDomain domain;
    DOM_get_region(domain, kRegionOrDomain);
    RCM_prompt_id();
    RCM_plot(domain);
}

/// The regions one after the other, and in each the variables.
void plot_summaries(bool chosen) {
    constexpr int kRegionOfUser = 1;
    std::string name;
    if (!chosen) (void)FILE_get_file(kSummaryPrompt, name);
    RAD_check_variables();
    RAD_set_date(nullptr);
    PlotDomain domain;
    while (DOM_prompt_region(domain, kRegionOfUser) >= 1) {
        RAD_set_prompt_variable(1);
        while (RAD_prompt_variable() != 0) {
            PlotDomain plot = domain; // a zoom is over when the picture is
            RAD_plot(plot);
        }
    }
}

/// Without a word about the kind of input, a file that is surely of another kind than summaries is read as
/// that.
bool kind_is_open(int type) {
    return type == kInputRadar && RES_getvals("input").empty() && RES_getvals("in_file").empty();
}

ExitStatus dispatch(int type) {
    const bool open = kind_is_open(type), chosen = type == kInputAuto || open;
    if (chosen || type == kInputNids || type == kInputLev2 || type == kInputLev2z) {
        FILE_set_type(kNamesCarryExtras);
        PLT_param_min_size();
    }
    if (type == kInputAuto) type = choose_input();
    if (open) type = choose_for_file(kSummaryPrompt);
    switch (type) {
    case kInputNids: plot_nids(chosen); break;
    case kInputLev2:
    case kInputLev2z: plot_lev2(chosen, type == kInputLev2z); break;
    case kInputNowrad:
        plot_mosaic(chosen, "Enter the NOWRad filename: ", NOWRad_set_date, NOWRad_plot);
        break;
    case kInputKavrad:
        plot_mosaic(chosen, "Enter the KAVRAD filename: ", KAVRAD_set_date, KAVRAD_plot);
        break;
    case kInputRrwds: plot_rrwds(chosen); break;
    case kInputRcm: plot_rcm(chosen); break;
    case kInputRadar: plot_summaries(chosen); break;
    default: break;
    }
    return kExitOk;
}

ExitStatus run(int argc, const char *const argv[]) {
    MESS_refuse_log(FILE_is_input);
    RES_init(argc, argv, RES_keyed_ids(), RES_positional_ids());
    if (FLAG_help() == 1) {
        const std::string &name = RES_get_progname();
        MESS_print(kPrint, "%s: This program plots various types of radar data\n", name.c_str());
        RES_help_print(name, RES_keyed_ids(), RES_positional_ids());
        return kExitOk;
    }
    check_options();
    RAD_cvt_in_file();
    MESS_print_prog("RADAR DATA PLOTTING");
    return dispatch(FLAG_get(kFlagInputType));
}

/// Closes what is open. Without memory even for that, the bare words.
[[noreturn]] void end_without_memory() {
    try {
        PLT_end_without_memory();
    } catch (const std::exception &) {
        std::fputs("Out of memory\n", stderr);
        std::exit(kExitNoMemory);
    }
}

} // namespace

int run_program(int argc, const char *const argv[]) {
    VYX_reserve_memory();
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc &) {
    } catch (const std::length_error &) {
        // A container asked for more than any memory holds.
    }
    end_without_memory();
}
