#pragma once
/// One named place of the city database.

#include <string>

#include "lib/text/missing.h"

struct CityEntry {
    std::string name; ///< at most 20 characters
    std::string state, country;
    std::string id;                           ///< at most 9 characters
    int priority = 0;                         ///< 0 to 9
    char star_before = ' ', star_after = ' '; ///< '*' or blank
    float lat = kMissingF, lon = kMissingF;   ///< degrees, north and east positive
    float elevation = kMissingF;              ///< metres
    int wmo = kMissing;
    int extra = 0;
};
