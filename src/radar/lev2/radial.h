#pragma once
/// Inside the Level II reader: the two descriptions of a radial.

#include <array>

#include "radar/lev2/volume.h"

using Lev2Moments = std::array<Lev2Gates, kLev2Types>;

/// Read the message body of a radial (behind the 16 bytes of the message header) into the record, whose
/// header fields are left alone, and its moments. False when the body ends before its description does.
[[nodiscard]] bool LEV2_read_legacy(std::span<const std::byte> body, Lev2Radial &radial,
                                    Lev2Moments &moments);
[[nodiscard]] bool LEV2_read_generic(std::span<const std::byte> body, Lev2Radial &radial,
                                     Lev2Moments &moments);
