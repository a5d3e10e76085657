#pragma once
/// The bytes of a product: one view, first of the file, behind a compressed place of what was decompressed
/// there. Offsets count from the start of the view.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lib/text/byte_reader.h"
#include "radar/common/inflate.h"

/// Largest file, and largest decompressed product, that is accepted (bytes).
inline constexpr std::size_t kNidsMaxFile = 64U << 20;
inline constexpr std::size_t kNidsMaxProduct = 64U << 20;

enum class NidsCompression { none, zlib, bzip2 };

/// How much of the message the file holds.
struct NidsExtent {
    std::size_t bytes = 0; ///< from the message header on, as transmitted (a compressed body counts as it is)
    std::size_t view = 0;  ///< the same with what is compressed decompressed
    bool inflated = false; ///< some of it is compressed
    Inflated result = Inflated::done; ///< how its decompression, or that of a gzip file, ended
};

/// How a reader fared. As numbers these are what the described procedures return.
enum class NidsRead : int {
    exhausted = -1, ///< nothing more can be read
    none = 0,       ///< what was asked for is not there, or could not be decompressed
    done = 1
};

class NidsStream {
public:
    /// Takes over the bytes of a whole file and rewinds to its start.
    void set_bytes(std::vector<std::byte> bytes);
    /// Reads the file. False when it cannot be opened.
    [[nodiscard]] bool open(std::string_view name);
    /// Selects one product of a file that holds several: a separator and its number, empty for the first.
    void set_selection(std::string_view text) { selection_ = text; }

    /// The reader of the current view. A failed read leaves it where it is; end it with exhaust().
    ByteReader &bytes() { return reader_; }
    /// Back to the first byte of the file, as if nothing had been read. False when there is no file.
    [[nodiscard]] bool rewind();
    /// Goes to the first line of the product that is selected. False when the file ends before it.
    [[nodiscard]] bool select_product();
    /// Looks at the next bytes; when they are compressed, the view becomes the bytes from the message header
    /// (or, when that has not been read, from here) followed by the decompressed rest, and the reader stays
    /// at the same place. False for an encrypted product.
    [[nodiscard]] bool test_compression(NidsCompression &found);
    /// The product cannot be read: it is encrypted.
    [[nodiscard]] bool is_encrypted() const { return encrypted_; }

    /// The message header begins at `offset`.
    void set_message_start(std::size_t offset);
    /// Goes to a place counted in bytes from the message header; false (and no move) beyond the end.
    [[nodiscard]] bool seek_message(std::size_t offset);
    /// Of the message whose header has been read.
    [[nodiscard]] NidsExtent extent() const;

    /// Takes at most `count` bytes: what is left when there are fewer.
    std::span<const std::byte> take(std::size_t count);
    /// Nothing more can be read.
    void exhaust();
    /// Fills the buffer. `none` on a decompression error, `exhausted` when there is no more data.
    [[nodiscard]] NidsRead read(std::span<std::byte> buffer);
    [[nodiscard]] NidsRead read_short(std::int16_t &value);
    [[nodiscard]] NidsRead read_long(std::int32_t &value);
    /// Reads up to and including the next line feed.
    [[nodiscard]] NidsRead skip_line();

private:
    static constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

    std::vector<std::byte> unzipped(std::vector<std::byte> bytes);
    void fill_inflated(NidsCompression kind, std::span<const std::byte> front,
                       std::span<const std::byte> rest);
    void inflate_rest(NidsCompression kind);
    [[nodiscard]] NidsRead end();
    std::string read_line(std::size_t limit);
    [[nodiscard]] bool message_at(std::size_t shift) const;

    std::vector<std::byte> file_;     ///< all bytes of the file
    std::vector<std::byte> inflated_; ///< the view behind a compressed place
    std::size_t inflated_from_ =
        kNowhere; ///< that place within the file, while `inflated_` was made from the file
    Inflated inflated_result_ = Inflated::done; ///< how the decompression into `inflated_` ended
    Inflated unzipped_result_ = Inflated::done; ///< the same of a gzip file, whose content is `file_`
    bool in_file_ = true;                       ///< the view is `file_`, not `inflated_`
    ByteReader reader_;                         ///< over `file_` without trailer, or over `inflated_`
    std::size_t message_start_ = 0;             ///< of the message header within the view
    std::size_t message_in_file_ =
        0;                          ///< the same within `file_`; of a message inside compressed data, theirs
    bool message_inflated_ = false; ///< the message begins inside compressed data
    bool message_known_ = false;
    bool encrypted_ = false;
    std::string selection_; ///< a separator and a number
};
