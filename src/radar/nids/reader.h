#pragma once
/// Reading one Level III product: framing, decompression, header blocks, packets, alphanumeric pages. One
/// product is open at a time. Order of calls: NIDS_open_stream, NIDS_get_header, then for each packet its
/// element reader until it returns 0, NIDS_packet for the next one; afterwards NIDS_graphic and the pages.
/// Readers return 1 for success, 0 when the current element has no more parts, -1 when nothing more can be
/// read.
/// Sources: stream, header, packet, product, info, message_data, page, print.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "radar/nids/product.h"

// The product's bytes
// ---------------------------------------------------------------------------------------------

/// Largest file, and largest decompressed product, that is accepted (bytes).
inline constexpr std::size_t kNidsMaxFile = 64U << 20;
inline constexpr std::size_t kNidsMaxProduct = 64U << 20;

/// Takes over the bytes of a whole file and rewinds to its start.
void NIDS_set_bytes(std::vector<std::byte> bytes);
/// Reads the file. 1, or 0 when it cannot be opened.
int NIDS_open_stream(std::string_view name);
void NIDS_close_stream();
/// Delivers the next bytes of the decompressed product. 1; 0 on a decompression error; -1 when there is no
/// more data or the product is encrypted.
int NIDS_read(std::span<std::byte> buffer);
int NIDS_read_short(std::int16_t &value);
int NIDS_read_long(std::int32_t &value);
/// Reads up to and including the next line feed.
int NIDS_skip_line();
/// Selects one product of a file that holds several: a separator and its number, empty for the first.
void NIDS_set_ext_info(std::string_view text);

// Header
// ----------------------------------------------------------------------------------------------------------

int NIDS_mess_header();
int NIDS_prod_desc();
/// Rewinds and reads up to the first packet header. 1 when the product was read, else 0.
int NIDS_get_header(NidsInfo &record);
const NidsMessageHeader &NIDS_get_mess();
const NidsDescription &NIDS_get_prod_desc();
/// Values of the sixteen data-level thresholds.
const std::array<float, kThresholds> &NIDS_get_thres();

/// Half-precision and single-precision threshold numbers.
float NIDS_float16(unsigned word);
float NIDS_float32(unsigned high, unsigned low);
/// Value of a threshold word by the generic rule.
float NIDS_threshold_value(unsigned word);

void NIDS_print_info(const NidsInfo &info);
/// On the event "v-Alt": prints place, distance and beam height (feet) under a cursor point.
void NIDS_print_loc_elev(std::string_view event, float x, float y, float radar_lat, float radar_lon,
                         float elevation);

// Symbology and pages
// ---------------------------------------------------------------------------------------------

/// Packet codes of the format.
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

int NIDS_prod_symb();
int NIDS_prod_symb_layer();
/// Reads the next packet header. 1 with its code; 0 at the end of the page or on an unknown code; -1.
int NIDS_packet(int &code);
const NidsRadialHeader &NIDS_get_rad_hdr();
const NidsRasterHeader &NIDS_get_ras_hdr();
/// Next radial: start angle and width in degrees.
int NIDS_get_radial(float &start, float &delta);
/// Next raster row.
int NIDS_get_rastor();
/// Next run of the current radial or row.
int NIDS_get_data(NidsRun &run);
/// All data bytes of the current radial or row that are there (run bytes or levels, without padding), for
/// plotters that look levels up by a table; afterwards NIDS_get_data returns 0. Empty when nothing remains.
std::span<const std::byte> NIDS_get_data_bytes();
/// Value of each of the 256 levels of a digital packet (or of the 16 of a run-length packet) of the open
/// product.
void NIDS_level_values(int packet, std::span<float, 256> values);
int NIDS_get_vector(NidsVector &vector);
int NIDS_get_wind(NidsWind &wind);
int NIDS_get_text(NidsText &text);
/// Reads the graphic block header, found at its offset. 1, or 0 when there is none.
int NIDS_graphic();
/// Page number (from 1), or 0 when there is no further page.
int NIDS_graphic_layer();
