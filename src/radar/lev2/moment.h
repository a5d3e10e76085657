#pragma once
/// What is drawn of a volume: a moment of one elevation cut.

#include <optional>
#include <string_view>

#include "lib/text/missing.h"
#include "radar/lev2/volume.h"

/// The variable that asks for the table of the cuts.
inline constexpr std::string_view kLev2ListWord = "list";

/// How a moment is asked for and shown.
struct Lev2Moment {
    std::string_view keyword; ///< of the resource "variable"
    const char *title;        ///< upper left label
    std::string_view unit;    ///< of its values
    std::string_view levels;  ///< level values and colours
    int decimals;             ///< of minimum and maximum in the label
};

/// The row of a moment.
const Lev2Moment &LEV2_moment(Lev2Type type);

struct Lev2Choice {
    Lev2Type type = kLev2Reflectivity;
    int number = 1;          ///< elevation number
    float angle = kMissingF; ///< degrees; when given, the nearest cut that has the moment is meant
};

/// Takes "ref2", "vel1", "spect", "zdr3", "phi", "rho", "cfp" or "ref@0.5" (case ignored); without a number
/// the first elevation. False, and nothing changed, for another text.
[[nodiscard]] bool LEV2_decode_choice(std::string_view text, Lev2Choice &choice);

/// Tells a word of the resource "variable" that names no moment, or no cut behind it.
void LEV2_check_choice(std::string_view text);

/// Number of the cut nearest in angle that has the moment, the first of those that share their angle;
/// nothing when none has it.
[[nodiscard]] std::optional<int> LEV2_nearest_cut(std::span<const Lev2Cut> cuts, const Lev2Choice &choice);

/// Prints the cuts as a table at level kPrint.
void LEV2_print_cuts(std::span<const Lev2Cut> cuts);
