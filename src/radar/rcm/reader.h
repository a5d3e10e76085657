#pragma once
/// Reading Radar Coded Messages: bulletins one behind the other in a file, as text, in the packet form, or
/// inside a Level III message (product 74).

#include <string>
#include <string_view>
#include <vector>

#include "radar/rcm/report.h"

class Stream;

/// What became of the search for the next report.
enum class RcmRead : int { done = 1, rejected = 0, end = -1 };

/// Takes reports from the bytes of a file, which it holds. Knows no plotting.
class RcmReader {
public:
    /// Opens the file at its first bulletin. False when it cannot be opened; errno tells why.
    [[nodiscard]] bool open(std::string_view name);
    void close();
    /// The next report; `rejected` for a bulletin without its "/NEXRAA" item. What is cut off, beyond the
    /// tables or against the counts of the bulletin is told once for each report.
    [[nodiscard]] RcmRead next(RcmReport &report);

private:
    std::vector<std::byte> bytes_;
    std::size_t position_ = 0;
    std::string name_; ///< for messages
};

/// The reader of the open file.
RcmReader &RCM_reader();

/// Reads the next report of a stream from where it stands: 1 when a report was read, 0 for a bulletin without
/// "/NEXRAA", -1 at the end of the file.
[[nodiscard]] int RCM_read_site(Stream &stream, RcmReport &report);
void RCM_init(RcmReport &report);
/// Prints what the report holds, but its grid, at a message level.
void RCM_print(unsigned level, const RcmReport &report);
