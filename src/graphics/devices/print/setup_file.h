#pragma once
/// What the print and metafile devices share when they open: output names, option words, the page.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/devices/common/drawing_area.h"
#include "lib/files/output_file.h"

/// How an output name asks to be opened.
enum class PrintOutputKind { create, append, pipe };

/// "|command" pipes into a command, "+name" appends to a file, any other name creates one.
struct PrintOutput {
    PrintOutputKind kind = PrintOutputKind::create;
    std::string name; ///< without the leading "+" or "|"
};

PrintOutput parse_print_output(std::string_view name);
/// Opens the output: what is created stands under its name when it is whole. Not open on failure, which has
/// been told.
OutputFile open_print_output(const PrintOutput &output);
/// Says where the output goes: "Spooling to", "Appending to" or "Creating", at level kMess.
void report_print_output(const PrintOutput &output);

/// The fields of a comma-separated device specification; empty fields between commas are kept.
std::vector<std::string> split_device_spec(std::string_view spec);
/// Field 1 when not empty, else the first of the environment variables that is set and not empty, else
/// `fallback`.
std::string print_file_name(const std::vector<std::string> &spec,
                            std::initializer_list<const char *> variables, std::string_view fallback);

/// Page width and height in inches.
struct PageInches {
    float width = 0, height = 0;
};
/// From "sz=8.5x11" or a paper name, whatever the case. nullopt for any other word and for sizes outside
/// kSmallestPage to kLargestPage.
[[nodiscard]] std::optional<PageInches> parse_page_size(std::string_view word);

/// A page must be larger than the margin of half an inch that drawing areas leave.
inline constexpr float kPageMargin = 0.5F;
inline constexpr float kSmallestPage = 1.0F;
inline constexpr float kLargestPage = 1000.0F;

/// The "geometry" resource, else the first of the environment variables that is set; empty when none is.
std::string print_geometry(std::initializer_list<const char *> variables);

/// Local time as "Thu Jul  3 18:30:00 2003\n", in English whatever the locale.
std::string local_time_text();
