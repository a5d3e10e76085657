#include "plot/colour/levels.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <optional>
#include <vector>

#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/colour/named_colors.h"

namespace {

constexpr std::string_view kDefaultColors =
    "Magenta,LMagenta,Blue,LBlue,Cyan,LCyan,Green,LGreen,Brown,Yellow,Red,LRed,DGray,LGray,White";
/// Lets a value on a level's edge fall into the level in spite of rounding.
constexpr float kEdgeTolerance = 0.01F;

constexpr std::size_t kSlots = std::size_t{kMaxLevels} + 1;

struct State {
    /// Explicit level values up to the first kMissing; none: levels are base + k x interval.
    std::vector<float> values = std::vector<float>(kSlots, kMissingF);
    std::array<std::string, kSlots> labels; ///< empty: format the value
    std::array<Attribute, kSlots> fill;     ///< of each level; `color_num` are in use
    int color_num = 0;
    int num_cont = 0;
    float interval = kMissingF;
    float base = kMissingF;
    float grid_min = kMissingF, grid_max = kMissingF;
    float floor = kMissingF; ///< of levels without explicit values
    float min_cut = kMissingF, max_cut = kMissingF;
    float bar_min = kMissingF, bar_max = kMissingF;
    int type = kMissing;
    int fill_pat = kMissing;
    bool fill_set = false; ///< colours are chosen; later choices are ignored until CONT_reset_fill_set
    int bar = 0;
    int dash = 0;
    int skip_x = 1, skip_y = 1;       ///< of plotted grid values, grid points
    float offset_x = 0, offset_y = 0; ///< of plotted grid values
    LineLook look;
} state;

bool has_values() {
    return !is_missing(state.values.front());
}

std::size_t value_count() {
    return static_cast<std::size_t>(std::find(state.values.begin(), state.values.end(), kMissingF) -
                                    state.values.begin());
}

void forget_values() {
    std::fill(state.values.begin(), state.values.end(), kMissingF);
}

/// Marks the end of the levels behind `count` of them.
void end_levels(std::size_t count) {
    state.fill[count] = Attribute{};
    state.fill[count].color = kColorEnd;
    state.labels[count].clear();
    state.color_num = state.num_cont = static_cast<int>(count);
    state.fill_set = true;
}

/// The colour table's own sequence: level k in colour k, without explicit values.
void use_table_sequence(int count) {
    for (int k = 0; k < count; ++k) {
        const auto level = static_cast<std::size_t>(k);
        state.fill[level] = Attribute{};
        state.fill[level].color = k;
        state.labels[level].clear();
    }
    forget_values();
    end_levels(static_cast<std::size_t>(count));
}

/// Gives the levels between two explicit values values in equal steps.
void interpolate_values(std::size_t count) {
    if (!has_values()) return;
    std::size_t before = 0;
    for (std::size_t after = 1; after < count; ++after) {
        if (is_missing(state.values[after])) continue;
        const float step = state.values[after] - state.values[before];
        for (std::size_t i = before + 1; i < after; ++i)
            state.values[i] = state.values[before] +
                              step * static_cast<float>(i - before) / static_cast<float>(after - before);
        before = after;
    }
}

void install_levels(const std::vector<LevelElement> &levels) {
    for (std::size_t i = 0; i < levels.size(); ++i) {
        state.fill[i] = levels[i].attribute;
        state.fill[i].color = CLR_drawable(state.fill[i].color);
        state.labels[i] = levels[i].label;
        if (!levels[i].keeps_value) state.values[i] = levels[i].value;
    }
    state.values[levels.size()] = kMissingF;
    end_levels(levels.size());
    interpolate_values(levels.size());
    const std::size_t explicit_count = value_count();
    if (explicit_count == 0) return;
    if (explicit_count > 1) state.interval = state.values[1] - state.values[0];
    state.grid_min = state.values.front();
    state.grid_max = state.values[explicit_count - 1];
}

/// The list to use: the user's own, when it may replace the program's.
std::string choose_spec(std::string_view spec, int flag) {
    const char *chosen = flag == 0 ? RES_get("color_fill") : nullptr;
    if (!chosen || !*chosen || stricmp(chosen, "miss") == 0 || begins_with(chosen, "def"))
        return std::string(trimmed(spec));
    return std::string(trimmed(chosen));
}

/// Position of a value's level among the fill attributes; nothing when it is not drawn.
std::optional<std::size_t> find_level(float value) {
    if (state.color_num < 1 || !std::isfinite(value) || is_missing(value)) return std::nullopt;
    if (!is_missing(state.min_cut) && value < state.min_cut) return std::nullopt;
    if (!is_missing(state.max_cut) && value > state.max_cut) return std::nullopt;
    const auto colors = static_cast<std::size_t>(state.color_num);
    if (!has_values()) {
        if (!is_missing(state.floor) && value < state.floor) return std::nullopt;
        const float base = is_missing(state.base) ? 0.0F : state.base;
        return CONT_level_index(value, base, state.interval);
    }
    if (value < state.values.front()) return std::nullopt;
    std::size_t last = 0;
    for (std::size_t i = 0; !is_missing(state.values[i]); ++i) {
        last = i;
        const float next = state.values[i + 1];
        if (!is_missing(next) && state.values[i] <= value && value < next) break;
    }
    return std::min(last, colors - 1);
}

void tell_no_level_file(const std::string &name, int fault) {
    MESS_print(kWarn, "CONT_set_fill_colors: Unable to read contour level file: %s\n", name.c_str());
    MESS_print_fault(kWarn, "CONT_set_fill_colors", name, fault);
}

void take_number(float &number, ParamValue value) {
    if (const auto given = Scanner(value.value_or("")).real()) number = *given;
}

/// "lab=skip:radius:x:y", "lab=skip:radius:spacing", "lab=n": skip n / 10, radius n mod 10.
void take_labels(LineLook &look, ParamValue value) {
    constexpr int kBase = 10;
    Scanner scan(value.value_or(""));
    std::vector<int> numbers;
    for (auto number = scan.integer(); number; number = scan.integer()) {
        numbers.push_back(std::max(*number, 0));
        if (!scan.literal(':')) break;
    }
    if (numbers.empty()) return;
    look.skip = numbers.size() == 1 ? numbers[0] / kBase : numbers[0];
    look.radius = numbers.size() == 1 ? numbers[0] % kBase : numbers[1];
    if (numbers.size() > 2) look.x_spacing = look.y_spacing = static_cast<float>(numbers[2]);
    if (numbers.size() > 3) look.y_spacing = static_cast<float>(numbers[3]);
}

constexpr std::array kParams{
    ParamRow<State>{{"lab", PARAM_up_to_four, "up to four numbers"},
                    [](State &s, ParamValue value) { take_labels(s.look, value); }},
    ParamRow<State>{{"rlab"}, [](State &s, ParamValue) { s.look.rotated = true; }},
    ParamRow<State>{{"hlab"}, [](State &s, ParamValue) { s.look.rotated = false; }},
    ParamRow<State>{{"grid"}, [](State &s, ParamValue) { s.look.grid = true; }},
    ParamRow<State>{{"conmap"}, [](State &s, ParamValue) { s.look.over_map = false; }},
    ParamRow<State>{{"mapcon"}, [](State &s, ParamValue) { s.look.over_map = true; }},
    ParamRow<State>{{"fill", ATTR_is_fill_pat, "a fill pattern"},
                    [](State &s, ParamValue value) {
                        if (value && !value->empty()) s.fill_pat = ATTR_parse_fill_pat(*value);
                    }},
    ParamRow<State>{{"conmin", PARAM_number, "a number"},
                    [](State &s, ParamValue value) { take_number(s.min_cut, value); }},
    ParamRow<State>{{"conmax", PARAM_number, "a number"},
                    [](State &s, ParamValue value) { take_number(s.max_cut, value); }}};

} // namespace

void CONT_init() {
    const int bar = state.bar;
    const float bar_min = state.bar_min, bar_max = state.bar_max;
    state = State{};
    state.bar = bar;
    state.bar_min = bar_min;
    state.bar_max = bar_max;
}

int CONT_set_values(std::span<const float> values) {
    if (state.fill_set) return -1;
    values = values.first(std::min<std::size_t>(values.size(), kMaxLevels));
    const auto end = std::find(values.begin(), values.end(), kMissingF);
    const auto count = static_cast<std::size_t>(end - values.begin());
    std::copy(values.begin(), end, state.values.begin());
    state.values[count] = kMissingF;
    state.num_cont = static_cast<int>(count);
    state.interval = count > 1 ? state.values[1] - state.values[0] : kMissingF;
    state.grid_min = state.values.front();
    state.grid_max = values.empty() ? kMissingF : values.back();
    return 0;
}

void CONT_reset_values() {
    if (!has_values()) return;
    forget_values();
    state.interval = state.grid_min = state.grid_max = kMissingF;
}

std::span<const float> CONT_get_values() {
    return {state.values.data(), value_count()};
}

int CONT_get_num_cont() {
    return state.num_cont;
}

std::string CONT_get_label(int level) {
    if (level < 0 || level >= kMaxLevels) return {};
    return state.labels[static_cast<std::size_t>(level)];
}

int CONT_set_fill_colors(std::string_view given, int flag) {
    if (state.fill_set) return -1;
    std::string spec = choose_spec(given, flag);
    if (spec.empty()) {
        if (CLR_get_num_fill() > 0) {
            use_table_sequence(std::min(CLR_get_num_fill(), kMaxLevels));
            return 0;
        }
        spec = kDefaultColors;
    }
    const std::vector<std::string> elements = parse_string(spec, ',');
    if (elements.size() == 1 && spec.find('-') == std::string::npos) {
        const auto levels = read_level_file(spec);
        if (levels)
            install_levels(*levels);
        else
            tell_no_level_file(spec, errno);
        return 0;
    }
    install_levels(decode_level_list(elements));
    return 0;
}

void CONT_reset_fill_set() {
    state.fill_set = false;
    state.floor = kMissingF;
}

void CONT_set_fill_pat(int pattern) {
    state.fill_pat = pattern;
}

int CONT_get_fill_pat() {
    return state.fill_pat;
}

int CONT_get_color_num() {
    return state.color_num;
}

void CONT_set_base(float value) {
    state.base = value;
}

float CONT_get_base() {
    return state.base;
}

void CONT_set_intrvl(float value) {
    state.interval = value;
}

float CONT_get_intrvl() {
    return state.interval;
}

void CONT_set_range(float max, float min) {
    state.grid_max = max;
    state.grid_min = min;
}

void CONT_get_range(float &max, float &min) {
    max = state.grid_max;
    min = state.grid_min;
}

void CONT_set_bar_range(float max, float min) {
    state.bar_max = max;
    state.bar_min = min;
}

void CONT_get_bar_range(float &max, float &min) {
    max = state.bar_max;
    min = state.bar_min;
}

void CONT_set_floor(float value) {
    state.floor = value;
}

void CONT_set_cutoff(float max, float min) {
    if (!is_missing(max)) state.max_cut = max;
    if (!is_missing(min)) state.min_cut = min;
}

void CONT_get_cutoff(float &max, float &min) {
    max = state.max_cut;
    min = state.min_cut;
}

const LineLook &CONT_get_line_look() {
    return state.look;
}

void CONT_set_type(int type) {
    state.type = type == kContourFillOld ? int{kContourFill} : type;
}

int CONT_get_type() {
    return state.type;
}

void CONT_set_dash(int rule) {
    state.dash = rule;
}

int CONT_get_dash() {
    return state.dash;
}

void CONT_set_skip(int x, int y) {
    state.skip_x = x;
    state.skip_y = y;
}

GridSkip CONT_get_skip() {
    return {state.skip_x, state.skip_y};
}

void CONT_set_plot_offset(float x, float y) {
    state.offset_x = x;
    state.offset_y = y;
}

std::optional<std::size_t> CONT_level_index(float value, float base, float interval) {
    if (state.color_num < 1 || is_missing(interval) || interval == 0) return std::nullopt;
    const auto colors = static_cast<float>(state.color_num);
    const float step = std::floor((value - base) / interval + kEdgeTolerance);
    const float index = std::fmod(step, colors);
    if (!std::isfinite(index)) return std::nullopt;
    return static_cast<std::size_t>(index < 0 ? index + colors : index);
}

void CONT_get_fill_attrib(Attribute &record, float value) {
    const auto level = find_level(value);
    if (level)
        record = state.fill[*level];
    else
        record.color = kColorBackground;
}

void CONT_get_fill_attrib_ind(int index, Attribute &record) {
    if (index >= 0 && index < state.color_num)
        record = state.fill[static_cast<std::size_t>(index)];
    else
        record.color = kColorBackground;
}

std::span<const WordRule> CONT_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void CONT_param_decode() {
    for (const std::string &word : RES_getvals("plot_param")) PARAM_take(trimmed(word), kParams, state);
}

float CONT_calc_intrvl(int count, float max, float min) {
    const float raw = (max - min) / static_cast<float>(count == 0 ? 1 : count);
    for (float unit : {1000.0F, 100.0F, 10.0F, 1.0F})
        if (raw >= unit) return std::ceil(raw / unit) * unit;
    for (float parts : {10.0F, 100.0F, 1000.0F, 10000.0F})
        if (raw >= 1 / parts) return std::ceil(raw * parts) / parts;
    return raw == 0 ? 1.0F : raw;
}

void CONT_set_bar(int value) {
    state.bar = value;
}

int CONT_get_bar() {
    return state.bar;
}
