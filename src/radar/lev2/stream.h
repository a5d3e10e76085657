#pragma once
/// Inside the Level II reader: the bytes of the messages, one record at a time.

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <zlib.h>

#include "lib/system/stream.h"

/// Volume header and records: ICD 2620010.
inline constexpr std::size_t kLev2HeaderBytes = 24;

class Lev2Stream {
public:
    /// Whether compressed records are expected. What the file holds decides; one of the other kind is told.
    void expect_records(bool expected) { expect_records_ = expected; }
    /// Opens the file. False when it cannot be opened.
    [[nodiscard]] bool open(std::string_view name);
    void close();
    /// Back to the start of the file. False when nothing is open or the file cannot go back.
    [[nodiscard]] bool rewind();
    /// The volume header; shorter than kLev2HeaderBytes when the file is.
    [[nodiscard]] std::span<const std::byte> header_bytes();

    /// Drops what stands before the read position: a message begins there.
    void begin_message();
    /// The first `count` bytes of the message, read from the file as needed, or all that are there when the
    /// data end before. Valid until the next call.
    [[nodiscard]] std::span<const std::byte> message_bytes(std::size_t count);
    /// Sets the read position to the end of the message's first `count` bytes.
    void end_message(std::size_t count);
    /// Offset of the message within the decompressed volume, for messages.
    [[nodiscard]] std::size_t message_offset() const { return dropped_ + begin_; }
    /// The messages stand in compressed records, whose damage the stream tells.
    [[nodiscard]] bool holds_records() const { return records_; }

private:
    static constexpr std::size_t kControlBytes = 4;
    static constexpr std::size_t kSignatureBytes = 4; ///< of a bzip2 stream

    struct CloseGz {
        void operator()(gzFile file) const { gzclose(file); }
    };

    void forget_position();
    std::size_t read_file(std::span<std::byte> bytes);
    void read_growing(std::vector<std::byte> &bytes, std::size_t count);
    void tell_kind();
    void start();
    [[nodiscard]] bool end_of_data();
    void compact();
    [[nodiscard]] bool read_plain();
    std::size_t control_word();
    [[nodiscard]] bool read_record();
    [[nodiscard]] bool read_block();

    Stream file_;
    std::unique_ptr<gzFile_s, CloseGz> unpacked_; ///< the file, gunzipped when it is a gzip file
    std::string name_;
    bool expect_records_ = false;
    bool told_kind_ = false; ///< that the file is of another kind than expected has been said
    bool records_ = false;   ///< the messages stand in bzip2 records
    bool started_ = false;   ///< the volume header has been read
    bool ended_ = false;     ///< no more bytes will come
    std::array<std::byte, kLev2HeaderBytes> header_{};
    std::size_t header_size_ = 0;
    std::array<std::byte, kControlBytes + kSignatureBytes> ahead_{}; ///< read to see what the file holds
    std::size_t ahead_size_ = 0, ahead_used_ = 0;
    std::vector<std::byte> in_;  ///< one compressed record
    std::vector<std::byte> out_; ///< messages
    std::size_t begin_ = 0;      ///< start of the present message in `out_`
    std::size_t next_ = 0;       ///< start of the next one
    std::size_t dropped_ = 0;    ///< bytes of the volume before `out_`
    int record_ = 0;             ///< records read
};
