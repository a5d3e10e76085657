#pragma once
/// The plot variables that the user asks for, and how the variable file says to draw each.

#include <string>
#include <string_view>
#include <vector>

/// How a plot variable is drawn.
struct PlotVariable {
    std::string name;
    int decimals = 0;       ///< of a value, 0 to 6
    float dx = 0, dy = 0;   ///< offset from the place, text heights
    std::string attributes; ///< attribute string; empty: the data colour
};

/// Sets up the variables named by the resource "variable" (a comma list), described by a variable file along
/// "file_path". Returns their number. A name's line is found by the whole name, else by what stands before
/// its "-"
/// ("vil-1": "vil"); a name without a line is drawn at its place in the data colour.
///
/// Lines of a variable file: name, decimals, x and y offset in text heights, then an attribute string if the
/// data colour is not wanted. "#" at the beginning makes a comment.
[[nodiscard]] int VAR_setup(std::string_view file);
/// The names that a variable file describes.
std::vector<std::string> VAR_known_names(std::string_view file);
int VAR_get_num();
const std::vector<PlotVariable> &VAR_get_vars();
/// One variable, or its name; `index` from 0, below VAR_get_num().
const PlotVariable &VAR_get(int index);
const std::string &VAR_get_name(int index);
/// 1 when a variable is to be plotted whose name, up to its "-", is this one.
int VAR_has(std::string_view name);

/// Remembers which model the data are from.
void VAR_set_model_str(std::string_view model);
const std::string &VAR_get_model_str();
