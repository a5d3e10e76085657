#include "plot/symbols/variables.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "lib/report/misfits.h"
#include "lib/resources/data_files.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    std::vector<PlotVariable> variables;
    std::string model;
};
State state;

constexpr int kMaxDecimals = 6;

std::string_view base_name(std::string_view name) {
    return name.substr(0, name.find('-'));
}

/// The variable of one line; without a name when the line describes none.
PlotVariable parse_line(std::string_view line) {
    PlotVariable variable;
    if (line.starts_with('#')) return variable;
    Scanner scanner(line);
    const auto name = scanner.word();
    const auto decimals = scanner.integer();
    const auto dx = scanner.real(), dy = scanner.real();
    if (scanner.failed()) return variable;
    variable = {.name = std::string(*name),
                .decimals = std::clamp(*decimals, 0, kMaxDecimals),
                .dx = *dx,
                .dy = *dy,
                .attributes = std::string(scanner.word().value_or(""))};
    return variable;
}

std::vector<PlotVariable> read_variables(std::string_view file) {
    std::vector<PlotVariable> known;
    Stream stream = FILE_open_data(file);
    if (!stream) {
        const std::string cause = std::strerror(errno);
        WORD_tell("variable", "Unable to open variable file: " + FILE_find_data(file) + ": " + cause);
    }
    std::string line;
    while (stream.get_line(line))
        if (PlotVariable variable = parse_line(line); !variable.name.empty())
            known.push_back(std::move(variable));
    return known;
}

PlotVariable describe(const std::string &name, const std::vector<PlotVariable> &known) {
    auto found = std::ranges::find(known, name, &PlotVariable::name);
    if (found == known.end()) found = std::ranges::find(known, base_name(name), &PlotVariable::name);
    PlotVariable variable = found == known.end() ? PlotVariable{} : *found;
    variable.name = name;
    return variable;
}

} // namespace

int VAR_setup(std::string_view file) {
    const std::vector<PlotVariable> known = read_variables(file);
    state.variables.clear();
    for (const std::string &entry : RES_getvals("variable"))
        if (const std::string name(trimmed(entry)); !name.empty())
            state.variables.push_back(describe(name, known));
    return VAR_get_num();
}

std::vector<std::string> VAR_known_names(std::string_view file) {
    std::vector<std::string> names;
    for (PlotVariable &variable : read_variables(file)) names.push_back(std::move(variable.name));
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
                               [&](const PlotVariable &v) { return base_name(v.name) == name; })
               ? 1
               : 0;
}

void VAR_set_model_str(std::string_view model) {
    state.model = model;
}

const std::string &VAR_get_model_str() {
    return state.model;
}
