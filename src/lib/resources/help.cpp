#include <array>
#include <string>

#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/sources.h"
#include "lib/resources/start.h"
#include "lib/system/version.h"
#include "lib/text/strings.h"

namespace {

/// Under the description of the line above.
constexpr const char *kIndent = "             ";

constexpr std::array kRegionLines{
    "               region=predefined region:",
    "                  us,ne,at,se,mw,sp,nw,sw,etc",
    "               proj=projection, clat=central latitude, clon=central longitude,",
    "               nx,ny=number of gridpoints and dx,dy=grid spacing",
};
/// Closes the lines of the "region" resource only.
constexpr const char *kRegionNames = "                  us,ne,at,se,mw,sp,nw,sw,var";

bool is_domain(const ResourceDescriptor &row) {
    return row.kind == ResourceKind::domain || row.kind == ResourceKind::region;
}

void print_domain(const ResourceDescriptor &row) {
    MESS_print(kPrint, " %-10s\n", std::string(row.option_text).c_str());
    MESS_print(kPrint, "%s%s\n", kIndent, std::string(row.description).c_str());
    for (const char *line : kRegionLines) MESS_print(kPrint, "%s\n", line);
    if (row.kind == ResourceKind::region) MESS_print(kPrint, "%s\n", kRegionNames);
}

void print_row(const ResourceDescriptor &row) {
    if (row.name.empty()) return;
    if (is_domain(row)) {
        print_domain(row);
        return;
    }
    std::string first(row.option_text);
    for (const std::string &line : parse_string(row.description, '\n')) {
        MESS_print(kPrint, " %-10s  %s\n", first.c_str(), line.c_str());
        first.clear();
    }
}

} // namespace

void RES_help_print(std::string_view program, std::span<const int> keyed_ids,
                    std::span<const int> positional_ids) {
    const std::string name(program);
    MESS_print(kPrint, "%s syntax (version:%s)\n", name.c_str(), VYX_version());
    MESS_print(kPrint, "   %s [options...]\n", name.c_str());
    MESS_print(kPrint, "Keyed options...\n");
    MESS_print(kPrint, " %-10s  Resource/defaults file name\n", "-df file");
    MESS_print(kPrint, " %-10s  Program name\n", "-na name");
    for (const int id : keyed_ids) print_row(RES_descriptor_or_report(id));
    MESS_print(kPrint, "Positional options...\n");
    for (const int id : positional_ids) print_row(RES_descriptor_or_report(id));
}
