#pragma once
/// Reading converted radar summaries; one file is open at a time.

#include <string>
#include <string_view>

#include "radar/summary/summary.h"

/// The kind of a file by its first byte, of a netCDF file by its dimensions.
[[nodiscard]] RadFileKind RAD_chktype(std::string_view name);
/// Opens a file; kind 0 is found out. A file number; -1 when it cannot be opened, or is no summary, for which
/// RAD_fault tells the reason.
[[nodiscard]] int RAD_open(std::string_view name, int &kind);
/// Why the last RAD_open failed; empty when the system's own error (errno) tells.
const std::string &RAD_fault();
/// Reads date, kind and grid; what the file lacks leaves the record as it was. 0; -1 when nothing could be
/// read, and for texts without a Manually Digitized Radar grid.
int RAD_getinfo(int file, RadarInfo &record);
/// The next record of coded messages. 1; -1 at the end, and for files that have none.
[[nodiscard]] int RCM_read(int file, RcmRecord &record);
/// The report at an index, of -1 the next, and moves the index to it. With `header_only` a text report has
/// its station alone and another is not read. 0; -1 at the end, and for files that have none.
[[nodiscard]] int MDR_read(int file, MdrReport &record, bool header_only, int &index);
/// 0; -1 when no such file is open.
int RAD_close(int file);
/// The next report is again the first. 0; -1 when no such file is open.
int RAD_rewind(int file);
/// What is cut, or could not be read, in the open file so far; each kind once.
std::vector<std::string> RAD_faults(int file);
