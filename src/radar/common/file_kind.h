#pragma once
/// What kind of radar file begins with given bytes.

#include <array>
#include <cstddef>
#include <span>

enum class RadarFileKind { unknown, level2, level3, nowrad, kavrad, rrwds, coded_message, summary };

/// Bytes that the recognition wants to see, fewer when the file is shorter: enough for the first bytes of
/// what a gzip file holds to come out.
inline constexpr std::size_t kKindBytes = 4096;

/// Level II: archive name. Level III: a text heading, or a message header followed by the divider of its
/// description; also as zlib streams. NOWRad: its first marker. Coded message: a line that begins with "RCM",
/// alone or behind a text heading. KAVRAD and RRWDS have no mark: a time that makes sense stands where theirs
/// does. Converted summary: a netCDF file, or a text that begins with a date label, with the header line of
/// the package's own files, or with a record marker. Of a gzip file, what it holds.
RadarFileKind RADAR_file_kind(std::span<const std::byte> first);
/// The bytes begin with the name of a Level II archive.
[[nodiscard]] bool RADAR_names_archive(std::span<const std::byte> bytes);

/// Carriage return, carriage return, line feed, end of text: what a transmission puts behind a file
/// (WMO-No. 386).
inline constexpr std::array kTransmissionEnd{std::byte{13}, std::byte{13}, std::byte{10}, std::byte{3}};
