#include "plot/session/labels.h"

#include <algorithm>
#include <array>

#include "graphics/kernel/helpers.h"
#include "graphics/text/font.h"
#include "lib/options/flags.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/session/layout.h"
#include "plot/session/status_text.h"

namespace {

constexpr int kOverlays = 6;
constexpr std::size_t kPositions = 6;
constexpr std::size_t kLabelLength = 68;
/// Appended overlays' labels may reach this far into a line.
constexpr std::size_t kAppendedLength = 59;

/// Heights in normalised device coordinates.
constexpr float kFullLabelBand = 0.06F, kSmallestBand = 0.005F;
constexpr float kLargestLine = 0.03F;                    ///< of the view's height
constexpr float kTextHeight = 0.75F, kLineOffset = 0.2F; ///< of the line's height
constexpr float kInset = 0.01F;                          ///< of the view's width
constexpr float kSmallestShrink = 0.1F;

enum Position : std::size_t { kUpperLeft, kUpperCenter, kUpperRight, kLowerLeft, kLowerCenter, kLowerRight };
constexpr std::array<std::string_view, kPositions> kPositionCodes{"ul", "uc", "ur", "ll", "lc", "lr"};

struct PositionLabels {
    std::array<std::string, kOverlays> text; ///< each at most kLabelLength characters
    std::size_t append_at = 0;               ///< length of overlay 0's label when the current overlay began
};

struct State {
    std::array<PositionLabels, kPositions> labels;
    /// Below 0: later overlays' labels are appended to the first overlay's line. Counts with the overlays.
    int type = 0;
    int overlay = 0; ///< up to kOverlays; that last one has no labels
    int base = 0;    ///< line of the first label
    int overlay_count = 0;
    DateRecord date{0, 0, 0, 0, 0, 0, 0, 0};
    int forecast_hours = 0;
    bool border = true;
} state;

bool has_room(int overlay, std::string_view text) {
    return overlay >= 0 && overlay < kOverlays && text.size() <= kLabelLength;
}

void store(Position position, int overlay, std::string_view text) {
    if (!has_room(overlay, text)) return;
    state.labels[position].text[static_cast<std::size_t>(overlay)] = text;
}

void store_label(Position position, std::string_view text) {
    if (state.type >= 0 || state.overlay < 1) {
        store(position, state.overlay, text);
        return;
    }
    PositionLabels &labels = state.labels[position];
    if (labels.append_at + text.size() > kAppendedLength) return;
    std::string &line = labels.text.front();
    line.resize(std::min(labels.append_at, line.size()));
    line.append(" ").append(text);
}

/// Labels of the user: "ul:Title" for overlay 0, "ul2:Title" for overlay 2. Tells which positions the user
/// fixed.
std::array<bool, kPositions> decode_label_resource() {
    std::array<bool, kPositions> fixed{};
    for (const std::string &value : RES_getvals("label")) {
        const auto named = [&value](std::string_view code) { return begins_with(value, code); };
        const auto code = std::find_if(kPositionCodes.begin(), kPositionCodes.end(), named);
        if (code == kPositionCodes.end() || !(value[2] == ':' || is_digit(value[2]))) {
            WORD_unknown("label", std::string_view(value).substr(0, value.find(':')), kPositionCodes);
            continue;
        }
        const auto position = static_cast<Position>(code - kPositionCodes.begin());
        const int overlay = value[2] == ':' ? 0 : value[2] - '0';
        std::string text = value.substr(std::min<std::size_t>(value[2] == ':' ? 3 : 4, value.size()));
        if (value[2] == ':') {
            text = PLT_label_format(text);
            fixed[position] = true;
        }
        if (!has_room(overlay, text))
            WORD_tell("label", format_text("%s is not shown: a label has at most %zu characters, a plot %d "
                                           "overlays",
                                           value.c_str(), kLabelLength, kOverlays));
        store(position, overlay, text);
    }
    return fixed;
}

/// What all label lines of a frame share.
struct Layout {
    Rect view, page;
    int lines = 1;
    float line_height = 0;
    float offset = 0; ///< of the first line from the view, upwards above it
    Attribute attribute;
};

Layout make_layout(float band) {
    Layout layout;
    layout.view = PLT_get_view();
    layout.page = GPH_get_view_size();
    layout.lines = state.type < 0 ? 1 : std::clamp(state.overlay_count, 1, kOverlays);
    const auto lines = static_cast<float>(layout.lines);
    layout.line_height = std::min(band / lines, kLargestLine * layout.view.height());
    layout.offset = kLineOffset * layout.line_height;
    if (PLT_get_full_lab()) layout.offset = -layout.offset - lines * layout.line_height;
    return layout;
}

/// Left, centre and right label of one line; empty where none is drawn.
struct Line {
    std::array<std::string, 3> text;
    float y = 0;
    int vertical = kAlignBase;
    float left_limit = 0; ///< something else stands left of this
};

/// Factor, at most 1, by which the labels of a line must shrink to stand apart and on the page.
float shrink_to_fit(const Line &line, const Layout &layout, float text_height) {
    const Rect &view = layout.view;
    const float inset = kInset * view.width(), centre = (view.xmin + view.xmax) / 2;
    const float start = view.xmin + inset, end = view.xmax - inset;
    const float left = gtext_width(line.text[0]), half = gtext_width(line.text[1]) / 2,
                right = gtext_width(line.text[2]);
    float factor = 1;
    const auto fit = [&factor](float width, float room) {
        if (width > 0 && width > room) factor = std::min(factor, room / width);
    };
    fit(left, layout.page.xmax - start);
    fit(half, std::min(centre - line.left_limit, layout.page.xmax - centre));
    fit(right, end - line.left_limit);
    if (half > 0) {
        if (left > 0) fit(left + half, centre - start - text_height);
        if (right > 0) fit(right + half, end - centre - text_height);
    } else if (left > 0 && right > 0) {
        fit(left + right, end - start - text_height);
    }
    return std::max(factor, kSmallestShrink);
}

void draw_line(const Line &line, const Layout &layout) {
    const float height = kTextHeight * layout.line_height;
    GPH_text_attr(&layout.attribute, height);
    const float factor = shrink_to_fit(line, layout, height);
    if (factor < 1) GPH_text_attr(&layout.attribute, height * factor);
    const Rect &view = layout.view;
    const float inset = kInset * view.width();
    const std::array x{view.xmin + inset, (view.xmin + view.xmax) / 2, view.xmax - inset};
    constexpr std::array align{kAlignLeft, kAlignCenter, kAlignRight};
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (line.text[i].empty()) continue;
        GPH_text_align(align[i], line.vertical);
        GPH_pprint({x[i], line.y}, line.text[i]);
    }
}

/// The label that a line shows at a position; a position that the user fixed has only its first.
std::string label_of_line(std::size_t position, int line, const std::array<bool, kPositions> &fixed) {
    const bool shown = FLAG_getplot(static_cast<int>(position) + kPlotTextUL) != 0;
    if (!shown || (fixed[position] && line > 0)) return {};
    return state.labels[position].text[static_cast<std::size_t>(line)];
}

void draw_upper_labels(const Layout &layout, const std::array<bool, kPositions> &fixed) {
    const float first =
        layout.view.ymax + layout.offset + static_cast<float>(state.base) * layout.line_height;
    for (int i = 0; i < layout.lines; ++i) {
        Line line;
        for (std::size_t p = 0; p < line.text.size(); ++p)
            line.text[p] = label_of_line(kUpperLeft + p, i, fixed);
        line.y = first + static_cast<float>(i) * layout.line_height;
        line.vertical = kAlignBase;
        line.left_limit = layout.page.xmin;
        draw_line(line, layout);
    }
}

void draw_lower_labels(const Layout &layout, const std::array<bool, kPositions> &fixed) {
    // The colour bar takes the left half.
    const bool bar = CONT_get_bar() >= 1;
    const Rect &view = layout.view;
    const auto lines = static_cast<float>(layout.lines - 1 - state.base);
    const float first = view.ymin - layout.offset - lines * layout.line_height;
    for (int i = 0; i < layout.lines; ++i) {
        Line line;
        if (!bar) line.text[0] = label_of_line(kLowerLeft, i, fixed);
        if (!bar) line.text[1] = label_of_line(kLowerCenter, i, fixed);
        line.text[2] = label_of_line(kLowerRight, i, fixed);
        line.y = first + static_cast<float>(i) * layout.line_height;
        line.vertical = kAlignCap;
        line.left_limit = bar ? (view.xmin + view.xmax) / 2 + 2 * kInset * view.width() : layout.page.xmin;
        draw_line(line, layout);
    }
}

/// Two digits; nothing for an unset field.
std::string two_digits(int value) {
    return is_missing(value) ? std::string() : format_text("%2.2d", value);
}

/// The valid-time label without its hour: it ends with weekday, day, month and year, "SAT  5 JUL 03".
std::string valid_day() {
    constexpr std::size_t day_length = 13;
    const std::string label = DATE_make_label_valid_time(state.forecast_hours, state.date);
    return label.substr(label.size() - std::min(label.size(), day_length));
}

std::string expand_code(char code) {
    const DateRecord &date = state.date;
    switch (code) {
    case 'D': return DATE_make_label(date);
    case 'V': return DATE_make_label_valid_time(state.forecast_hours, date);
    case 'W': return valid_day();
    case 'y': return two_digits(is_missing(date.year) ? kMissing : date.year % 100);
    case 'm': return two_digits(date.month);
    case 'b': return DATE_month(date.month);
    case 'd': return two_digits(date.day);
    case 'h': return two_digits(date.hour);
    case 'n': return two_digits(date.minute);
    case 'f': return DATE_fhour_label(state.forecast_hours, 0);
    case 'F': return DATE_fhour_label(state.forecast_hours, 1);
    case '%': return "%";
    default: return {};
    }
}

} // namespace

int PLT_labels() {
    const auto fixed = decode_label_resource();
    Attribute attribute;
    ATTRIB_get("color_text", ATTRIB_text_default(), attribute);
    PLT_mess("Labels");
    GPH_trans(kViewTransform);
    GPH_line_attr(nullptr);
    GPH_text_attr(nullptr, 0);
    GPH_line_attr(&attribute);
    const float band = PLT_get_full_lab() ? kFullLabelBand : PLT_get_view().ymin - GPH_get_view_size().ymin;
    if (state.border && FLAG_getplot(kPlotBorder)) GPH_border(PLT_get_view());
    if (!(band >= kSmallestBand)) return -1;
    if (!FLAG_getplot(kPlotText)) return 0;
    Layout layout = make_layout(band);
    layout.attribute = attribute;
    draw_upper_labels(layout, fixed);
    draw_lower_labels(layout, fixed);
    return 0;
}

void PLT_label_up_left(std::string_view text) {
    store_label(kUpperLeft, text);
}

void PLT_label_up_center(std::string_view text) {
    store_label(kUpperCenter, text);
}

void PLT_label_up_right(std::string_view text) {
    store_label(kUpperRight, text);
}

void PLT_label_low_left(std::string_view text) {
    store_label(kLowerLeft, text);
}

void PLT_label_low_center(std::string_view text) {
    store_label(kLowerCenter, text);
}

void PLT_label_low_right(std::string_view text) {
    store_label(kLowerRight, text);
}

std::string PLT_get_label(int position, int overlay) {
    if (position < 0 || position >= static_cast<int>(kPositions) || overlay < 0 || overlay >= kOverlays)
        return {};
    return state.labels[static_cast<std::size_t>(position)].text[static_cast<std::size_t>(overlay)];
}

void PLT_init_labels() {
    state.labels = {};
    state.overlay_count = 0;
}

std::string PLT_label_format(std::string_view format) {
    constexpr std::string_view codes = "DVWymbdhnfF%";
    std::string text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '_') {
            text += ' ';
        } else if (format[i] != '%') {
            text += format[i];
        } else {
            const std::string_view code = format.substr(++i, 1);
            if (code.empty() || codes.find(code) == codes.npos)
                WORD_not("label", "%" + std::string(code), "a code of labels, where %% is a percent sign");
            else
                text += expand_code(code.front());
        }
    }
    return text;
}

void PLT_label_date(const DateRecord &date) {
    state.date = date;
}

void PLT_label_for_time(int hours) {
    state.forecast_hours = hours;
}

void PLT_set_overlay(int overlay) {
    state.overlay = std::min(overlay, kOverlays - 1);
    state.overlay_count = std::max(state.overlay_count, state.overlay);
}

void PLT_set_overlay_base(int overlay) {
    state.base = std::clamp(overlay, -kOverlays, kOverlays - 1);
    state.overlay_count = std::max(state.overlay_count, state.base);
}

void PLT_set_num_overlay(int count) {
    const int wanted = count < 0 ? -std::max(count, -kOverlays) : std::min(count, kOverlays);
    state.overlay_count = count < 0 ? wanted : std::max(state.overlay_count, wanted);
}

int PLT_next_overlay() {
    if (state.overlay >= kOverlays) return -1;
    ++state.overlay;
    if (state.type > 0) ++state.type;
    if (state.type < 0) --state.type;
    for (PositionLabels &labels : state.labels) labels.append_at = labels.text.front().size();
    state.overlay_count = std::max(state.overlay_count, state.overlay);
    return state.overlay;
}

int PLT_get_num_over() {
    return state.overlay_count;
}

int PLT_get_overlay_base() {
    return state.base;
}

void PLT_set_label_type(int type) {
    state.type = type;
}

int PLT_get_label_type() {
    return state.type;
}

void PLT_border(int on) {
    state.border = on != 0;
}
