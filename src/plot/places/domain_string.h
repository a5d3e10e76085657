#pragma once
/// Inside of the domain decoding: the token patterns. What a region is, is told by a function.

#include <string_view>

#include "plot/domain/plot_domain.h"

/// Results of decoding.
enum DomainResult : int {
    kDomainInvalid = -1,
    kDomainMenu = 0, ///< the text loaded a region menu and named no domain
    kDomainExplicit = 1,
    kDomainRegion = 2
};

/// How many regions may name one another before the text is invalid.
inline constexpr int kDeepestRegion = 10;

/// A text of a single token as a region: kDomainRegion, kDomainMenu, or kDomainInvalid. `depth` counts the
/// regions that led here.
using RegionDecoder = int (*)(std::string_view token, PlotDomain &domain, int depth);

/// DOM_decode without message, flag, key and priority.
[[nodiscard]] int decode_domain(std::string_view text, PlotDomain &domain, int depth, RegionDecoder region);
