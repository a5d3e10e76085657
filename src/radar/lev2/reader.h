#pragma once
/// Reading Level II volumes: every radial of every elevation with its gates, from plain files, files of bzip2
/// records, and both of them gzipped as a whole. One volume is open at a time. Order of calls:
/// LEV2_open_file, LEV2_get_header, then repeatedly LEV2_get_block; for a wanted radial LEV2_set_data_type
/// and LEV2_get_data (or LEV2_get_gates); then LEV2_next_block; until LEV2_get_block returns 0.

#include <string_view>
#include <vector>

#include "radar/lev2/volume.h"

// The file --------------------------------------------------------------------------------------------------

/// Compressed records (1) or plain messages (0) are expected. What the file holds decides; a file of the
/// other kind is told.
void LEV2_set_compress(int flag);
/// 1 when opened, 0 after a warning. Switches the colour bar on unless the user has switched it off.
[[nodiscard]] int LEV2_open_file(std::string_view name);
int LEV2_close_file();
/// Back to the first message. 1, or 0 when the file (a pipe) cannot go back.
[[nodiscard]] int LEV2_rewind_file();
/// Reads the volume header and finds the radar's position: of its identifier in "rad.cty" (a blank
/// identifier is that of the resource "identifier"), else in the data, else the default. The next block is
/// the first one, of a pipe perhaps the first radial. 0, or -1 when the file is shorter than a header, or
/// begins with no archive's name and no message that makes sense.
[[nodiscard]] int LEV2_get_header(Lev2Info &info);

// Blocks ----------------------------------------------------------------------------------------------------

/// Reads the next message: 1, or 0 at the end of the data or where they are damaged. Of a last message that
/// is cut short the gates that are there are given.
[[nodiscard]] int LEV2_get_block(Lev2Radial &radial);
/// Moves on to the next message. 1.
int LEV2_next_block();
/// Selects a moment of the radial, at its first gate. 1; 0 when the radial has no such moment. An unknown
/// type selects nothing and gives 1.
[[nodiscard]] int LEV2_set_data_type(int type);
/// The next gate's value; kMissingF behind the last.
float LEV2_get_data();
/// Gates of a moment of the radial, valid until the next call of LEV2_get_block; empty when it has none.
const Lev2Gates &LEV2_get_gates(int type);
/// Range at which the gates of a moment begin (km): the first reflectivity gate, and without reflectivity the
/// moment's own first gate.
float LEV2_first_gate_km(int type);

// Survey ----------------------------------------------------------------------------------------------------

/// Walks from the present message to the end of the volume. Cuts in the order of the file.
std::vector<Lev2Cut> LEV2_list_cuts();
