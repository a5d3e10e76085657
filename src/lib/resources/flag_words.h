#pragma once
/// Values of the resources "draw", "plot_type" and "file_param". Unknown words change nothing and are told.

#include <string_view>

void FLAG_set_draw(std::string_view value);
void FLAG_set_plot_type(std::string_view word);
void FLAG_set_file_param(std::string_view word);
