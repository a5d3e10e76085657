#pragma once
/// Level lists and colours of Level III products by product code.

#include <string_view>

struct NidsLevelRule {
    std::string_view colors; ///< level list, or colours alone
    bool thresholds = false; ///< level values are the product's sixteen thresholds
    float base = 0, interval = 0, range_min = 0,
          range_max = 0; ///< for colours alone, when interval is above 0
};

/// The rule of a product code; codes without one of their own use their thresholds.
const NidsLevelRule &NIDS_level_rule(int code);
