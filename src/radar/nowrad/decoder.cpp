#include "radar/nowrad/decoder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "lib/report/message.h"
#include "lib/text/scan.h"

namespace {

constexpr int kEnd = EOF;
constexpr std::uint8_t kMark = 0xF0; ///< the second byte of a marker, behind a zero
/// The third byte of a marker, 0 for none.
enum class Marker : std::uint8_t {
    none = 0,
    text = 0x09,
    size = 0x0A,
    description = 0x03,
    map = 0x0B,
    line = 0x0C
};

constexpr float kStep = 5; ///< dBZ of a level
constexpr std::size_t kLevels = 16;
constexpr std::size_t kDescriptionBytes = 80, kMostTextBytes = 512;
constexpr float kDegreesPerRadian = 57.29577951F;

/// The rest of the United States composite's grid is not taken from the file.
constexpr float kCompositeLat = 38.69F, kCompositeLon = -96.03F, kCompositeDx = 0.0722F,
                kCompositeDy = 0.0859F, kCompositeFactor = 1.0F;
/// What stands for the grid of a file without a good header: the country.
constexpr float kCountryLat = 39.0F, kCountryLon = -96.0F, kCountryStep = 1.0F;
constexpr int kCountryColumns = 67, kCountryLines = 51;

class Decoder {
public:
    bool read_header(Stream &stream, MosaicInfo &info);
    bool begin_line(Stream &stream, int &line);
    bool next_packet(Stream &stream, NowradPacket &packet);
    bool next_line(Stream &stream, MosaicLine &line);
    [[nodiscard]] MosaicEnd end() const { return end_; }

private:
    int get(Stream &stream);
    int next_byte(Stream &stream);
    bool skip(Stream &stream, int count);
    std::optional<int> word(Stream &stream);
    bool take_marker(Stream &stream, Marker wanted);
    std::string text_to_marker(Stream &stream);
    bool read_map(Stream &stream, MosaicInfo &info);
    bool read_zero(Stream &stream);
    void finish_line();

    int before_ = kEnd;           ///< the byte before the last one read
    Marker ahead_ = Marker::none; ///< a marker has been read that nobody has taken yet
    bool ended_ = false;          ///< the stream has
    int attribute_ = 0;
    int lines_ = 0, columns_ = 0; ///< of the grid
    int line_ = 0, column_ = 0;   ///< the next ones
    bool too_many_ = false;       ///< cells or lines were left out
    MosaicEnd end_ = MosaicEnd::complete;
};

int Decoder::get(Stream &stream) {
    const int byte = getc_unlocked(stream.get());
    if (byte == kEnd) ended_ = true;
    return byte;
}

bool Decoder::skip(Stream &stream, int count) {
    for (int i = 0; i < count; ++i)
        if (get(stream) == kEnd) return false;
    return true;
}

/// 16 bits, low byte first.
std::optional<int> Decoder::word(Stream &stream) {
    const int low = get(stream), high = get(stream);
    if (high == kEnd) return {};
    before_ = high;
    return low | high << 8;
}

bool Decoder::take_marker(Stream &stream, Marker wanted) {
    if (ahead_ == Marker::none) {
        const int first = get(stream), second = get(stream), third = get(stream);
        if (first != 0 || second != kMark || third == kEnd) return false;
        ahead_ = static_cast<Marker>(third);
    }
    if (ahead_ != wanted) return false;
    ahead_ = Marker::none;
    return true;
}

/// The text up to the next marker, whose three bytes are read.
std::string Decoder::text_to_marker(Stream &stream) {
    std::string text;
    int byte = get(stream);
    for (; byte != 0 && byte != kEnd && text.size() < kMostTextBytes; byte = get(stream))
        text.push_back(static_cast<char>(byte));
    if (byte != 0 || get(stream) != kMark) return {};
    const int code = get(stream);
    if (code == kEnd) return {};
    ahead_ = static_cast<Marker>(code);
    return text;
}

/// "Jan" to "Dec", told apart by their letters.
int month_of(std::string_view name) {
    constexpr std::array<std::string_view, 12> names{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto found =
        std::ranges::find_if(names, [name](std::string_view other) { return stricmp(name, other) == 0; });
    return found == names.end() ? kMissing : static_cast<int>(found - names.begin()) + 1;
}

/// "18:45 03-Jul-99"
void read_time(std::string_view text, DateRecord &date) {
    Scanner scan(text);
    const auto hour = scan.integer();
    scan.literal(':');
    const auto minute = scan.integer();
    const auto day = scan.integer();
    scan.literal('-');
    const auto month = scan.word(3);
    scan.literal('-');
    const auto year = scan.integer();
    DateRecord time;
    if (year) {
        time.hour = *hour;
        time.minute = *minute;
        time.day = *day;
        time.month = month_of(*month);
        time.year = *year;
    }
    if (!year || is_missing(time.month) || !DATE_is_possible(time))
        MESS_print(kWarn, "NOWRad_header: The description has no time\n");
    else
        date = time;
}

void read_description(std::string_view text, MosaicInfo &info) {
    struct Row {
        std::string_view begin, title;
        std::size_t time_at;
    };
    constexpr std::array rows{Row{"NOWrad Master", "NOWRad Radar Master Composite (Dbz)", 20},
                              Row{"USRAD Hi", "NOWRad Radar US Composite (Dbz)", 23}};
    info.title.clear();
    DATE_init(info.date);
    for (const Row &row : rows) {
        if (!text.starts_with(row.begin)) continue;
        info.title = row.title;
        read_time(text.substr(row.time_at), info.date);
    }
}

/// The grid of latitudes and longitudes: five numbers in radians.
bool read_latlon(Scanner &scan, PlotDomain &domain) {
    const auto lon = scan.real(), lat = scan.real();
    (void)scan.real(); // has no meaning here
    const auto dy = scan.real(), dx = scan.real();
    if (!dx || *dx <= 0 || *dy <= 0) return false;
    domain.proj = kProjLatLon;
    domain.dx = *dx * kDegreesPerRadian;
    domain.dy = *dy * kDegreesPerRadian;
    domain.plon = domain.clon = *lon * kDegreesPerRadian;
    domain.clat = *lat * kDegreesPerRadian - 0.5F * static_cast<float>(domain.ny - 1) * domain.dy;
    return true;
}

bool read_lambert(Scanner &scan, PlotDomain &domain) {
    std::array<float, 8> v{};
    for (float &number : v) number = scan.real().value_or(0);
    if (scan.failed()) return false;
    const auto f = [&v](std::size_t i) { return static_cast<double>(v[i]); };
    MESS_print(0x80000000U, "US SECT: %f %f = %f %f = %f %f = %f %f\n", f(0), f(1), f(2), f(3), f(4), f(5),
               f(6), f(7));
    domain.proj = kProjLambert;
    domain.p4 = v[0] * kDegreesPerRadian;
    domain.p3 = v[1] * kDegreesPerRadian;
    domain.plat = v[2] * kDegreesPerRadian;
    domain.plon = v[3] * kDegreesPerRadian;
    domain.p5 = kCompositeFactor;
    domain.clat = kCompositeLat;
    domain.clon = kCompositeLon;
    domain.dx = kCompositeDx;
    domain.dy = kCompositeDy;
    return true;
}

/// The grid lies on the earth.
bool is_possible(const PlotDomain &domain) {
    constexpr float kMostLat = 90, kMostLon = 360, kHalf = 0.5F;
    if (std::abs(domain.clat) > kMostLat || std::abs(domain.clon) > kMostLon) return false;
    if (domain.proj == kProjLambert)
        return std::abs(domain.p3) < kMostLat && std::abs(domain.p4) < kMostLat &&
               std::abs(domain.p3 + domain.p4) > kHalf && std::abs(domain.plat) <= kMostLat &&
               std::abs(domain.plon) <= kMostLon;
    return static_cast<float>(domain.nx) * domain.dx <= kMostLon &&
           static_cast<float>(domain.ny) * domain.dy <= 2 * kMostLat;
}

bool Decoder::read_map(Stream &stream, MosaicInfo &info) {
    const int letter = get(stream);
    const std::string text = text_to_marker(stream);
    Scanner scan(text);
    PlotDomain domain;
    domain.nx = columns_;
    domain.ny = lines_;
    const bool read = letter == 'C' ? read_latlon(scan, domain) : letter == 'L' && read_lambert(scan, domain);
    if (!read || !is_possible(domain)) return false;
    info.domain = domain;
    return true;
}

bool Decoder::read_header(Stream &stream, MosaicInfo &info) {
    *this = Decoder();
    info = MosaicInfo();
    info.domain.proj = kProjLatLon;
    info.domain.clat = kCountryLat;
    info.domain.plon = info.domain.clon = kCountryLon;
    info.domain.dx = info.domain.dy = kCountryStep;
    info.domain.nx = kCountryColumns;
    info.domain.ny = kCountryLines;
    if (!take_marker(stream, Marker::text)) return false;
    const int length = get(stream);
    if (length == kEnd || !skip(stream, length + 1)) return false;
    if (!take_marker(stream, Marker::size)) return false;
    const std::string size = text_to_marker(stream);
    Scanner scan(size);
    const auto lines = scan.integer(), columns = scan.integer();
    const auto is_side = [](std::optional<int> side) {
        return side && *side > 0 && *side <= kMostMosaicSide;
    };
    if (!is_side(lines) || !is_side(columns)) return false;
    lines_ = *lines;
    columns_ = *columns;
    if (!take_marker(stream, Marker::description)) return false;
    std::string description(kDescriptionBytes, ' ');
    for (char &letter : description) letter = static_cast<char>(get(stream));
    if (ended_) return false;
    read_description(description, info);
    if (!take_marker(stream, Marker::map) || !read_map(stream, info)) return false;
    return ahead_ == Marker::line;
}

bool Decoder::begin_line(Stream &stream, int &line) {
    if (!take_marker(stream, Marker::line)) return false;
    const auto number = word(stream);
    if (!number) return false;
    line = *number;
    MESS_print(0x80000000U, "\rLine start:");
    MESS_print(0x80000000U, "%4d\n", line);
    attribute_ = 0;
    column_ = 0;
    return true;
}

/// A zero has been read: a cell of level 0, or the beginning of a marker. True for a cell.
bool Decoder::read_zero(Stream &stream) {
    const int second = get(stream);
    if (second != kMark) {
        if (second != kEnd) ungetc(second, stream.get());
        before_ = 0;
        return true;
    }
    const int third = get(stream);
    if (third == kEnd) return false;
    ahead_ = static_cast<Marker>(third);
    if (ahead_ != Marker::none) return false;
    attribute_ = 0; // the nibble of the marked byte, which a zero follows so that it is no marker
    before_ = 0;
    return true;
}

bool Decoder::next_packet(Stream &stream, NowradPacket &packet) {
    constexpr int kLowBits = 0x0F, kHighShift = 4;
    enum Packet : int { kWordRun = 0xD, kByteRun = 0xE, kAttribute = 0xF };
    if (ahead_ != Marker::none || ended_) return false;
    const int byte = get(stream);
    if (byte == kEnd) return false;
    packet.level = static_cast<std::uint8_t>(byte & kLowBits);
    packet.run = (byte >> kHighShift) + 1;
    switch (byte >> kHighShift) {
    case kWordRun: {
        const auto count = word(stream);
        if (!count) return false;
        packet.run = *count + 1;
        break;
    }
    case kByteRun: {
        const int count = get(stream);
        if (count == kEnd) return false;
        packet.run = count + 1;
        before_ = count;
        break;
    }
    case kAttribute:
        packet.run = 0;
        attribute_ = packet.level;
        if (byte == kMark && before_ == 0) {
            const int escape = get(stream);
            if (escape != 0) {
                if (escape != kEnd) ahead_ = static_cast<Marker>(escape);
                return false;
            }
        }
        before_ = byte;
        break;
    default:
        if (byte == 0 && !read_zero(stream)) return false;
        if (byte != 0) before_ = byte;
    }
    packet.value = static_cast<float>(packet.level) * kStep;
    packet.attribute = attribute_;
    return true;
}

bool Decoder::next_line(Stream &stream, MosaicLine &line) {
    int number = 0;
    line.number = line_;
    line.runs.clear();
    if (line_ == lines_) {
        end_ = too_many_ || ahead_ == Marker::line ? MosaicEnd::beyond_grid : MosaicEnd::complete;
        return false;
    }
    if (!begin_line(stream, number)) {
        end_ = ended_ || ahead_ != Marker::none ? MosaicEnd::cut : MosaicEnd::damaged;
        return false;
    }
    NowradPacket packet;
    while (next_packet(stream, packet)) {
        const int cells = std::min(packet.run, columns_ - column_);
        too_many_ = too_many_ || cells < packet.run;
        if (cells <= 0) continue;
        line.runs.push_back({column_, cells, packet.level});
        column_ += cells;
    }
    ++line_;
    return true;
}

Decoder decoder;

const MosaicValues &values() {
    static const MosaicValues table = [] {
        MosaicValues made{};
        for (std::size_t level = 0; level < kLevels; ++level) made[level] = static_cast<float>(level) * kStep;
        return made;
    }();
    return table;
}

} // namespace

const MosaicFormat kNowradFormat{
    "NOWRad", [](Stream &stream, MosaicInfo &info) { return decoder.read_header(stream, info); },
    [](Stream &stream, MosaicLine &line) { return decoder.next_line(stream, line); },
    [] { return decoder.end(); }, values};

int NOWRad_header(Stream &stream, MosaicInfo &info) {
    return decoder.read_header(stream, info) ? 1 : 0;
}
int NOWRad_line(Stream &stream, int &line) {
    return decoder.begin_line(stream, line) ? 1 : 0;
}
int NOWRad_get_packet(Stream &stream, NowradPacket &packet) {
    return decoder.next_packet(stream, packet) ? 1 : 0;
}
int NOWRad_rewind(Stream &stream) {
    MosaicInfo info;
    std::rewind(stream.get());
    return decoder.read_header(stream, info) ? 1 : 0;
}
