#pragma once
/// The coded text of a report: its parts A, B and C, item by item.

#include <string>
#include <string_view>
#include <vector>

#include "radar/rcm/report.h"

/// What a text lacks, or has more of than is kept; each is a sentence to tell.
using RcmFaults = std::vector<std::string>;

/// Reads the text from its "/NEXRAA" item on, which white space may precede. False without that item.
[[nodiscard]] bool RCM_read_text(std::string_view text, RcmReport &report, RcmFaults &faults);
