#pragma once
/// The plot parameters that concern the session: words of the resource "plot_param".

#include <span>

#include "lib/resources/list_words.h"

/// The words that these functions take.
std::span<const WordRule> PLT_param_words();
/// Applies "min_size" alone, which the file selection needs before there is a plot.
void PLT_param_min_size();
/// Applies the plot parameters, before the workstation is opened. Words of other modules change nothing here.
void PLT_param_decode();
/// Applies those that only an open workstation takes.
void PLT_param_apply();
