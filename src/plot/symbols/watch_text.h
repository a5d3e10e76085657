#pragma once
/// Reading public severe-weather watch bulletins: text files that name a watch and list the corners of its
/// box. Beside the source: only the watch boxes and their tests read them.

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

struct WatchPoint {
    float lat, lon; ///< degrees, north and east positive
};
struct WatchBox {
    std::string_view kind; ///< "TORNADO" or "SEVERE THUNDERSTORM"
    int number = 0;
    std::vector<WatchPoint> corners;
};

/// A time of the month, universal time, as bulletins write it: "102034".
struct DayTime {
    int day, hour, minute;
    friend bool operator==(const DayTime &, const DayTime &) = default;
};

struct WatchBulletin {
    WatchBox box;
    std::optional<DayTime> begin; ///< of the validity, else of the heading; nothing when none is written
    std::optional<DayTime> end;   ///< nothing when the bulletin does not tell
};

/// The watches of a text that holds one or more bulletins. What has no kind or fewer than three corners is
/// left out.
std::vector<WatchBulletin> parse_watch_text(std::string_view text);

/// True when the bulletin is in force at a time in seconds since 1970; without an end for eight hours,
/// without any time always.
[[nodiscard]] bool watch_in_force(const WatchBulletin &bulletin, std::int64_t now);
