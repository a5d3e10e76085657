#pragma once
/// Inside the Level III driver: what of an open product is there, and what of it is drawn.

#include <cstddef>
#include <string>
#include <vector>

#include "radar/nids/product.h"

class NidsReader;

struct NidsSurvey {
    std::size_t bytes = 0,
                bytes_announced = 0;          ///< of the message; the latter 0 when the message does not tell
    std::string damage;                       ///< of compressed data, in words; empty: none
    int elements = 0, elements_announced = 0; ///< radials or rows of the image
    bool radials = true;                      ///< the elements are radials
    std::vector<int> undrawn; ///< codes of packets that are not drawn, each once, in file order

    std::vector<int> further; ///< the same of further layers, which hold no images

    [[nodiscard]] bool complete() const {
        return damage.empty() && bytes >= bytes_announced && elements >= elements_announced;
    }
};

/// Walks the packets of the image, the header being read, to the end; read the header again afterwards.
NidsSurvey NIDS_survey(NidsReader &reader, const NidsInfo &info);
/// Warns of what is missing and of what will not be drawn.
void NIDS_tell_survey(const NidsSurvey &survey, const NidsInfo &info, const std::string &name);
