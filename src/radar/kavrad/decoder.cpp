#include "radar/kavrad/decoder.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "lib/text/scan.h"

namespace {

/// Data stand behind this many bytes, the header at the end of them.
constexpr std::size_t kDataAt = 2048, kTypeAt = 2010, kDateAt = 2012, kSizeAt = 2034, kKeptAt = 2038;
constexpr std::size_t kDateWidth = 12;

constexpr unsigned kHalfResolution = 10;
constexpr float kCentreLat = 39.0F, kCentreLon = -96.0F;
constexpr int kColumns = 5120, kLines = 5760, kHalfColumns = 2560, kHalfLines = 2880;
constexpr float kDx = 0.0128906F, kDy = 0.0085937F, kHalfDx = 0.0257812F, kHalfDy = 0.0171874F; ///< degrees

/// Bytes that are no run with a level of its own.
enum Code : int { kLastPlainRun = 0x20, kDataEnd = 0x21, kRepeat = 0x22, kToLineEnd = 0x23, kByteRun = 0x24 };
constexpr int kRunShift = 6, kLevelBits = 0x3F;
constexpr std::size_t kLevels = kLevelBits + 1;

/// Values of the levels, missing for one that has none.
constexpr MosaicValues values_of(KavradType type) {
    MosaicValues values{};
    for (float &value : values) value = kMissingF;
    for (std::size_t i = 0; i < kLevels; ++i) {
        const auto level = static_cast<float>(i);
        if (type == KavradType::composite) {
            if (i <= 6) values[i] = i == 0 ? kMosaicNoEcho : i <= 3 ? 10 * level + 10 : 5 * level + 25;
        } else if (i <= 48) {
            values[i] = i < 16    ? 5 * level
                        : i == 16 ? kMosaicNoEcho
                        : i < 32  ? 5 * level + 20
                        : i == 32 ? 100
                        : i < 48  ? 5 * level + 40
                                  : 200;
        }
    }
    return values;
}
constexpr MosaicValues kPlainValues = values_of(KavradType::plain);
constexpr MosaicValues kCompositeValues = values_of(KavradType::composite);
constexpr std::uint8_t kPlainNoEcho = 16, kCompositeNoEcho = 0; ///< levels

class Decoder {
public:
    bool read_header(Stream &stream, KavradInfo &info);
    bool next_packet(Stream &stream, KavradPacket &packet);
    bool next_line(Stream &stream, MosaicLine &line);
    [[nodiscard]] MosaicEnd end() const { return end_; }
    [[nodiscard]] const MosaicValues &values() const {
        return type_ == KavradType::composite ? kCompositeValues : kPlainValues;
    }

private:
    void take_cells(int cells, MosaicLine &line);

    KavradType type_ = KavradType::plain;
    std::uint8_t level_ = kPlainNoEcho; ///< of the current value
    KavradPacket packet_;               ///< the one before
    int columns_ = 0, lines_ = 0;       ///< of the grid
    int column_ = 0, line_ = 0;         ///< the next ones
    bool done_ = false, too_many_ = false;
    MosaicEnd end_ = MosaicEnd::complete;
};

/// Fields of two characters: hour, minute, second, day, month, year. One digit has a blank beside it.
void read_date(std::string_view text, DateRecord &date) {
    constexpr int kThisCentury = 50, kTwoDigits = 200;
    std::array<int, kDateWidth / 2> v{};
    bool digits = true;
    for (std::size_t i = 0; i < v.size(); ++i) {
        const auto number = Scanner(text.substr(2 * i, 2)).integer();
        digits = digits && number;
        v[i] = number.value_or(kMissing);
    }
    DateRecord time;
    time.hour = v[0];
    time.minute = v[1];
    time.second = v[2];
    time.day = v[3];
    time.month = v[4];
    time.year = v[5] < kThisCentury ? v[5] + 2000 : v[5] < kTwoDigits ? v[5] + 1900 : v[5];
    if (!digits || v[5] < 0 || !DATE_is_possible(time))
        MESS_print(kWarn, "KAVRAD_header: The header has no time\n");
    else
        date = time;
}

PlotDomain domain_of(bool half) {
    PlotDomain domain;
    domain.proj = kProjLatLon;
    domain.clat = kCentreLat;
    domain.plon = domain.clon = kCentreLon;
    domain.nx = half ? kHalfColumns : kColumns;
    domain.ny = half ? kHalfLines : kLines;
    domain.dx = half ? kHalfDx : kDx;
    domain.dy = half ? kHalfDy : kDy;
    return domain;
}

bool Decoder::read_header(Stream &stream, KavradInfo &info) {
    *this = Decoder();
    info = KavradInfo();
    info.title = "KAV Radar Master Grid";
    info.domain = domain_of(false);
    std::array<std::byte, kDataAt> header{};
    if (std::fread(header.data(), 1, header.size(), stream.get()) < header.size()) return false;
    const auto byte_at = [&header](std::size_t i) { return std::to_integer<unsigned>(header[i]); };
    type_ = byte_at(kTypeAt) == 'C' ? KavradType::composite : KavradType::plain;
    level_ = type_ == KavradType::composite ? kCompositeNoEcho : kPlainNoEcho;
    info.type = type_;
    info.domain = domain_of(byte_at(kSizeAt) == kHalfResolution);
    columns_ = info.domain.nx;
    lines_ = info.domain.ny;
    read_date({reinterpret_cast<const char *>(&header[kDateAt]), kDateWidth}, info.date);
    ByteReader kept(std::span<const std::byte>(header).subspan(kKeptAt));
    for (int &number : info.kept) number = kept.i16();
    return true;
}

bool Decoder::next_packet(Stream &stream, KavradPacket &packet) {
    const int byte = done_ ? EOF : getc_unlocked(stream.get());
    if (byte == EOF || byte == kDataEnd) {
        if (!done_ && byte == EOF) end_ = MosaicEnd::cut;
        done_ = true;
        return false;
    }
    if (byte == kRepeat) {
        packet = packet_;
        return true;
    }
    int run = byte;
    if (byte == kToLineEnd) {
        run = kKavradToLineEnd;
    } else if (byte == kByteRun) {
        run = getc_unlocked(stream.get());
        if (run == EOF) return next_packet(stream, packet);
    } else if (byte > kLastPlainRun) {
        run = byte >> kRunShift;
        const int level = byte & kLevelBits;
        if (!is_missing(values()[static_cast<std::size_t>(level)])) level_ = static_cast<std::uint8_t>(level);
    }
    packet_ = {run, values()[level_], level_};
    packet = packet_;
    return true;
}

void Decoder::take_cells(int cells, MosaicLine &line) {
    const int inside = std::min(cells, columns_ - column_);
    too_many_ = too_many_ || inside < cells;
    line.runs.push_back({column_, inside, packet_.level});
    column_ += cells;
}

bool Decoder::next_line(Stream &stream, MosaicLine &line) {
    line.number = line_;
    line.runs.clear();
    column_ = 0;
    KavradPacket packet;
    while (next_packet(stream, packet)) {
        const int cells = packet.run != kKavradToLineEnd ? packet.run : column_ > 0 ? columns_ - column_ : 0;
        if (cells <= 0) continue;
        if (line_ >= lines_) {
            end_ = MosaicEnd::beyond_grid;
            return false;
        }
        take_cells(cells, line);
        if (column_ >= columns_ - 1) break; // the last column is not always there
    }
    if (line.runs.empty()) {
        if (too_many_ && end_ == MosaicEnd::complete) end_ = MosaicEnd::beyond_grid;
        return false;
    }
    ++line_;
    return true;
}

Decoder decoder;

} // namespace

const MosaicFormat kKavradFormat{
    "KAVRAD",
    [](Stream &stream, MosaicInfo &info) {
        KavradInfo whole;
        const bool read = decoder.read_header(stream, whole);
        info = whole;
        return read;
    },
    [](Stream &stream, MosaicLine &line) { return decoder.next_line(stream, line); },
    [] { return decoder.end(); },
    []() -> const MosaicValues & { return decoder.values(); },
    1};

int KAVRAD_header(Stream &stream, KavradInfo &info) {
    return decoder.read_header(stream, info) ? 1 : 0;
}
int KAVRAD_get_packet(Stream &stream, KavradPacket &packet) {
    return decoder.next_packet(stream, packet) ? 1 : 0;
}
int KAVRAD_rewind(Stream &stream) {
    KavradInfo info;
    std::rewind(stream.get());
    return decoder.read_header(stream, info) ? 1 : 0;
}
