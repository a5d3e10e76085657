#pragma once
/// Reading Radar Coded Messages: bulletins one behind the other in a file, as text, in the packet form, or
/// inside a Level III message (product 74).
/// Sources: coded_text.

#include "radar/rcm/report.h"

class Stream;

/// Reads the next report of a stream from where it stands: 1 when a report was read, 0 for a bulletin without
/// "/NEXRAA", -1 at the end of the file. What is cut off, beyond the tables, or against the counts of the
/// bulletin is told.
[[nodiscard]] int RCM_read_site(Stream &stream, RcmReport &report);
void RCM_init(RcmReport &report);
/// Prints what the report holds, but its grid, at a message level.
void RCM_print(unsigned level, const RcmReport &report);
