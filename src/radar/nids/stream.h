#pragma once
/// The bytes of the open product for the readers of this room: one view, first of the file, behind a
/// compressed place of what was decompressed there. Offsets count from the start of the view.

#include <cstddef>
#include <cstdint>
#include <span>

#include "lib/text/byte_reader.h"
#include "radar/common/inflate.h"

/// The reader of the current view. A failed read leaves it where it is; end it with NIDS_exhaust.
ByteReader &NIDS_bytes();

/// Back to the first byte of the file, as if nothing had been read. False when there is no file.
bool NIDS_rewind();
/// Goes to the first line of the product that NIDS_set_ext_info selects. False when the file ends before it.
bool NIDS_select_product();

enum class NidsCompression { none, zlib, bzip2 };
/// Looks at the next bytes; when they are compressed, the view becomes the bytes from the message header (or,
/// when that has not been read, from here) followed by the decompressed rest, and the reader stays at the
/// same place. False for an encrypted product.
bool NIDS_test_compression(NidsCompression &found);
/// The product cannot be read: it is encrypted.
bool NIDS_is_encrypted();

/// The message header begins at `offset`.
void NIDS_set_message_start(std::size_t offset);
/// Goes to a place counted in bytes from the message header; false (and no move) beyond the end.
bool NIDS_seek_message(std::size_t offset);

/// How much of the message the file holds.
struct NidsExtent {
    std::size_t bytes = 0; ///< from the message header on, as transmitted (a compressed body counts as it is)
    std::size_t view = 0;  ///< the same with what is compressed decompressed
    bool inflated = false; ///< some of it is compressed
    NidsInflated result = NidsInflated::done; ///< how its decompression, or that of a gzip file, ended
};
/// Of the message whose header has been read.
NidsExtent NIDS_extent();

/// Takes at most `count` bytes: what is left when there are fewer.
std::span<const std::byte> NIDS_take(std::size_t count);
/// Nothing more can be read; returns what a reader returns then: 0 after a decompression error, else -1.
int NIDS_exhaust();
