#pragma once
/// Writing Radar Coded Messages: the coded text, alone, in lines, in a Level III message, and in the packet
/// form.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "samples/byte_writer.h"

namespace samples {

inline constexpr int kRcmSide = 104;
inline constexpr std::uint8_t kRcmNotCoded = 255;
/// [column][row]
using RcmCells = std::array<std::array<std::uint8_t, kRcmSide>, kRcmSide>;

struct RcmMark {
    std::string id; ///< two characters
    int column = 0, row = 0;
};
struct RcmCentroid : RcmMark {
    int direction = 0, speed = 0, severe = 0;
    char hail = 'N';
};

struct RcmBulletin {
    std::string id = "LSX";
    int number = 308;
    std::int64_t time = 0; ///< seconds since 1970
    std::string remark = "UNEDITED", status, mode = "PCPN";
    RcmCells cells{};
    int top = 0, top_column = 0, top_row = 0;
    std::vector<RcmCentroid> storms;
    std::vector<RcmMark> vortices, mesocyclones;
    std::vector<std::string> entries; ///< of part B: "020B227038"
    float lat = 0, lon = 0;           ///< of the radar, for the packet form
    int feet = 0;
};

/// "MNA": the letters of a cell.
std::string rcm_letters(int column, int row);
/// The groups of a grid, by rows: each a run of coded cells; two equal ones are two digits, more a digit and
/// a letter.
std::vector<std::string> rcm_groups(const RcmCells &cells);
/// From "1234" to the end of part C.
std::string rcm_text(const RcmBulletin &bulletin);

enum class RcmForm {
    one_line, ///< the text without a line end
    lines,    ///< lines of 70 characters, padded with blanks
    wrapped,  ///< in a Level III message
    packets
};
/// A heading, the identifier's line and the report.
Bytes rcm_bulletin(const RcmBulletin &bulletin, RcmForm form);

/// The simulated evening.
RcmBulletin rcm(double minutes);

} // namespace samples
