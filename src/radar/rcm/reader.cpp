#include "radar/rcm/reader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/byte_reader.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "radar/rcm/coded_text.h"

namespace {

constexpr std::string_view kMark = "RCM", kTextBegins = "1234";
constexpr std::size_t kMostIdBytes = 8, kMostLineBytes = 5000, kFullLineBytes = 70, kMostBodyBytes = 65536;
constexpr float kMetresPerFoot = 0.3048F; // international foot

/// A line by its length, since bytes of a header may be anything; false at the end of the stream.
bool read_line(Stream &stream, std::string &line) {
    line.clear();
    int c = EOF;
    while (line.size() < kMostLineBytes && (c = getc_unlocked(stream.get())) != EOF && c != '\n')
        line.push_back(static_cast<char>(c));
    return c != EOF || !line.empty();
}

/// "RCMLSX": the radar's identifier; nothing for another line.
std::optional<std::string> identifier_of(std::string_view line) {
    const std::string_view text = trimmed(line);
    if (!begins_with(text, kMark)) return {};
    return std::string(trimmed(text.substr(kMark.size())).substr(0, kMostIdBytes));
}

bool is_next_bulletin(std::string_view line) {
    const auto id = identifier_of(line);
    return id && !id->empty() && id->find(' ') == id->npos;
}

/// What stands behind the identifier's line up to the next bulletin, which the stream is left before.
std::string read_body(Stream &stream, RcmFaults &faults) {
    std::string body, line;
    bool goes_on = true; // the line before was cut by its length
    for (;;) {
        const long at = std::ftell(stream.get());
        if (!read_line(stream, line)) return body;
        if (is_next_bulletin(line)) {
            (void)std::fseek(stream.get(), at, SEEK_SET); // a file that cannot go back has one bulletin less
            return body;
        }
        if (!goes_on) body.push_back('\n');
        goes_on = line.size() == kMostLineBytes || line.size() == kFullLineBytes;
        body += line;
        if (body.size() > kMostBodyBytes) {
            body.resize(kMostBodyBytes);
            faults.push_back(
                format_text("What stands behind its first %zu bytes is not read", kMostBodyBytes));
            return body;
        }
    }
}

/// Two digits to skip, latitude, longitude, elevation in feet, then the time.
void read_location(std::string_view text, RcmReport &report) {
    constexpr std::size_t kSkipped = 2, kLatWidth = 8, kLonWidth = 10, kFeetWidth = 4;
    const auto field = [&text](std::size_t width) {
        const std::string_view taken = text.substr(0, std::min(width, text.size()));
        text.remove_prefix(taken.size());
        return taken;
    };
    field(kSkipped);
    const auto lat = Scanner(field(kLatWidth)).real(), lon = Scanner(field(kLonWidth)).real();
    const auto feet = Scanner(field(kFeetWidth)).real();
    constexpr float kMostLat = 90, kMostLon = 360;
    if (lat && lon && std::abs(*lat) <= kMostLat && std::abs(*lon) <= kMostLon) {
        report.lat = *lat;
        report.lon = *lon;
    }
    if (feet) report.elevation_m = *feet * kMetresPerFoot;
    const auto year = Scanner(field(4)).integer(), month = Scanner(field(2)).integer(),
               day = Scanner(field(2)).integer(), hour = Scanner(field(2)).integer(),
               minute = Scanner(field(2)).integer();
    if (!minute) return;
    report.date.year = year.value_or(kMissing);
    report.date.month = month.value_or(kMissing);
    report.date.day = day.value_or(kMissing);
    report.date.hour = hour.value_or(kMissing);
    report.date.minute = *minute;
}

bool is_packet_form(std::string_view body) {
    return body.size() > 3 && body[2] == '\1' && body[3] == '\1';
}

/// A chain of blocks: a length in words, two bytes of type, content. False when it has no coded text.
bool read_packets(std::string_view body, RcmReport &report, RcmFaults &faults) {
    enum class Block { first = 0x0101, location = 0x0110, passed_over = 0x0410, text = 0x0504 };
    constexpr unsigned kLengthBits = 0x0FFF;
    constexpr std::size_t kHeadBytes = 4;
    ByteReader bytes(std::as_bytes(std::span(body)));
    while (bytes.remaining() >= kHeadBytes) {
        const std::size_t at = bytes.offset(), length = 2 * (bytes.u16() & kLengthBits);
        const auto type = static_cast<Block>(bytes.u16());
        const std::string_view content =
            body.substr(at + kHeadBytes, length > kHeadBytes ? length - kHeadBytes : 0);
        switch (type) {
        case Block::text: return RCM_read_text(content, report, faults);
        case Block::location: read_location(content, report); break;
        case Block::first:
        case Block::passed_over: break;
        default: faults.push_back("A block of another kind ends its chain"); return true;
        }
        if (length < kHeadBytes || !bytes.seek(at + length)) break;
    }
    faults.push_back("Its chain of blocks ends without a text");
    return true;
}

bool read_text_form(std::string_view body, RcmReport &report, RcmFaults &faults) {
    const std::size_t begin = body.find(kTextBegins);
    if (begin == body.npos) return false;
    Scanner scan(body.substr(begin));
    for (int i = 0; i < 3; ++i) (void)scan.word(); // a number, a word, a number
    return RCM_read_text(scan.rest(), report, faults);
}

std::string place_text(float column, float row) {
    return format_text("%3.0f,%3.0f", static_cast<double>(column), static_cast<double>(row));
}

} // namespace

RcmReport::RcmReport() {
    for (auto &column : cells) column.fill(kRcmNoReport);
}

void RCM_init(RcmReport &report) {
    report = RcmReport();
}

int RCM_read_site(Stream &stream, RcmReport &report) {
    RCM_init(report);
    std::string line;
    std::optional<std::string> id;
    while (!id && read_line(stream, line)) id = identifier_of(line);
    if (!id) return -1;
    report.id = *id;
    RcmFaults faults;
    const std::string body = read_body(stream, faults);
    const bool read =
        is_packet_form(body) ? read_packets(body, report, faults) : read_text_form(body, report, faults);
    if (!read) faults.push_back("It has no /NEXRAA item");
    for (const std::string &fault : faults)
        MESS_print(kWarn, "RCM_read_site: Report of %s: %s\n", report.id.c_str(), fault.c_str());
    return read ? 1 : 0;
}

void RCM_print(unsigned level, const RcmReport &report) {
    MESS_print(level, "ID: %s\n", report.id.c_str());
    MESS_print(level, "Num: %d\n", report.number);
    MESS_print(level, "Loc: %.3f %.3f\n", static_cast<double>(report.lat), static_cast<double>(report.lon));
    MESS_print(level, "Date: %s\n", DATE_make_label(report.date).c_str());
    if (report.status == RcmStatus::no_echoes) MESS_print(level, "Status: no echos\n");
    if (report.status == RcmStatus::maintenance) MESS_print(level, "Status: out for maintenance\n");
    MESS_print(level, "Max Top: %d %s\n", report.max_top,
               place_text(report.top_column, report.top_row).c_str());
    for (const RcmFeature &vortex : report.vortices)
        MESS_print(level, "TVS:  %2s %s\n", vortex.id.c_str(), place_text(vortex.column, vortex.row).c_str());
    for (const RcmFeature &meso : report.mesocyclones)
        MESS_print(level, "MESO: %2s %s\n", meso.id.c_str(), place_text(meso.column, meso.row).c_str());
    for (const RcmStorm &storm : report.storms)
        MESS_print(level, "STRM: %2s %s %3.3d-%3.3d %3d %d\n", storm.id.c_str(),
                   place_text(storm.column, storm.row).c_str(), storm.direction, storm.speed, storm.severe,
                   static_cast<int>(storm.hail));
}
