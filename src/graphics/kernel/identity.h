#pragma once
/// What the plot session tells the workstation about itself.

#include <string>
#include <string_view>

/// Window title; file devices write it into their header.
void GPH_set_win_title(std::string_view title);
const std::string &gget_win_title();
/// Name under which X resources are looked up.
void gset_prog_name(std::string_view name);
