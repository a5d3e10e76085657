#pragma once
/// The plot variables that the user asks for, how the variable file says to draw each, and the menu of them.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lib/text/missing.h"

/// What becomes of a variable's data.
enum class VariableKind {
    text,   ///< the text, else the value (or "value/value2")
    vector, ///< an arrow of a motion: the value is where it comes from in degrees, value2 its speed in knots
    barb,   ///< the same as a wind barb
    none    ///< no data of a station: what draws it knows its name
};

/// How a plot variable is drawn.
struct PlotVariable {
    std::string name;
    int decimals = 0;       ///< of a value, 0 to 6
    float dx = 0, dy = 0;   ///< offset from the place, text heights
    std::string attributes; ///< attribute string; empty: the data colour
    int code = kMissing;    ///< plot code, the file's own number of the variable
    VariableKind kind = VariableKind::text;
    std::string models;      ///< whose data have it ("mdr", "rcm", "mdr:rcm"); empty: any
    std::string description; ///< of the menu and of labels; without one the menu does not show it
};

/// Reads a variable file along "file_path" and keeps what it describes. 1, or 0 after a message.
///
/// Lines of a variable file: name, decimals, x and y offset in text heights; then, where wanted, an attribute
/// string ("-" for the data colour), a code, a kind ("text", "vector", "barb", "none"), the models joined by
/// ":" ("-" for any), and the rest of the line as description. "#" at the beginning makes a comment. A line
/// that cannot be read is told.
int VAR_open_file(std::string_view file);
/// Sets up variables by their names. Returns their number. A name's line is found by the whole name, else by
/// what stands before its "-" ("vil-1": "vil"); a name without a line is drawn at its place in the data
/// colour.
int VAR_setup(std::span<const std::string> names);
/// VAR_open_file, and those of the resource "variable" (a comma list).
[[nodiscard]] int VAR_setup(std::string_view file);
/// The names that a variable file describes.
std::vector<std::string> VAR_known_names(std::string_view file);
int VAR_get_num();
const std::vector<PlotVariable> &VAR_get_vars();
/// One variable, or its name; `index` from 0, below VAR_get_num().
const PlotVariable &VAR_get(int index);
const std::string &VAR_get_name(int index);
/// Name of a variable up to its "-".
std::string_view VAR_base_name(std::string_view name);
/// 1 when a variable is to be plotted whose name, up to its "-", is this one.
int VAR_has(std::string_view name);
/// Data of stations are drawn for it.
[[nodiscard]] bool VAR_is_type_PLOT(const PlotVariable &variable);
/// It has a text for the plot's label: VAR_make_var_form_datatype.
[[nodiscard]] bool VAR_is_LABEL(const PlotVariable &variable);
std::string VAR_make_var_form_datatype(const PlotVariable &variable);

/// Makes the menu of the described variables that the model's data have. Number of entries.
int VAR_read_menu();
inline constexpr int kMenuBack = 0, kMenuLeave = -1;
/// Shows the menu and asks. `names` receives what was chosen, by numbers or names joined by commas. Their
/// number; kMissing for "none": the plot without variables; kMenuBack for "0" and "back"; kMenuLeave for
/// "quit", or after five unusable answers.
[[nodiscard]] int VAR_menu(std::string_view title, std::string_view prompt, std::vector<std::string> &names);

/// Remembers which model the data are from.
void VAR_set_model_str(std::string_view model);
const std::string &VAR_get_model_str();
