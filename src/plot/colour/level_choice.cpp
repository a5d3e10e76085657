#include "plot/colour/level_choice.h"

#include <cmath>

#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_list.h"
#include "plot/colour/levels.h"

namespace {

struct Range {
    float min, max;
};

/// From the first to the last level that the driver's own list draws.
std::optional<Range> own_range(const LevelChoice &choice) {
    std::optional<Range> range;
    const auto levels = decode_level_list(parse_string(choice.colors, ','));
    for (std::size_t i = 0; i < levels.size(); ++i) {
        float value = levels[i].value;
        if (levels[i].keeps_value) value = i < choice.values.size() ? choice.values[i] : kMissingF;
        if (is_missing(value) || levels[i].attribute.color < 0) continue;
        if (range && value <= range->max) break; // words behind the last level are no levels
        range = {range ? range->min : value, value};
    }
    return range;
}

/// Levels without values: their interval, and the base that makes picture and bar count alike.
void settle_steps(const LevelChoice &choice) {
    // Not the distance of the driver's first two values, which the user's colours have put aside.
    float interval = kMissingF, min = kMissingF, max = kMissingF;
    const auto own = own_range(choice);
    if (own) CONT_set_range(own->max, own->min);
    if (RES_getval("con_interval", interval) || choice.interval <= 0) CONT_set_intrvl(interval);
    CONT_get_range(max, min);
    if (is_missing(max) || is_missing(min)) return;
    if (CONT_get_intrvl() <= 0) CONT_set_intrvl(CONT_calc_intrvl(CONT_get_color_num() - 1, max, min));
    const float step = CONT_get_intrvl();
    if (is_missing(CONT_get_base())) CONT_set_base(std::floor(min / step) * step);
    if (own) CONT_set_floor(CONT_get_base());
}

} // namespace

UserBase CONT_user_base() {
    UserBase user;
    for (const std::string &entry : RES_getvals("con_base")) {
        const std::string_view text = trimmed(entry);
        const bool lower = text.starts_with('>'), upper = text.starts_with('<');
        const auto value = Scanner(text.substr(lower || upper ? 1 : 0)).real();
        if (!value) continue;
        if (lower) user.min = value;
        (upper ? user.max : user.base) = value;
    }
    return user;
}

void CONT_choose_levels(const LevelChoice &choice) {
    CONT_param_decode();
    CONT_reset_fill_set();
    CONT_reset_values();
    CONT_set_type(kContourFill);
    CONT_set_base(kMissingF);
    CONT_set_intrvl(kMissingF);
    CONT_set_range(kMissingF, kMissingF);
    if (!choice.values.empty()) CONT_set_values(choice.values);
    if (choice.interval > 0) {
        CONT_set_base(choice.base);
        CONT_set_intrvl(choice.interval);
        CONT_set_range(choice.range_max, choice.range_min);
    }
    CONT_set_fill_colors(choice.colors, 0);
    if (const auto base = CONT_user_base().base) CONT_set_base(*base);
    if (CONT_get_values().empty() && CONT_get_color_num() > 0) settle_steps(choice);
}
