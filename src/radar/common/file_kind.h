#pragma once
/// What kind of radar file begins with given bytes.

#include <cstddef>
#include <span>

enum class RadarFileKind { unknown, level2, level3 };

/// Bytes that the recognition wants to see; fewer when the file is shorter.
inline constexpr std::size_t kKindBytes = 32;

/// Level II: archive name, or a gzip file, which only archives of volumes are. Level III: a text heading, or
/// a message header followed by the divider of its description; also as zlib streams.
RadarFileKind RADAR_file_kind(std::span<const std::byte> first);
