#pragma once
/// Decompression of whole zlib, gzip and bzip2 streams into a bounded buffer. Throws std::bad_alloc when
/// memory is out, which is never taken for damage.

#include <cstddef>
#include <span>
#include <vector>

/// Most streams, one behind the other, that make up one product. Products of 4000 bytes a stream, the
/// smallest known, reach the size limit of products before it.
inline constexpr std::size_t kInflatePieces = 20'000;

enum class Inflated {
    done,      ///< every stream came to its end
    truncated, ///< the input ends within a stream; `out` holds what came out
    damaged,   ///< the data are not a valid stream; `out` holds what came out before
    too_large, ///< the limit was reached; `out` is cut there
    too_many   ///< more streams than are read; `out` holds what came out before
};

/// A zlib header stands at the start of the bytes.
[[nodiscard]] bool INFLATE_is_zlib(std::span<const std::byte> bytes);
/// A bzip2 header stands at the start of the bytes.
[[nodiscard]] bool INFLATE_is_bzip2(std::span<const std::byte> bytes);

/// A gzip header stands at the start of the bytes.
[[nodiscard]] bool INFLATE_is_gzip(std::span<const std::byte> bytes);

/// Appends to `out` what the zlib streams at the start of `bytes`, one directly behind the other, hold. Bytes
/// behind the last stream are appended as they are. `out` never grows beyond `limit` bytes.
Inflated INFLATE_zlib(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out);
/// The same for gzip members; bytes behind the last member are dropped.
Inflated INFLATE_gzip(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out);
/// The same for bzip2 streams, at most `pieces` of them; bytes behind the last stream are dropped.
Inflated INFLATE_bzip2(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out,
                       std::size_t pieces = kInflatePieces);
