#pragma once
/// The open Level III product: its information record and threshold table.

#include <array>
#include <string>

#include "lib/system/calendar.h"
#include "plot/domain/plot_domain.h"

inline constexpr int kThresholds = 16;
/// Source identifiers above this are national mosaics.
inline constexpr int kLastRadarSource = 9999;

/// Message header block, 18 bytes (ICD 2620001).
struct NidsMessageHeader {
    int code = 0;
    int days = 0;    ///< date of message, 1 = 1 January 1970
    int seconds = 0; ///< after midnight UTC
    int length = 0;  ///< bytes
    int source = 0, destination = 0, blocks = 0;
};

/// Product description block, 102 bytes (ICD 2620001). Words are kept as the file has them.
struct NidsDescription {
    int divider = 0;
    int latitude = 0, longitude = 0; ///< thousandths of a degree
    int height_ft = 0;
    int code = 0, mode = 0, pattern = 0, sequence = 0, volume = 0;
    int scan_days = 0, scan_seconds = 0;
    int generation_days = 0, generation_seconds = 0;
    int elevation_number = 0;
    std::array<int, 11> p{};                       ///< product-dependent parameters, P1 at index 1, signed
    std::array<unsigned, kThresholds> threshold{}; ///< threshold words, T1 at index 0
    int maps = 0;
    unsigned symbology = 0, graphic = 0, tabular = 0; ///< block offsets, halfwords from the message header
};

/// Product information record.
struct NidsInfo {
    std::string name;  ///< "Base reflectivity (Dbz)"
    std::string label; ///< mode, range, elevation, extremes
    int source = 0;
    int mode = 0;
    int code = 0;
    int packet = 0;  ///< code of the first symbology packet; 0 when there is no image
    DateRecord date; ///< volume scan date and time
    PlotDomain domain;
    float resolution = 0; ///< bin size: nautical miles, kilometres for mosaics
    std::array<float, kThresholds> thresholds{};
    float elevation = 0; ///< degrees
    float range = 0;     ///< nautical miles, 0 for mosaics
    float maximum = 0, minimum = 0;
    int columns = 0, rows = 0; ///< the grid before the domain is widened
};
