#include "graphics/text/font.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/text/current_font.h"
#include "graphics/text/window_font.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr std::string_view kListFile = "vyx.fnl";
constexpr std::string_view kFallbackFont = "modern.fnt";
constexpr std::size_t kMaxFonts = 40, kMaxNamedListFonts = 10;
constexpr std::size_t kMaxName = 9;
/// Several times the longest text of a font that fits its table.
constexpr std::size_t kMaxFontFileBytes = std::size_t{1} << 20;

struct FontEntry {
    std::string name, file;
};

struct State {
    std::vector<FontEntry> list;
    /// By file name, what was read since the list was: labels change fonts often.
    std::map<std::string, StrokeFont, std::less<>> parsed;
    StrokeFont none;                           ///< draws nothing
    const StrokeFont *loaded = &none;          ///< `none` or one of `parsed`
    std::set<std::string, std::less<>> failed; ///< names that could not be loaded since the list was read
    std::string default_name;
    WindowFonts window_fonts;
    bool window_font = false; ///< the loaded font is the window's
};

State state;

void tell_not_taken(std::string_view name, std::size_t most) {
    WORD_tell("font_list",
              format_text("Font %s is not taken, there is room for %zu", std::string(name).c_str(), most));
}

void add_font(std::string_view name, std::string_view file) {
    if (name.empty() || file.empty()) return;
    if (state.list.size() >= kMaxFonts) {
        tell_not_taken(name, kMaxFonts);
        return;
    }
    if (name.size() > kMaxName && name != file)
        WORD_tell("font_list", format_text("Of the name %s only the first %zu characters count",
                                           std::string(name).c_str(), kMaxName));
    state.list.push_back({std::string(name.substr(0, kMaxName)), std::string(file)});
}

/// One line of "vyx.fnl": a name, and the rest as the file's name.
void add_line(std::string_view line) {
    Scanner scan(line);
    if (const auto name = scan.word()) add_font(*name, trimmed(scan.rest()));
}

/// Words of a named list file, a name and a file each.
void add_words(Stream &stream) {
    std::string line, text;
    while (stream.get_line(line) && text.size() < kMaxFontFileBytes) text += line + '\n';
    Scanner scan(text);
    while (const auto name = scan.word()) {
        const auto file = scan.word();
        if (!file) return;
        if (state.list.size() >= kMaxNamedListFonts) {
            tell_not_taken(*name, kMaxNamedListFonts);
            return;
        }
        add_font(*name, *file);
    }
}

void read_named_list(std::string_view name) {
    Stream stream = FILE_open_data(name);
    if (!stream) {
        const int fault = errno;
        MESS_print(kWarn, "gsetup_fonts: unable to load font list file: %s\n", std::string(name).c_str());
        MESS_print_fault(kWarn, "gsetup_fonts", name, fault);
        return;
    }
    add_words(stream);
}

void read_default_list() {
    Stream stream = FILE_open_data(kListFile);
    std::string line;
    while (stream && state.list.size() < kMaxFonts && stream.get_line(line)) add_line(line);
}

void read_list() {
    constexpr std::string_view file_mark = "fi:";
    state.list.clear();
    const char *resource = RES_get("font_list");
    const auto window_list = state.window_fonts.list;
    std::string list = resource != nullptr ? resource : "";
    if (list.empty() && window_list != nullptr) list = window_list();
    const std::string_view named = list;
    if (named.empty()) {
        read_default_list();
    } else if (begins_with(named, file_mark)) {
        read_named_list(named.substr(file_mark.size()));
    } else {
        for (const std::string &name : parse_string(named, ',')) add_font(trimmed(name), trimmed(name));
    }
}

std::optional<StrokeFont> load_file(std::string_view name) {
    Stream stream = FILE_open_data(name);
    if (!stream) {
        MESS_print_fault(kWarn, "read_font", name, errno);
        return std::nullopt;
    }
    const std::vector<std::byte> bytes = stream.read_all(kMaxFontFileBytes);
    std::string content(bytes.size(), '\0');
    std::ranges::transform(bytes, content.begin(), [](std::byte b) { return static_cast<char>(b); });
    return parse_stroke_font(content);
}

/// Tells of each name once, however many texts ask for it.
bool load_once(std::string_view name) {
    if (state.failed.contains(name)) return false;
    if (read_font(name) == 0) return true;
    state.failed.emplace(name);
    return false;
}

/// A font that cannot be had is replaced by one that can: texts are drawn all the same.
int load_or_replace(std::string_view name) {
    if (load_once(name) || load_once(kFallbackFont)) return 0;
    const auto loads = [](const FontEntry &entry) { return load_once(entry.file); };
    return std::ranges::any_of(state.list, loads) ? 0 : -1;
}

} // namespace

const StrokeFont &current_stroke_font() {
    return *state.loaded;
}

bool has_window_font() {
    return state.window_font;
}

const WindowFonts &window_fonts() {
    return state.window_fonts;
}

void gset_window_fonts(const WindowFonts &fonts) {
    state.window_fonts = fonts;
    if (!state.window_font) return;
    state.window_font = false;
}

int read_font(std::string_view name) {
    constexpr char window_font_mark = '#';
    state.loaded = &state.none;
    state.window_font = false;
    if (name.starts_with(window_font_mark)) {
        const auto load = state.window_fonts.load;
        if (load != nullptr && load(name.substr(1))) {
            state.window_font = true;
            return 0;
        }
        MESS_print(kWarn, "read_font: unable to load font: %s\n", std::string(name.substr(1)).c_str());
        return -1;
    }
    if (const auto known = state.parsed.find(name); known != state.parsed.end()) {
        state.loaded = &known->second;
        return 0;
    }
    auto font = load_file(name);
    if (!font) {
        MESS_print(kWarn, "read_font: unable to load font file: %s\n", std::string(name).c_str());
        return -1;
    }
    state.loaded = &state.parsed.emplace(name, std::move(*font)).first->second;
    return 0;
}

void gsetup_fonts() {
    state.loaded = &state.none;
    state.parsed.clear();
    state.failed.clear();
    read_list();
    const auto wanted = static_cast<std::size_t>(std::max(gstate().text.font, 1));
    if (state.list.empty())
        load_or_replace(kFallbackFont);
    else
        load_or_replace(state.list[wanted <= state.list.size() ? wanted - 1 : 0].file);
}

int gload_font(int font) {
    if (state.list.empty()) return 0;
    if (font < 1 || static_cast<std::size_t>(font) > state.list.size()) {
        gerr_printf("gset_fontprec", "invalid font id: %d\n", font);
        return -1;
    }
    return load_or_replace(state.list[static_cast<std::size_t>(font) - 1].file);
}

int gget_font_index(std::string_view name) {
    if (!name.empty() && std::isdigit(static_cast<unsigned char>(name.front())))
        return Scanner(name).integer().value_or(1);
    const std::string_view kept = name.substr(0, kMaxName);
    const auto found = std::ranges::find_if(
        state.list, [&](const FontEntry &entry) { return stricmp(entry.name, kept) == 0; });
    return found == state.list.end() ? 1 : static_cast<int>(found - state.list.begin()) + 1;
}

std::vector<std::string_view> gget_font_names() {
    std::vector<std::string_view> names;
    for (const FontEntry &entry : state.list) names.emplace_back(entry.name);
    return names;
}

const std::string &gget_def_font() {
    return state.default_name;
}

void GPH_set_def_font(std::string_view name) {
    state.default_name = name;
}
