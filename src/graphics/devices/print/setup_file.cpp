#include "graphics/devices/print/setup_file.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <utility>

#include "graphics/devices/print/paper.h"
#include "lib/files/output_name.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/system/calendar.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

const char *first_set(std::initializer_list<const char *> variables) {
    for (const char *variable : variables) {
        const char *value = std::getenv(variable);
        if (value && *value) return value;
    }
    return nullptr;
}

} // namespace

PrintOutput parse_print_output(std::string_view name) {
    FILE_allow_command(name);
    if (name.starts_with('|')) return {PrintOutputKind::pipe, std::string(name.substr(1))};
    if (name.starts_with('+')) return {PrintOutputKind::append, std::string(name.substr(1))};
    return {PrintOutputKind::create, std::string(name)};
}

OutputFile open_print_output(const PrintOutput &output) {
    const auto refused = [&output](const char *operation, const std::string &why) {
        MESS_print(kError, "gopen_ws: %s: %s: %s\n", operation, output.name.c_str(), why.c_str());
        return OutputFile();
    };
    if (output.kind != PrintOutputKind::pipe && FILE_is_input(output.name))
        return refused("Not written", "it is an input file");
    OutputFile file;
    switch (output.kind) {
    case PrintOutputKind::pipe: file = OutputFile::create("|" + output.name); break;
    case PrintOutputKind::append: file = OutputFile::append(output.name); break;
    case PrintOutputKind::create: file = OutputFile::create(output.name); break;
    }
    return file ? std::move(file) : refused("Unable to open", file.fault());
}

void report_print_output(const PrintOutput &output) {
    switch (output.kind) {
    case PrintOutputKind::pipe: MESS_print(kMess, "Spooling to: %s\n", output.name.c_str()); return;
    case PrintOutputKind::append: MESS_print(kMess, "Appending to: %s\n", output.name.c_str()); return;
    case PrintOutputKind::create: MESS_print(kMess, "Creating: %s\n", output.name.c_str()); return;
    }
}

std::vector<std::string> split_device_spec(std::string_view spec) {
    return parse_string(spec, ',');
}

std::string print_file_name(const std::vector<std::string> &spec,
                            std::initializer_list<const char *> variables, std::string_view fallback) {
    if (!spec.empty() && !spec.front().empty()) return spec.front();
    const char *named = first_set(variables);
    return named ? std::string(named) : std::string(fallback);
}

std::optional<PageInches> parse_page_size(std::string_view word) {
    if (const auto paper = find_paper(word)) return PageInches{paper->width_inch, paper->height_inch};
    const auto value = keyword_value(word, "sz");
    if (!value) return std::nullopt;
    Scanner scan(*value);
    const auto width = scan.real();
    scan.literal('x');
    const auto height = scan.real();
    if (scan.failed()) return std::nullopt;
    const auto [low, high] = std::minmax(*width, *height);
    if (low < kSmallestPage || high > kLargestPage) return std::nullopt;
    return PageInches{*width, *height};
}

std::string print_geometry(std::initializer_list<const char *> variables) {
    if (const char *resource = RES_get("geometry"); resource && *resource) return resource;
    const char *named = first_set(variables);
    return named ? named : "";
}

std::string local_time_text() {
    static constexpr std::array kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t now = DATE_get_time();
    std::tm local{};
    if (!localtime_r(&now, &local)) return "\n";
    return format_text("%s %s %2d %02d:%02d:%02d %d\n", kDays[static_cast<std::size_t>(local.tm_wday)],
                       kMonths[static_cast<std::size_t>(local.tm_mon)], local.tm_mday, local.tm_hour,
                       local.tm_min, local.tm_sec, local.tm_year + 1900);
}
