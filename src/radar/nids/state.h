#pragma once
/// State of the Level III driver, shared by its own files only.

#include <string_view>

#include "radar/common/options.h"
#include "radar/nids/product.h"

/// Describes the storm variables.
inline constexpr std::string_view kVariableFile = "nids.var";

struct NidsPlotState {
    bool open = false;    ///< a product is open
    NidsInfo info;        ///< header of the open product
    DateRecord base_date; ///< requested date
    DateRecord file_date; ///< date used for file names: requested fields, the rest from the product
    std::string surveyed; ///< the file that was last told what it lacks
    RadarOptions options;
    bool graph = false; ///< draw the graphic pages
    bool strong_only = false;
    int most_storms = 0; ///< 0: all
};

NidsPlotState &NIDS_state();
