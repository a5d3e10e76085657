#pragma once
/// Reading one Level III product: framing, decompression, header blocks, packets, alphanumeric pages. One
/// product is open at a time. Order of calls: NIDS_open_stream, NIDS_get_header, then for each packet its
/// element reader until it returns 0, NIDS_packet for the next one; afterwards NIDS_graphic and the pages.
/// Readers return 1 for success, 0 when the current element has no more parts, -1 when nothing more can be
/// read.
/// Sources: print.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "radar/nids/header.h"
#include "radar/nids/packet_types.h"
#include "radar/nids/stream.h"

// The product's bytes
// ---------------------------------------------------------------------------------------------

/// Takes over the bytes of a whole file and rewinds to its start.
void NIDS_set_bytes(std::vector<std::byte> bytes);
/// Reads the file. False when it cannot be opened.
[[nodiscard]] bool NIDS_open_stream(std::string_view name);
void NIDS_close_stream();
/// Delivers the next bytes of the decompressed product. 1; 0 on a decompression error; -1 when there is no
/// more data or the product is encrypted.
[[nodiscard]] int NIDS_read(std::span<std::byte> buffer);
[[nodiscard]] int NIDS_read_short(std::int16_t &value);
[[nodiscard]] int NIDS_read_long(std::int32_t &value);
/// Reads up to and including the next line feed.
[[nodiscard]] int NIDS_skip_line();
/// Selects one product of a file that holds several: a separator and its number, empty for the first.
void NIDS_set_ext_info(std::string_view text);

// Header
// ----------------------------------------------------------------------------------------------------------

[[nodiscard]] int NIDS_mess_header();
[[nodiscard]] int NIDS_prod_desc();
/// Rewinds and reads up to the first packet header. 1 when the product was read, else 0.
[[nodiscard]] int NIDS_get_header(NidsInfo &record);
const NidsMessageHeader &NIDS_get_mess();
const NidsDescription &NIDS_get_prod_desc();
/// Values of the sixteen data-level thresholds.
const std::array<float, kThresholds> &NIDS_get_thres();

void NIDS_print_info(const NidsInfo &info);

// Symbology and pages
// ---------------------------------------------------------------------------------------------

[[nodiscard]] int NIDS_prod_symb();
[[nodiscard]] int NIDS_prod_symb_layer();
/// Reads the next packet header. 1 with its code; 0 at the end of the page or on an unknown code; -1.
[[nodiscard]] int NIDS_packet(int &code);
/// Next radial: start angle and width in degrees.
[[nodiscard]] int NIDS_get_radial(float &start, float &delta);
/// Next raster row.
[[nodiscard]] int NIDS_get_rastor();
/// Next run of the current radial or row.
[[nodiscard]] int NIDS_get_data(NidsRun &run);
/// All data bytes of the current radial or row that are there (run bytes or levels, without padding), for
/// plotters that look levels up by a table; afterwards NIDS_get_data returns 0. Empty when nothing remains.
std::span<const std::byte> NIDS_get_data_bytes();
/// Value of each of the 256 levels of a digital packet (or of the 16 of a run-length packet) of the open
/// product.
void NIDS_level_values(int packet, std::span<float, 256> values);
[[nodiscard]] int NIDS_get_vector(NidsVector &vector);
[[nodiscard]] int NIDS_get_wind(NidsWind &wind);
[[nodiscard]] int NIDS_get_text(NidsText &text);
/// Reads the graphic block header, found at its offset. 1, or 0 when there is none.
[[nodiscard]] int NIDS_graphic();
/// Page number (from 1), or 0 when there is no further page.
[[nodiscard]] int NIDS_graphic_layer();
