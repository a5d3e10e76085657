#include "radar/nids/grid_file.h"

#include "lib/date.h"
#include "lib/file_naming.h"
#include "lib/message.h"
#include "lib/resource.h"
#include "lib/text.h"

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

/// The file name that the naming key gives for the product's date; the input's naming convention is
/// untouched.
std::string grid_file_name(std::string_view key, const NidsInfo &info) {
    FILE_save_name_conv();
    FILE_set_name(key);
    std::string name;
    FILE_set_date(&info.date, name);
    FILE_restore_name_conv();
    if (key.starts_with('|')) FILE_allow_command(name);
    return name;
}

} // namespace

NidsGridFile::NidsGridFile(Stream stream, const NidsInfo &info) : stream_(std::move(stream)) {
    const PlotDomain &d = info.domain;
    std::fprintf(stream_.get(), "VYXGRID\n%s\n%s\n%s%f %f %f %f %d %d\n", DATE_make_label(info.date).c_str(),
                 info.name.c_str(), projection_token(d).c_str(), d.clat, d.clon, d.dx, d.dy, info.columns,
                 info.rows);
}

NidsGridFile::~NidsGridFile() {
    if (stream_ && !stream_.close()) MESS_print(kError, "NIDS_grd_out_file: Error writing grid file\n");
}

void NidsGridFile::write(float value, int count) {
    for (int i = 0; i < count; ++i) std::fprintf(stream_.get(), "%f\n", value);
}

std::optional<NidsGridFile> NIDS_grd_out_file(const NidsInfo &info) {
    for (const std::string &word : RES_getvals("out_file")) {
        if (!begins_with(word, kFormatWord)) continue;
        const bool named = word.size() > kFormatWord.size() + 1;
        const std::string name =
            grid_file_name(named ? std::string_view(word).substr(kFormatWord.size() + 1) : kDefaultKey, info);
        Stream stream = FILE_open(name, "w");
        if (!stream) return std::nullopt;
        MESS_print(kMess, "Opening grid file: %s\n", name.c_str());
        return NidsGridFile(std::move(stream), info);
    }
    return std::nullopt;
}
