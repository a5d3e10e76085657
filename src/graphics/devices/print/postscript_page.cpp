#include "graphics/devices/print/postscript_page.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <system_error>

#include "graphics/devices/print/setup_file.h"
#include "lib/system/stream.h"

namespace {

constexpr std::string_view kPageSize = "/PageSize [";
constexpr std::string_view kUprightLetter = "612 792";

/// As "%.2f", whatever the locale.
std::string fixed(float value) {
    std::array<char, 64> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 2).ptr;
    return {digits.data(), end};
}

std::string placing(const PostScriptOptions &options, const EpsLayout &eps) {
    constexpr float margin_inch = 0.25F;
    std::string text;
    if (!options.portrait) {
        text = options.eps ? "90 rotate\n0. inch -" : "90 rotate\n.25 inch -";
        text += fixed(options.eps ? options.page.height : options.page.height - margin_inch);
        text += " inch translate\n";
    } else if (!options.eps) {
        text = ".25 inch .25 inch translate\n";
    }
    if (options.eps) text += fixed(eps.shift_x) + " " + fixed(eps.shift_y) + " translate\n";
    return text;
}

std::string sheet_of(std::string_view request) {
    const std::size_t at = request.find(kPageSize);
    if (at == request.npos) return std::string(kUprightLetter);
    const std::string_view size = request.substr(at + kPageSize.size());
    return std::string(size.substr(0, size.find(']')));
}

bool ends_finished(Stream &file, std::uint64_t size) {
    const std::string end = std::string(kPsPlotEnd) + std::string(kPsPageEnd) + std::string(kPsFileEnd);
    std::string found(end.size(), '\0');
    return size > end.size() && std::fseek(file.get(), -static_cast<long>(end.size()), SEEK_END) == 0 &&
           std::fread(found.data(), 1, found.size(), file.get()) == found.size() && found == end;
}

/// Walks over the lines: who wrote the file, for which sheet, and how its last page is set up.
void read_lines(Stream &file, PsTarget &target) {
    constexpr std::string_view plain = "%!PS-Adobe-1.0", encapsulated = "%!PS-Adobe-3.0 EPSF";
    std::string line, request;
    if (!file.get_line(line)) return;
    if (line.starts_with(encapsulated)) target.kind = PsTarget::Kind::encapsulated;
    if (line != plain) return;
    bool ours = false, in_setup = false;
    while (file.get_line(line)) {
        line += '\n';
        if (line == kPsCreator) ours = true;
        if (!in_setup && request.empty() && line.find(kPageSize) != line.npos && line.starts_with("mark {"))
            request = line;
        if (line == kPsSave) target.setup.clear();
        in_setup = in_setup || line == kPsSave;
        if (in_setup && line != kPsSave) target.setup += line;
        if (line == "%%Begin plot\n") in_setup = false;
    }
    target.sheet = sheet_of(request);
    if (ours && !in_setup) target.kind = PsTarget::Kind::finished;
}

} // namespace

std::string ps_sheet(const PostScriptOptions &options) {
    constexpr float points_per_inch = 72;
    const PageInches &page = options.page;
    const auto along = std::to_string(std::lround(page.width * points_per_inch));
    const auto across = std::to_string(std::lround(page.height * points_per_inch));
    return options.portrait ? along + " " + across : across + " " + along;
}

std::string ps_sheet_request(const PostScriptOptions &options) {
    const bool upright_letter = !options.portrait && options.page.width == kPostScriptPage.width &&
                                options.page.height == kPostScriptPage.height;
    if (upright_letter) return {};
    return "mark {/setpagedevice where {pop 1 dict dup " + std::string(kPageSize) + ps_sheet(options) +
           "] put setpagedevice} if} stopped cleartomark\n";
}

std::string ps_color_reset(const PostScriptOptions &options) {
    return options.color ? "0 0 0 setrgbcolor\n" : "0 setgray\n";
}

std::string ps_page_setup(const PostScriptOptions &options, const EpsLayout &eps) {
    std::string text = "/inch {72 mul} def\n/dot {.33 mul} def\n/mv {moveto} def\n/ln {lineto} def\n"
                       "/lw {setlinewidth} def\n/np {newpath} def\n/cp {closepath} def\n";
    text += placing(options, eps) + ps_color_reset(options) + "2 setlinejoin\n1 dot lw\n[] 0 setdash\n";
    if (options.scale != 1) text += fixed(options.scale) + " " + fixed(options.scale) + " scale\n";
    return text + "%%Begin plot\n";
}

PsTarget ps_look_at_target(const std::string &name) {
    PsTarget target;
    if (name.starts_with('|') || FILE_is_stdio(name) != 0) return target;
    if (FILE_exist(name) == 0) {
        target.kind = PsTarget::Kind::absent;
        return target;
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(FILE_add_user_path(name), error)) return target;
    const auto size = static_cast<std::uint64_t>(std::max<std::int64_t>(FILE_size(name), 0));
    Stream file = FILE_open(name, "rb");
    if (size == 0) target.kind = PsTarget::Kind::absent;
    if (!file || size == 0) return target;
    read_lines(file, target);
    if (target.kind != PsTarget::Kind::finished) return target;
    target.page_end = size - kPsPageEnd.size() - kPsFileEnd.size();
    if (!ends_finished(file, size)) target.kind = PsTarget::Kind::foreign;
    return target;
}

bool ps_take_off_end(const std::string &name, const PsTarget &target) {
    std::error_code error;
    std::filesystem::resize_file(FILE_add_user_path(name), target.page_end, error);
    errno = error.value();
    return !error;
}

void ps_put_back_end(const std::string &name, const PsTarget &target) {
    if (!ps_take_off_end(name, target)) return;
    Stream file = FILE_open(name, "a");
    if (!file) return;
    for (const std::string_view end : {kPsPageEnd, kPsFileEnd})
        std::fwrite(end.data(), 1, end.size(), file.get());
}
