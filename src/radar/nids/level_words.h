#pragma once
/// What levels that carry no number mean, and the unit of those that do.

#include <string_view>

#include "radar/nids/header.h"

/// "no data", "range folded" and the like for a level of a packet of the product; empty for one that
/// carries a value.
std::string_view NIDS_level_word(const NidsBlocks &blocks, const NidsInfo &info, int packet, int level);
/// The name of a class of the products that hold classes instead of quantities; empty otherwise.
std::string_view NIDS_class_name(const NidsInfo &info, float value);
/// "dBZ"; empty for a number without one.
std::string_view NIDS_unit(const NidsInfo &info);
