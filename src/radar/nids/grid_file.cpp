#include "radar/nids/grid_file.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lib/files/naming.h"
#include "lib/files/output_name.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/session/outcome.h"

namespace {

constexpr std::string_view kFormatWord = "vyx";
constexpr std::string_view kDefaultKey = "nids_grd_vyx";

/// Projection token of the header line, with its trailing blank.
std::string projection_token(const PlotDomain &d) {
    switch (d.proj) {
    case kProjLatLon: return "LL ";
    case kProjMercator: return "ME ";
    case kProjPolar: return is_missing(d.plon) || d.plon == d.clon ? "PS " : format_text("PS:%f ", d.plon);
    case kProjLambert:
        if (!is_missing(d.p3)) return format_text("LC:%f:%f:%f:%f:%f ", d.plat, d.plon, d.p3, d.p4, d.p5);
        return is_missing(d.plon) ? "LC " : format_text("LC:%f ", d.plon);
    default: return "";
    }
}

/// The file name that the naming key gives for the product's date. Keys that stand behind the convention's
/// name hold, and those that the input was chosen by.
std::string grid_file_name(std::string_view convention, const NidsInfo &info) {
    std::vector<NameKey> keys;
    const auto add = [&](char letter, int value) {
        if (convention.find(std::string{':', letter, '='}) == convention.npos && FILE_get_key(letter).empty())
            keys.push_back({letter, std::to_string(value)});
    };
    add('s', info.source);
    add('p', info.code);
    std::string name = FILE_name_output(convention, info.date, keys);
    if (convention.starts_with('|')) FILE_allow_command(name);
    return name;
}

void miss(const char *why, const std::string &name, const std::string &cause) {
    MESS_print(kError, "NIDS_grd_out_file: %s: %s: %s\n", why, name.c_str(), cause.c_str());
    PLT_miss_picture();
}

/// The raster that a file was written from: drawn again, it may write its file again.
std::string raster_id(int number) {
    return std::to_string(number) + " of " + FILE_get_filename();
}

struct State {
    std::unordered_map<std::string, std::string> written; ///< files of this run, and raster_id of each
};
State state;

std::optional<NidsGridFile> open_grid_file(const std::string &name, const NidsInfo &info, int number) {
    if (FILE_is_input(name)) {
        miss("Not written", name, "it is an input file");
        return std::nullopt;
    }
    const auto [earlier, is_new] = state.written.try_emplace(name, raster_id(number));
    if (!is_new && earlier->second != raster_id(number)) {
        miss("Not written", name, "it holds the raster " + earlier->second);
        return std::nullopt;
    }
    OutputFile file = OutputFile::create(name);
    if (!file) {
        miss("Unable to open", name, file.fault());
        return std::nullopt;
    }
    MESS_print(kMess, "Opening grid file: %s\n", name.c_str());
    return NidsGridFile(std::move(file), name, info);
}

} // namespace

NidsGridFile::NidsGridFile(OutputFile file, std::string name, const NidsInfo &info)
    : file_(std::move(file)), name_(std::move(name)) {
    const PlotDomain &d = info.domain;
    const auto wide = [](float value) { return static_cast<double>(value); };
    file_.write(format_text("VYXGRID\n%s\n%s\n%s%f %f %f %f %d %d\n", DATE_make_label(info.date).c_str(),
                            info.name.c_str(), projection_token(d).c_str(), wide(d.clat), wide(d.clon),
                            wide(d.dx), wide(d.dy), info.columns, info.rows));
}

void NidsGridFile::write(float value, int count) {
    const std::string line = format_text("%f\n", static_cast<double>(value));
    for (int i = 0; i < count; ++i) file_.write(line);
}

void NidsGridFile::finish() {
    if (!file_.commit()) miss("Error writing grid file", name_, file_.fault());
}

std::optional<NidsGridFile> NIDS_grd_out_file(const NidsInfo &info, int number) {
    for (const std::string &word : RES_getvals("out_file")) {
        if (!begins_with(word, kFormatWord)) continue;
        const std::string_view convention = keyword_value(word, kFormatWord).value_or("");
        const std::string name = grid_file_name(convention.empty() ? kDefaultKey : convention, info);
        return open_grid_file(name, info, number);
    }
    return std::nullopt;
}
