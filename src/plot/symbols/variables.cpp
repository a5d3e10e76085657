#include "plot/symbols/variables.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/resources/prompt.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    std::vector<PlotVariable> known; ///< what the variable file describes
    std::vector<PlotVariable> variables;
    std::vector<std::size_t> menu; ///< places in `known`
    std::string model;
};
State state;

constexpr int kMaxDecimals = 6;
constexpr std::string_view kNothing = "-"; ///< in place of attributes or models

struct KindName {
    std::string_view name;
    VariableKind kind;
};
constexpr std::array kKinds{KindName{"text", VariableKind::text}, KindName{"vector", VariableKind::vector},
                            KindName{"barb", VariableKind::barb}, KindName{"none", VariableKind::none}};

std::string field_of(std::optional<std::string_view> word) {
    return !word || *word == kNothing ? std::string() : std::string(*word);
}

/// What stands behind the attributes. False when it cannot be read.
bool parse_menu_fields(Scanner &scanner, PlotVariable &variable) {
    scanner.skip_blanks();
    if (scanner.failed() || scanner.at_end()) return true;
    const auto code = scanner.integer();
    const auto kind = scanner.word();
    const auto models = scanner.word();
    if (scanner.failed()) return false;
    const auto found = std::ranges::find(kKinds, *kind, &KindName::name);
    if (found == kKinds.end()) return false;
    variable.code = *code;
    variable.kind = found->kind;
    variable.models = field_of(models);
    variable.description = trimmed(scanner.rest());
    return true;
}

/// The variable of one line; nothing when it cannot be read.
std::optional<PlotVariable> parse_line(std::string_view line) {
    Scanner scanner(line);
    const auto name = scanner.word();
    const auto decimals = scanner.integer();
    const auto dx = scanner.real(), dy = scanner.real();
    if (scanner.failed()) return std::nullopt;
    PlotVariable variable;
    variable.name = std::string(*name);
    variable.decimals = std::clamp(*decimals, 0, kMaxDecimals);
    variable.dx = *dx;
    variable.dy = *dy;
    scanner.skip_blanks();
    if (scanner.at_end()) return variable;
    variable.attributes = field_of(scanner.word());
    if (!parse_menu_fields(scanner, variable)) return std::nullopt;
    return variable;
}

/// Nothing, after a message, when there is no such file.
std::optional<std::vector<PlotVariable>> read_variables(std::string_view file) {
    Stream stream = FILE_open_data(file);
    if (!stream) {
        const std::string cause = std::strerror(errno);
        WORD_tell("variable", "Unable to open variable file: " + FILE_find_data(file) + ": " + cause);
        return std::nullopt;
    }
    std::vector<PlotVariable> known;
    std::string line;
    while (stream.get_line(line)) {
        const std::string_view text = trimmed(line);
        if (text.empty() || text.starts_with('#')) continue;
        if (auto variable = parse_line(text))
            known.push_back(std::move(*variable));
        else
            WORD_tell("variable",
                      FILE_find_data(file) + ": \"" + std::string(text) + "\" describes no variable");
    }
    return known;
}

PlotVariable describe(const std::string &name) {
    auto found = std::ranges::find(state.known, name, &PlotVariable::name);
    if (found == state.known.end())
        found = std::ranges::find(state.known, VAR_base_name(name), &PlotVariable::name);
    PlotVariable variable = found == state.known.end() ? PlotVariable{} : *found;
    variable.name = name;
    return variable;
}

bool is_of_model(const PlotVariable &variable) {
    if (variable.models.empty() || state.model.empty()) return true;
    const std::vector<std::string> models = parse_string(variable.models, ':');
    return std::ranges::find(models, state.model) != models.end();
}

} // namespace

std::string_view VAR_base_name(std::string_view name) {
    return name.substr(0, name.find('-'));
}

int VAR_open_file(std::string_view file) {
    auto known = read_variables(file);
    const bool read = known.has_value();
    state.known = std::move(known).value_or(std::vector<PlotVariable>());
    state.menu.clear();
    return read ? 1 : 0;
}

int VAR_setup(std::span<const std::string> names) {
    state.variables.clear();
    for (const std::string &entry : names)
        if (const std::string name(trimmed(entry)); !name.empty()) state.variables.push_back(describe(name));
    return VAR_get_num();
}

int VAR_setup(std::string_view file) {
    VAR_open_file(file); // told where it fails
    return VAR_setup(RES_getvals("variable"));
}

std::vector<std::string> VAR_known_names(std::string_view file) {
    std::vector<std::string> names;
    if (auto known = read_variables(file))
        for (PlotVariable &variable : *known) names.push_back(std::move(variable.name));
    return names;
}

int VAR_get_num() {
    return static_cast<int>(state.variables.size());
}

const std::vector<PlotVariable> &VAR_get_vars() {
    return state.variables;
}

const PlotVariable &VAR_get(int index) {
    return state.variables.at(static_cast<std::size_t>(index));
}

const std::string &VAR_get_name(int index) {
    return VAR_get(index).name;
}

int VAR_has(std::string_view name) {
    return std::ranges::any_of(state.variables,
                               [&](const PlotVariable &v) { return VAR_base_name(v.name) == name; })
               ? 1
               : 0;
}

bool VAR_is_type_PLOT(const PlotVariable &variable) {
    return variable.kind != VariableKind::none;
}

bool VAR_is_LABEL(const PlotVariable &variable) {
    return !variable.description.empty();
}

std::string VAR_make_var_form_datatype(const PlotVariable &variable) {
    return variable.description.empty() ? variable.name : variable.description;
}

int VAR_read_menu() {
    state.menu.clear();
    for (std::size_t i = 0; i < state.known.size(); ++i)
        if (!state.known[i].description.empty() && is_of_model(state.known[i])) state.menu.push_back(i);
    return static_cast<int>(state.menu.size());
}

namespace {

void show_menu(std::string_view title) {
    MESS_print(kPrint, "%s", std::string(title).c_str());
    int number = 0;
    for (const std::size_t i : state.menu)
        MESS_print(kPrint, "%3d - %-36s (%s)\n", ++number, state.known[i].description.c_str(),
                   state.known[i].name.c_str());
    MESS_print(kPrint, "%3d - %s\n", 0, "Return to previous menu");
}

/// The name of an entry by its number; any other word as it stands.
std::string name_of(std::string_view word) {
    if (word.empty() || !std::ranges::all_of(word, is_digit)) return std::string(word);
    const auto number = static_cast<std::size_t>(Scanner(word).integer().value_or(0));
    return number >= 1 && number <= state.menu.size() ? state.known[state.menu[number - 1]].name
                                                      : std::string(word);
}

/// The variables of an answer; nothing, after a message, when one is not known.
std::optional<std::vector<std::string>> names_of(std::string_view answer) {
    std::vector<std::string> names;
    for (const std::string &word : parse_string(answer, ',')) {
        std::string name = name_of(trimmed(word));
        if (name.empty()) continue;
        if (std::ranges::find(state.known, VAR_base_name(name), &PlotVariable::name) == state.known.end()) {
            MESS_print(kWarn, "Invalid variable: %s\n", name.c_str());
            return std::nullopt;
        }
        names.push_back(std::move(name));
    }
    if (names.empty()) return std::nullopt;
    return names;
}

} // namespace

int VAR_menu(std::string_view title, std::string_view prompt, std::vector<std::string> &names) {
    constexpr int kAnswersTaken = 5, kAnswerLength = 160;
    for (int answers = 0; answers < kAnswersTaken; ++answers) {
        show_menu(title);
        const std::string answer = VYX_prompts(prompt, kAnswerLength);
        if (stricmp(answer, "quit") == 0) return kMenuLeave;
        if (stricmp(answer, "back") == 0 || answer == "0") return kMenuBack;
        if (stricmp(answer, "none") == 0) return kMissing;
        if (auto chosen = names_of(answer)) {
            names = std::move(*chosen);
            return static_cast<int>(names.size());
        }
    }
    return kMenuLeave;
}

void VAR_set_model_str(std::string_view model) {
    state.model = model;
}

const std::string &VAR_get_model_str() {
    return state.model;
}
