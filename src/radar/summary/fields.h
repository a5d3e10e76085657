#pragma once
/// What plot variables take from reports and records.

#include <span>
#include <string_view>

#include "plot/symbols/station.h"
#include "radar/summary/summary.h"

/// Fills the data of a variable (its name counts up to its "-") of a report, but not its place: "id", "reg",
/// "conf", "stat", "type", "int", "prec", "cover", "trend", "top", and of movements "amv" (area), "lmv"
/// (line), "cmv" (cells), "mvmt", "dir" and "spd" (the first of them). 1; 0 when the report has none.
[[nodiscard]] int MDR_get_data(const MdrReport &report, std::string_view variable, StationData &data);
/// The same of item `item` of a record, with its place: "city", "stat", "mode", "echotop", "tvs", "meso", and
/// of storms "id", "top", "mvmt", "dir", "spd" and "hail". Where the record has no place for it (what stands
/// for the whole site) the place is left alone. 1; 0 when there is no such item.
[[nodiscard]] int RCM_get_data(const RcmRecord &record, int item, std::string_view variable,
                               StationData &data);
/// The sign of an intensity code: "-", "", "+", "++", "X", "XX" or "U".
[[nodiscard]] std::string_view MDR_intensity_sign(int code);
/// The names that the two know.
std::span<const std::string_view> RAD_field_names();
