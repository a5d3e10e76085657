#pragma once
/// Inside of the domain decoding: the token patterns, and the regions that they may name.

#include <string_view>

#include "plot/domain.h"

/// Results of decoding.
enum DomainResult : int {
    kDomainInvalid = -1,
    kDomainMenu = 0, ///< the text loaded a region menu and named no domain
    kDomainExplicit = 1,
    kDomainRegion = 2
};

/// How many regions may name one another before the text is invalid.
inline constexpr int kDeepestRegion = 10;

/// DOM_decode without message, flag, key and priority. `depth` counts the regions that led here.
int decode_domain(std::string_view text, PlotDomain &domain, int depth);

/// A text of a single token as a region: kDomainRegion, kDomainMenu, or kDomainInvalid.
int decode_region(std::string_view token, PlotDomain &domain, int depth);
