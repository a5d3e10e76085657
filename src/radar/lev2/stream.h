#pragma once
/// Inside the Level II reader: the bytes of the messages, one record at a time.

#include <cstddef>
#include <span>
#include <string_view>

inline constexpr std::size_t kLev2HeaderBytes = 24;

/// Opens the file and reads its first bytes. 1, or 0 when it cannot be opened.
int LEV2_open_stream(std::string_view name);
void LEV2_close_stream();
/// Back to the start of the file. False when nothing is open or the file cannot go back.
bool LEV2_rewind_stream();
/// The volume header; shorter than kLev2HeaderBytes when the file is.
std::span<const std::byte> LEV2_header_bytes();

/// Drops what stands before the read position: a message begins there.
void LEV2_begin_message();
/// The first `count` bytes of the message, read from the file as needed, or all that are there when the data
/// end before. Valid until the next call.
std::span<const std::byte> LEV2_message_bytes(std::size_t count);
/// Sets the read position to the end of the message's first `count` bytes.
void LEV2_end_message(std::size_t count);
/// Offset of the message within the decompressed volume, for messages.
std::size_t LEV2_message_offset();
/// The messages stand in compressed records, whose damage the stream tells.
bool LEV2_holds_records();
