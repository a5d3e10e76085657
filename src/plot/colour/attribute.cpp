#include "plot/colour/attribute.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "graphics/core/color_slots.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/named_colors.h"

namespace {

struct NamedCode {
    std::string_view name;
    int code;
};

constexpr std::array kFillPatterns{
    NamedCode{"sol", 0},  NamedCode{"st", 1},  NamedCode{"ost", 2}, NamedCode{"rst", 3},  NamedCode{"lst", 4},
    NamedCode{"vln", 5},  NamedCode{"||", 5},  NamedCode{"dlr", 6}, NamedCode{"\\\\", 6}, NamedCode{"drl", 7},
    NamedCode{"//", 7},   NamedCode{"hln", 8}, NamedCode{"--", 8},  NamedCode{"hat", 9},  NamedCode{"XX", 9},
    NamedCode{"clr", 10}, NamedCode{"0%", 10}, NamedCode{"1%", 11}, NamedCode{"2%", 12},  NamedCode{"3%", 13},
    NamedCode{"4%", 14},  NamedCode{"5%", 15}, NamedCode{"6%", 16}, NamedCode{"7%", 17},  NamedCode{"8%", 18},
    NamedCode{"9%", 19}};

/// The first prefix that fits wins.
constexpr std::array kMarkers{NamedCode{"pnt", 1},  NamedCode{".", 1},      NamedCode{"plus", 2},
                              NamedCode{"+", 2},    NamedCode{"star", 3},   NamedCode{"*", 3},
                              NamedCode{"crcl", 4}, NamedCode{"circle", 4}, NamedCode{"o", 4},
                              NamedCode{"x", 5},    NamedCode{"sqr", 6},    NamedCode{"square", 6},
                              NamedCode{"#", 6},    NamedCode{"tri", 7},    NamedCode{"^", 7},
                              NamedCode{"dot", 8},  NamedCode{"itri", 9},   NamedCode{"v", 9}};

constexpr std::array kLineStyles{NamedCode{"sol", 1}, NamedCode{"dsh", 2}, NamedCode{"lsdsh", 3},
                                 NamedCode{"llsdsh", 4}, NamedCode{"dot", 5}};

/// The number at the beginning; 0 when there is none.
int written_number(std::string_view text) {
    return Scanner(text).integer().value_or(0);
}

std::optional<int> find_code(std::span<const NamedCode> codes, std::string_view text) {
    for (const NamedCode &code : codes)
        if (stricmp(text, code.name) == 0) return code.code;
    return std::nullopt;
}

enum class Field { color, width, height, expansion, style, fill, font };

struct FieldKey {
    std::string_view key;
    Field field;
    bool named; ///< the value may be a name
};
/// Keys with "=" stand before the single letters that begin them.
constexpr std::array kFieldKeys{FieldKey{"co=", Field::color, true},     FieldKey{"wi=", Field::width, true},
                                FieldKey{"st=", Field::style, true},     FieldKey{"fo=", Field::font, true},
                                FieldKey{"fi=", Field::fill, true},      FieldKey{"fp=", Field::fill, true},
                                FieldKey{"sc=", Field::height, true},    FieldKey{"hi=", Field::height, true},
                                FieldKey{"te=", Field::expansion, true}, FieldKey{"w", Field::width, false},
                                FieldKey{"s", Field::style, false},      FieldKey{"t", Field::font, false},
                                FieldKey{"f", Field::fill, false},       FieldKey{"h", Field::height, false},
                                FieldKey{"e", Field::expansion, false}};

void set_named_field(Field field, std::string_view value, Attribute &record) {
    switch (field) {
    case Field::color: record.color = CLR_get_ind(value); break;
    case Field::style: record.style = find_code(kLineStyles, value).value_or(written_number(value)); break;
    case Field::fill: record.fill = ATTR_parse_fill_pat(value); break;
    case Field::font: record.font = gget_font_index(value); break;
    case Field::width:
    case Field::height:
    case Field::expansion: break;
    }
}

void set_number_field(Field field, std::string_view value, Attribute &record) {
    Scanner scan(value);
    const auto number = scan.real();
    if (!number) return;
    switch (field) {
    case Field::width: record.width = *number; break;
    case Field::height: record.height = *number; break;
    case Field::expansion: record.expansion = *number; break;
    case Field::style: record.style = written_number(value); break;
    case Field::fill: record.fill = written_number(value); break;
    case Field::font: record.font = written_number(value); break;
    case Field::color: break;
    }
}

bool is_number_field(Field field) {
    return field == Field::width || field == Field::height || field == Field::expansion;
}

void parse_element(std::string_view element, Attribute &record) {
    for (const FieldKey &key : kFieldKeys) {
        if (!begins_with(element, key.key)) continue;
        const std::string_view value = element.substr(key.key.size());
        if (key.named && !is_number_field(key.field))
            set_named_field(key.field, value, record);
        else if (key.field == Field::fill && stricmp(value, "M") == 0)
            record.fill = kMissing;
        else
            set_number_field(key.field, value, record);
        return;
    }
}

std::vector<std::string_view> names_of(std::span<const NamedCode> codes) {
    std::vector<std::string_view> names;
    for (const NamedCode &code : codes) names.push_back(code.name);
    return names;
}

void check_name(std::string_view resource, std::string_view value,
                const std::vector<std::string_view> &known) {
    const auto same = [value](std::string_view name) { return stricmp(name, value) == 0; };
    if (!WORD_is_integer(value) && std::none_of(known.begin(), known.end(), same))
        WORD_unknown(resource, value, known);
}

void check_named_field(std::string_view resource, Field field, std::string_view value) {
    switch (field) {
    case Field::color: CLR_check(resource, value); break;
    case Field::style: check_name(resource, value, names_of(kLineStyles)); break;
    case Field::fill: check_name(resource, value, names_of(kFillPatterns)); break;
    case Field::font: check_name(resource, value, gget_font_names()); break;
    case Field::width:
    case Field::height:
    case Field::expansion: break;
    }
}

void check_element(std::string_view resource, std::string_view element) {
    std::vector<std::string_view> keys;
    for (const FieldKey &key : kFieldKeys) {
        keys.push_back(key.key);
        if (!begins_with(element, key.key)) continue;
        const std::string_view value = element.substr(key.key.size());
        if (key.named && !is_number_field(key.field))
            check_named_field(resource, key.field, value);
        else if (!WORD_is_number(value) && !(key.field == Field::fill && stricmp(value, "M") == 0))
            WORD_not(resource, element, "\"" + std::string(key.key) + "\" and a number");
        return;
    }
    if (!element.empty()) WORD_unknown(resource, element, keys);
}

} // namespace

void ATTRIB_init(Attribute &record) {
    record = Attribute{};
}

void ATTRIB_parse(std::string_view text, Attribute &record) {
    const std::vector<std::string> elements = parse_string(text, ':');
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::string_view element = trimmed(elements[i]);
        if (i == 0 && element.find('=') == std::string_view::npos)
            record.color = CLR_get_ind(element);
        else
            parse_element(element, record);
    }
}

void ATTRIB_check(std::string_view resource, std::string_view text) {
    const std::vector<std::string> elements = parse_string(text, ':');
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::string_view element = trimmed(elements[i]);
        if (i == 0 && element.find('=') == std::string_view::npos)
            CLR_check(resource, element);
        else
            check_element(resource, element);
    }
}

int ATTRIB_get(std::string_view resource, std::string_view default_text, Attribute &record) {
    ATTRIB_parse(default_text, record);
    const char *value = RES_get(resource);
    if (!value) return 0;
    ATTRIB_parse(value, record);
    record.color = CLR_drawable(record.color);
    return 1;
}

void ATTRIB_update(Attribute &target, const Attribute &source) {
    const auto update = [](auto &to, auto from) {
        if (!is_missing(from)) to = from;
    };
    update(target.color, source.color);
    update(target.width, source.width);
    update(target.height, source.height);
    update(target.expansion, source.expansion);
    update(target.style, source.style);
    update(target.fill, source.fill);
    update(target.font, source.font);
}

void ATTRIB_print(const Attribute &record) {
    MESS_print(kPrint, "Color: %d\n", record.color);
    MESS_print(kPrint, "Style: %d\n", record.style);
    MESS_print(kPrint, "Height: %5.2f\n", static_cast<double>(record.height));
    MESS_print(kPrint, "Width: %5.2f\n", static_cast<double>(record.width));
    MESS_print(kPrint, "Expansion: %5.2f\n", static_cast<double>(record.expansion));
    MESS_print(kPrint, "Fill: %d\n", record.fill);
    MESS_print(kPrint, "Font: %d\n", record.font);
}

int ATTR_parse_fill_pat(std::string_view text) {
    return find_code(kFillPatterns, text).value_or(written_number(text));
}

bool ATTR_is_fill_pat(std::string_view text) {
    return find_code(kFillPatterns, text).has_value() || WORD_is_integer(text);
}

int ATTR_parse_marker(std::string_view text) {
    for (const NamedCode &marker : kMarkers)
        if (begins_with(text, marker.name)) return marker.code;
    return written_number(text);
}

namespace {

/// Light that a component of a screen gives off, 0 to 1.
float light(float component) {
    constexpr float kGamma = 2.2F;
    return std::pow(std::clamp(component, 0.0F, 1.0F), kGamma);
}

/// Texts in this ink cannot be read on the window's background.
bool is_hidden(bool black) {
    if (!gtype_is_WIN_PIX()) return false; // paper is white, and printers turn white ink
    const Rgb back = gget_color_rgb(kColorBackground);
    constexpr float kRed = 0.2126F, kGreen = 0.7152F, kBlue = 0.0722F; // shares of white light
    constexpr float kStray = 0.05F;   ///< light of the room on a black screen
    constexpr float kReadable = 2.5F; ///< ratio of the lighter to the darker
    const float level =
        kRed * light(back.red) + kGreen * light(back.green) + kBlue * light(back.blue) + kStray;
    return (black ? level / kStray : (1 + kStray) / level) < kReadable;
}

} // namespace

const char *ATTRIB_text_default() {
    const bool black = gget_inverse() != 0;
    return black != is_hidden(black) ? "black" : "white";
}
