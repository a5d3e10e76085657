#include "radar/nids/survey.h"

#include <algorithm>
#include <optional>

#include "lib/report/message.h"
#include "lib/text/strings.h"
#include "radar/nids/image.h"
#include "radar/nids/product_reader.h"

namespace {

bool has_cells(int packet) {
    return NIDS_is_radial(packet) || NIDS_is_raster(packet);
}
bool is_drawn(int packet) {
    return has_cells(packet) || packet == kPacketText || packet == kPacketTextValue ||
           packet == kPacketVector || packet == kPacketVectorValue || packet == kPacketWind;
}

/// Packets that no reader knows, as far as ICD 2620001 tells their length.
enum UnreadPacket : int {
    kPacketTrendTimes = 22,
    kPacketLastCounted = 26, ///< other codes up to here begin with the bytes that follow
    kPacketGeneric = 28,
    kPacketExternal = 29,
    kPacketContourColor = 0x0802,
    kPacketContour = 0x0E03,
    kPacketContourVectors = 0x3501
};

/// Skips the packet whose code has just been read. False when its length is not known.
bool skip_unread(ByteReader &bytes, int code) {
    std::optional<std::size_t> length;
    if (code == kPacketTrendTimes) {
        length = 2 * std::size_t{bytes.u8()} + 1; // volumes, latest one, a time for each
    } else if (code <= kPacketLastCounted || code == kPacketContourVectors) {
        length = bytes.u16();
    } else if (code == kPacketGeneric || code == kPacketExternal) {
        bytes.u16(); // reserved
        length = bytes.u32();
    } else if (code == kPacketContourColor) {
        length = 4;
    } else if (code == kPacketContour) {
        bytes.take(6); // colour indicator and first point
        length = bytes.u16();
    }
    if (!length || bytes.failed() || *length > bytes.remaining()) return false;
    bytes.take(*length);
    return true;
}

void note(std::vector<int> &codes, int code) {
    if (std::ranges::find(codes, code) == codes.end()) codes.push_back(code);
}

void count_elements(NidsReader &reader, int packet, NidsSurvey &survey) {
    const NidsPacketState &state = reader.packet;
    survey.radials = NIDS_is_radial(packet);
    survey.elements_announced += state.elements_left;
    float start = 0, delta = 0;
    while ((survey.radials ? reader.next_radial(start, delta) : reader.next_row()) == NidsRead::done)
        if (!state.element_cut) ++survey.elements;
}

/// Walks the layer whose first packet has been read with result `status`.
void survey_layer(NidsReader &reader, NidsRead status, NidsSurvey &survey) {
    int packet = reader.packet.code;
    bool ended = false; // an unknown packet ends the image: what follows is not drawn either
    while (status != NidsRead::exhausted && packet != 0 && packet != kPacketDivider) {
        if (ended || status == NidsRead::none || !is_drawn(packet)) note(survey.undrawn, packet);
        if (status == NidsRead::none) {
            ended = true;
            if (!skip_unread(reader.stream.bytes(), packet)) return;
        } else if (has_cells(packet)) {
            count_elements(reader, packet, survey);
        }
        packet = kPacketDivider;
        status = reader.next_packet(packet);
    }
}

/// The divider that ended the first layer begins the second.
void survey_further_layers(NidsReader &reader, NidsSurvey &survey) {
    for (int layer = 1; layer < reader.packet.layers; ++layer) {
        if (reader.packet.code != kPacketDivider) return;
        reader.stream.bytes().u32(); // its length
        int packet = 0;
        for (NidsRead status = reader.next_packet(packet); status != NidsRead::exhausted;
             status = reader.next_packet(packet)) {
            if (packet == kPacketDivider) break;
            note(survey.further, packet);
            if (status == NidsRead::none && !skip_unread(reader.stream.bytes(), packet)) return;
        }
    }
}

/// Products of trends have no image: their packets stand without a block where the pages of others begin.
void survey_loose_packets(NidsReader &reader, NidsSurvey &survey) {
    const std::size_t offset = std::size_t{reader.blocks.description.graphic} * 2;
    if (offset == 0 || !reader.stream.seek_message(offset)) return;
    int packet = 0;
    for (NidsRead status = reader.next_packet(packet); status != NidsRead::exhausted;
         status = reader.next_packet(packet)) {
        if (packet == 0 || packet == kPacketDivider) return;
        note(survey.undrawn, packet);
        if (status == NidsRead::none && !skip_unread(reader.stream.bytes(), packet)) return;
    }
}

std::string damage_of(Inflated result) {
    switch (result) {
    case Inflated::done: break;
    case Inflated::truncated: return "its compressed data end early";
    case Inflated::damaged: return "its compressed data are damaged";
    case Inflated::too_large: return "it is too large";
    case Inflated::too_many: return "its compressed pieces are too many";
    }
    return {};
}

/// A count that says how long the message is, unless it is nonsense.
std::size_t announced_bytes(const NidsMessageHeader &message) {
    constexpr int kHeaders = 120;
    const int length = message.length;
    return length >= kHeaders ? static_cast<std::size_t>(length) : 0;
}

std::string joined(const std::vector<int> &codes) {
    constexpr int kFirstHexadecimal = 0x100; // as the format's documents write them
    std::string text;
    for (const int code : codes) {
        if (!text.empty()) text += ", ";
        text += code < kFirstHexadecimal ? format_text("%d", code)
                                         : format_text("%04X", static_cast<unsigned>(code));
    }
    return text;
}

} // namespace

NidsSurvey NIDS_survey(NidsReader &reader, const NidsInfo &info) {
    NidsSurvey survey;
    const NidsExtent extent = reader.stream.extent();
    survey.bytes = extent.bytes;
    survey.damage = damage_of(extent.result);
    // What came whole out of its compression is whole, whatever length was written before compressing.
    if (!extent.inflated) survey.bytes_announced = announced_bytes(reader.blocks.message);

    survey_layer(reader, info.packet != 0 ? NidsRead::done : NidsRead::none, survey);
    survey_further_layers(reader, survey);
    if (info.packet == 0 && survey.undrawn.empty()) survey_loose_packets(reader, survey);
    return survey;
}

void NIDS_tell_survey(const NidsSurvey &survey, const NidsInfo &info, const std::string &name) {
    if (!survey.complete()) {
        std::string what = survey.damage;
        const auto add = [&what](const std::string &part) { what += (what.empty() ? "" : ", ") + part; };
        if (survey.bytes < survey.bytes_announced)
            add(format_text("%zu of %zu bytes", survey.bytes, survey.bytes_announced));
        if (survey.elements < survey.elements_announced)
            add(format_text("%d of %d %s", survey.elements, survey.elements_announced,
                            survey.radials ? "radials" : "rows"));
        MESS_print(kWarn, "NIDS_open_file: Incomplete product, %s: %s\n", what.c_str(), name.c_str());
    }
    if (!survey.further.empty())
        MESS_print(kMess, "NIDS_open_file: Packets of further layers, which are not drawn: %s\n",
                   joined(survey.further).c_str());
    if (!survey.undrawn.empty())
        MESS_print(kWarn, "NIDS_open_file: Packets of product %d that are not drawn: %s: %s\n", info.code,
                   joined(survey.undrawn).c_str(), name.c_str());
    else if (info.packet == 0 && survey.complete())
        MESS_print(kWarn, "NIDS_open_file: Product %d has no image to draw: %s\n", info.code, name.c_str());
    else if (has_cells(info.packet) && !(info.domain.dx > 0))
        MESS_print(kWarn, "NIDS_open_file: Product %d is not drawn, the size of its bins is not known: %s\n",
                   info.code, name.c_str());
}
