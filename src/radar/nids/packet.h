#pragma once
/// The packet being read, shared by the readers of packet headers, of elements and of pages.

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "lib/text/byte_reader.h"
#include "radar/nids/packet_types.h"

inline constexpr int kPackingPairs = 1; ///< raster rows of byte pairs: run, value

struct NidsPacketState {
    int code = 0; ///< the last code read, also an unknown one
    NidsRadialHeader radial;
    NidsRasterHeader raster;
    int value_word = 0; ///< value word of vectors and texts, 0 when the packet has none
    int text_i = 0, text_j = 0;
    int elements_left = 0;          ///< radials or rows
    std::optional<ByteReader> body; ///< of vector, barb and text packets: what is left
    bool body_cut = false;          ///< the file ends before the body does

    // The current radial or row
    std::span<const std::byte> element; ///< what is left to deliver of them
    bool element_cut = false;           ///< the file ends before the element does
    std::array<float, 256> values{};    ///< of its levels

    int layers = 0; ///< of the symbology block

    // The graphic block
    int pages = 0;                       ///< of the block, 0: no block is open
    int pages_read = 0;                  ///< pages begun
    std::optional<std::size_t> page_end; ///< end of the current page within the view
};
