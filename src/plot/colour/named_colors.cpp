#include "plot/colour/named_colors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/data_lines.h"

namespace {

constexpr std::string_view kDefaultTable = "vyx.clr";
constexpr std::size_t kNameLength = 19;
constexpr std::size_t kLineLength = 100;
/// Entries below this keep their names when a table is read over them.
constexpr std::size_t kKeptNames = 16;

struct Entry {
    std::string name; ///< at most kNameLength characters
    Rgb color;
};

struct State {
    std::array<Entry, kColorSlots> colors;
    int count = 0;      ///< entries in use
    int fill_count = 0; ///< leading entries that form the default fill sequence, 0 when none
} state;

constexpr std::string_view kEndWord = "end";
constexpr std::array<std::string_view, 3> kNoColor{"none", "off", "back"};

struct PatternColor {
    std::string_view name;
    int index;
};
/// Colours that only print devices know: black, white and grey, each plain, bold and thick.
constexpr std::array kPatternColors{
    PatternColor{"pblk", 500}, PatternColor{"pbblk", 501}, PatternColor{"ptblk", 502},
    PatternColor{"pwht", 503}, PatternColor{"pbwht", 504}, PatternColor{"ptwht", 505},
    PatternColor{"pgry", 506}, PatternColor{"pbgry", 507}, PatternColor{"ptgry", 508}};

std::optional<int> digit_value(char c, int base) {
    int value = -1;
    if (is_digit(c))
        value = c - '0';
    else if (c >= 'a' && c <= 'f')
        value = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        value = c - 'A' + 10;
    if (value < 0 || value >= base) return std::nullopt;
    return value;
}

/// Three numbers of `width` digits each, of 255.
std::optional<Rgb> decode_digits(std::string_view digits, std::size_t width, int base) {
    if (digits.size() < 3 * width) return std::nullopt;
    std::array<float, 3> part{};
    for (std::size_t i = 0; i < 3 * width; ++i) {
        const auto value = digit_value(digits[i], base);
        if (!value) return std::nullopt;
        float &sum = part[i / width];
        sum = sum * static_cast<float>(base) + static_cast<float>(*value);
    }
    const auto intensity = [](float value) { return std::min(value / 255.0F, 1.0F); };
    return Rgb{intensity(part[0]), intensity(part[1]), intensity(part[2])};
}

/// "#RRGGBB" in hexadecimal or "#rrrgggbbb" in decimal digits.
std::optional<Rgb> decode_written_color(std::string_view text) {
    if (!text.starts_with('#')) return std::nullopt;
    if (text.size() == 7) return decode_digits(text.substr(1), 2, 16);
    if (text.size() == 10) return decode_digits(text.substr(1), 3, 10);
    return std::nullopt;
}

/// A line "[number] name red green blue" or "[number] name #RRGGBB"; the number is for people.
std::optional<Entry> decode_line(std::string_view line, const TextLines &lines) {
    Scanner scan(line);
    if (is_digit(line.front())) scan.integer();
    const auto name = scan.word();
    scan.skip_blanks();
    if (name && name->size() > kNameLength)
        lines.tell(format_text("Of the name only the first %zu characters count", kNameLength));
    if (!scan.failed() && scan.rest().starts_with('#')) {
        if (const auto color = decode_digits(scan.rest().substr(1), 2, 16))
            return Entry{std::string(name->substr(0, kNameLength)), *color};
        lines.tell("No color");
        return std::nullopt;
    }
    const auto red = scan.real(), green = scan.real(), blue = scan.real();
    if (scan.failed()) {
        lines.tell("No color");
        return std::nullopt;
    }
    const auto intensity = [](float value) { return std::clamp(value, 0.0F, 1.0F); };
    return Entry{std::string(name->substr(0, kNameLength)),
                 {intensity(*red), intensity(*green), intensity(*blue)}};
}

/// What one pass over the files has found.
struct Reading {
    int count = 0;
    int fill_count = 0; ///< of the first file: entries before its "END", else all
    bool first_file = true;
};

void read_file(TextLines &lines, Reading &reading) {
    bool ended = false;
    std::string line;
    while (PLT_read_line(lines, line)) {
        if (line.empty() || line.front() == '#') continue;
        if (stricmp(line, "END") == 0) {
            if (reading.first_file && !ended) reading.fill_count = reading.count;
            ended = true;
            continue;
        }
        const auto entry = decode_line(line, lines);
        if (!entry) continue;
        if (reading.count >= kColorSlots) {
            lines.tell(format_text("No more than %d colors are read", kColorSlots));
            break;
        }
        state.colors[static_cast<std::size_t>(reading.count++)] = *entry;
    }
    if (reading.first_file && !ended) reading.fill_count = reading.count;
}

std::optional<int> find_name(std::string_view text) {
    for (int i = 0; i < state.count; ++i)
        if (stricmp(state.colors[static_cast<std::size_t>(i)].name, text) == 0) return i;
    return std::nullopt;
}

/// The entry at the index, clamped into the table; null for an empty table.
const Entry *entry_at(int index) {
    if (state.count == 0) return nullptr;
    return &state.colors[static_cast<std::size_t>(std::clamp(index, 0, state.count - 1))];
}

} // namespace

void CLR_read_table(std::string_view name) {
    std::string files(name);
    const char *chosen = RES_get("color_table");
    const bool from_resource = files.empty() && chosen && *chosen;
    if (from_resource) files = chosen;
    if (files.empty()) files = kDefaultTable;

    for (std::size_t i = kKeptNames; i < state.colors.size(); ++i) state.colors[i].name.clear();
    Reading reading;
    for (const std::string &file : parse_string(files, ',')) {
        TextLines lines(FILE_open_data(trimmed(file)), trimmed(file), kLineLength);
        if (lines)
            read_file(lines, reading);
        else
            WORD_tell("color_table", "Unable to open color table: " + std::string(trimmed(file)) + ": " +
                                         std::strerror(errno));
        reading.first_file = false;
    }
    state.count = reading.count;
    // Without any colour nothing but the map's outline would be seen.
    if (state.count == 0) MESS_print(kWarn, "CLR_read_table: No colors in color table: %s\n", files.c_str());
    if (from_resource) state.fill_count = reading.fill_count;
}

int CLR_get_ind(std::string_view text) {
    if (text.empty()) return kColorBackground;
    if (stricmp(text, kEndWord) == 0) return kColorEnd;
    for (const std::string_view none : kNoColor)
        if (stricmp(text, none) == 0) return kColorBackground;
    for (const PatternColor &pattern : kPatternColors)
        if (stricmp(text, pattern.name) == 0) return pattern.index;
    if (const auto index = find_name(text)) return *index;
    if (const auto color = decode_written_color(text)) return CLR_add(text, *color);
    if (is_digit(text.front())) return Scanner(text).integer().value_or(kColorBackground);
    return kColorBackground;
}

void CLR_check(std::string_view resource, std::string_view text) {
    // Without a table nothing is known, which has been told.
    if (text.empty() || state.count == 0 || decode_written_color(text)) return;
    if (WORD_is_integer(text)) {
        if (CLR_drawable(CLR_get_ind(text)) == kColorBackground)
            WORD_not(resource, text,
                     format_text("the number of a colour, which end with %d", state.count - 1));
        return;
    }
    std::vector<std::string_view> known(kNoColor.begin(), kNoColor.end());
    known.push_back(kEndWord);
    for (const PatternColor &pattern : kPatternColors) known.push_back(pattern.name);
    for (int i = 0; i < state.count; ++i) known.emplace_back(state.colors[static_cast<std::size_t>(i)].name);
    const auto same = [text](std::string_view word) { return stricmp(word, text) == 0; };
    if (std::none_of(known.begin(), known.end(), same)) WORD_unknown(resource, text, known);
}

int CLR_drawable(int index) {
    const bool in_table = state.count == 0 || index < state.count;
    const bool on_paper = index >= kPatternColors.front().index && index <= kPatternColors.back().index;
    return in_table || on_paper ? index : kColorBackground;
}

int CLR_add(std::string_view name, const Rgb &color) {
    if (state.count >= kColorSlots) return kColorSlots - 1;
    const int index = state.count++;
    state.colors[static_cast<std::size_t>(index)] = {std::string(name.substr(0, kNameLength)), color};
    GPH_set_color(index, color.red, color.green, color.blue);
    return index;
}

std::string CLR_get_name(int index) {
    const Entry *entry = entry_at(index);
    return entry ? entry->name : std::string();
}

Rgb CLR_get_rgb(int index) {
    const Entry *entry = entry_at(index);
    return entry ? entry->color : Rgb{};
}

int CLR_get_num() {
    return state.count;
}

int CLR_get_num_fill() {
    return state.fill_count;
}

void CLR_clear_table() {
    state = State{};
}

void CLR_load_kernel() {
    for (int i = 0; i < state.count; ++i)
        gset_colr_rep(1, i, state.colors[static_cast<std::size_t>(i)].color);
}
