#pragma once
/// The plot parameters that concern the session: words of the resource "plot_param".

/// Applies the plot parameters, before the workstation is opened. Words of other modules change nothing here.
void PLT_param_decode();
/// Applies those that only an open workstation takes.
void PLT_param_apply();
