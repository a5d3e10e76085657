#pragma once
/// What the user says about the plot area, turned into a domain: domain strings, regions, the region menu.

#include <string>
#include <string_view>

#include "plot/domain/plot_domain.h"

/// Parses a domain string. 1 explicit domain, 2 region, kMissing for an empty text or "miss", -1 (with a
/// warning) when invalid. Sets the domain flag, file-naming key 'r' and the base priority.
[[nodiscard]] int DOM_decode(std::string_view text, PlotDomain &domain);
/// Non-interactive choice from the resources; see docs for the modes. 0 with a not-given domain when nothing
/// is set. An invalid resource ends the program with kExitRegion.
int DOM_get_region(PlotDomain &domain, int mode);
/// Interactive choice; 0 for "back" or when already chosen, -1 after five unusable answers.
int DOM_prompt_region(PlotDomain &domain, int mode);
int DOM_get_grid_domain(PlotDomain &domain);
/// Ends the program as an invalid domain does, after a warning, unless the domain is a part of the earth.
void DOM_need_map(const PlotDomain &domain);
/// One line "name:plat:plon:p3:p4:p5,clat,clon,nx,ny,dx,dy" at a message level.
void DOM_print(unsigned level, const PlotDomain &domain);
/// Built-in region by abbreviation; 1, or 0 when there is none.
[[nodiscard]] int DOM_get_def_region(std::string_view name, PlotDomain &domain);
/// Reads a region file as the menu; number of entries, or 0.
[[nodiscard]] int DOM_read_menu(std::string_view file);
