#pragma once
/// What the packets of a product hold.

#include <string>

#include "lib/text/missing.h"

/// Packet codes of the format (ICD 2620001, display data packets).
enum NidsPacket : int {
    kPacketText = 1,
    kPacketSymbol = 2,
    kPacketMeso = 3,
    kPacketWind = 4,
    kPacketArrow = 5,
    kPacketLinked = 6,
    kPacketVector = 7,
    kPacketTextValue = 8,
    kPacketLinkedValue = 9,
    kPacketVectorValue = 10,
    kPacketDigitalRadial = 16,
    kPacketDigitalPrecip = 17,
    kPacketSupplemental = 18,
    kPacketRadial = 0xAF1F,
    kPacketRaster = 0xBA0F,
    kPacketRaster7 = 0xBA07,
    kPacketDivider = 0xFFFF
};

struct NidsRun {
    float length = 0; ///< bins or boxes
    float value = kMissingF;
    int level = 0; ///< the data level the value was made from
};
struct NidsVector {
    float value, i1, j1, i2, j2; ///< quarter kilometres as stored
};
struct NidsWind {
    float value, i, j, direction, speed; ///< degrees, knots
};
struct NidsText {
    float value = 0, i = 0, j = 0;
    std::string text; ///< at most 99 characters
};
struct NidsRadialHeader {
    int first_bin = 0, bins = 0, i_centre = 0, j_centre = 0, scale = 0, radials = 0;
};
struct NidsRasterHeader {
    int i_start = 0, j_start = 0, x_scale = 0, x_fraction = 0, y_scale = 0, y_fraction = 0, rows = 0,
        packing = 0;
};
