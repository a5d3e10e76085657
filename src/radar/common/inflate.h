#pragma once
/// Decompression of whole zlib, gzip and bzip2 streams into a bounded buffer.

#include <cstddef>
#include <span>
#include <vector>

enum class NidsInflated {
    done,      ///< every stream came to its end
    truncated, ///< the input ends within a stream; `out` holds what came out
    damaged,   ///< the data are not a valid stream; `out` holds what came out before
    too_large  ///< the limit was reached; `out` is cut there
};

/// A zlib header stands at the start of the bytes.
bool NIDS_is_zlib(std::span<const std::byte> bytes);
/// A bzip2 header stands at the start of the bytes.
bool NIDS_is_bzip2(std::span<const std::byte> bytes);

/// A gzip header stands at the start of the bytes.
bool NIDS_is_gzip(std::span<const std::byte> bytes);

/// Appends to `out` what the zlib streams at the start of `bytes`, one directly behind the other, hold. Bytes
/// behind the last stream are appended as they are. `out` never grows beyond `limit` bytes.
NidsInflated NIDS_inflate_zlib(std::span<const std::byte> bytes, std::size_t limit,
                               std::vector<std::byte> &out);
/// The same for gzip members; bytes behind the last member are dropped.
NidsInflated NIDS_inflate_gzip(std::span<const std::byte> bytes, std::size_t limit,
                               std::vector<std::byte> &out);
/// The same for bzip2 streams; bytes behind the last stream are dropped.
NidsInflated NIDS_inflate_bzip2(std::span<const std::byte> bytes, std::size_t limit,
                                std::vector<std::byte> &out);
