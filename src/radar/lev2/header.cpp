#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/byte_reader.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/places/city.h"
#include "radar/common/file_date.h"
#include "radar/common/file_kind.h"
#include "radar/lev2/volume_reader.h"

namespace {

constexpr std::size_t kIdLetters = 4;
constexpr int kMillisecondsPerDay = 86400000;
constexpr int kLastDay = 100000; ///< in the year 2243; a later date is a damaged one

/// The identifier when it is made of capital letters and digits, else nothing.
std::string identifier(std::span<const std::byte> bytes) {
    std::string id;
    for (const std::byte b : bytes) {
        const char c = static_cast<char>(std::to_integer<unsigned char>(b));
        if (is_digit(c) || (c >= 'A' && c <= 'Z')) id += c;
    }
    return id.size() == kIdLetters ? id : std::string();
}

std::string given_identifier() {
    const char *given = RES_get("identifier");
    return given != nullptr ? given : "";
}

DateRecord volume_date(int days, int milliseconds) {
    DateRecord date;
    if (days >= 1 && days <= kLastDay) NIDS_julian_date(days, date.year, date.month, date.day);
    if (milliseconds >= 0 && milliseconds < kMillisecondsPerDay)
        NIDS_dec_time(milliseconds / 1000, date.hour, date.minute, date.second);
    return date;
}

std::string last_three(const std::string &id) {
    return id.size() == kIdLetters ? id.substr(1) : id;
}

bool find_radar(const std::string &id, Lev2Info &info) {
    CityEntry entry;
    if (CTY_get("rad.cty", id, entry) != 1 || is_missing(entry.lat) || is_missing(entry.lon)) return false;
    info.lat = entry.lat;
    info.lon = entry.lon;
    info.antenna_m = entry.elevation;
    return true;
}

} // namespace

/// Walks to the first radial; true when it tells where the radar stands.
bool Lev2Reader::place_in_data(float &lat, float &lon) {
    Lev2Radial radial;
    while (next_block(radial)) {
        if (radial.type == kLev2Legacy || radial.type == kLev2Generic) break;
        end_block();
    }
    const bool found = radial.type == kLev2Generic && !is_missing(radial.lat);
    if (found) {
        lat = radial.lat;
        lon = radial.lon;
    }
    // Of a pipe the first radial stays the present message, and is read again.
    (void)rewind();
    return found;
}

/// The first message has a type, a time and a place among its segments that a message can have.
bool Lev2Reader::message_makes_sense() {
    constexpr int kLastType = 33;
    Lev2Radial first;
    const bool sense = next_block(first) && first.type >= 1 && first.type <= kLastType && first.date >= 1 &&
                       first.date <= kLastDay && first.time >= 0 && first.time < kMillisecondsPerDay &&
                       first.segment >= 1 && first.segment <= first.segments;
    (void)rewind(); // a pipe keeps its first message anyway
    return sense;
}

bool Lev2Reader::read_header(Lev2Info &info) {
    info = Lev2Info{};
    (void)rewind(); // of a pipe nothing has been read yet
    const auto bytes = stream.header_bytes();
    if (bytes.size() < kLev2HeaderBytes) return false;
    if (!RADAR_names_archive(bytes) && !message_makes_sense()) return false;
    ByteReader reader(bytes);
    reader.take(12); // archive name and version
    const int days = reader.i32(), milliseconds = reader.i32();
    info.date = volume_date(days, milliseconds);
    std::string id = identifier(reader.take(kIdLetters));
    if (id.empty()) id = given_identifier();
    info.id = last_three(id);
    if (!id.empty() && (find_radar(id, info) || find_radar(info.id, info))) return true;
    if (!place_in_data(info.lat, info.lon))
        MESS_print(
            kWarn,
            "LEV2_get_header: The place of radar \"%s\" is not known, it is drawn at %.2f %.2f; give its "
            "identifier with -id\n",
            id.c_str(), static_cast<double>(info.lat), static_cast<double>(info.lon));
    return true;
}
