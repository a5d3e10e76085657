#include "lib/resources/sources.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/missing.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kLongestKey = 49;
constexpr int kAllPositions = 10; ///< position of the descriptor that takes every argument left over

using Arguments = std::span<const char *const>;

bool letter_at(const char *text, std::size_t i) {
    return std::strlen(text) > i && std::isalpha(static_cast<unsigned char>(text[i])) != 0;
}

/// "-" and a letter. "-1.5" is a value.
bool begins_option(const char *argument) {
    return argument[0] == '-' && letter_at(argument, 1);
}

/// A shell makes arguments of the names that a directory holds, whoever gave them: something that is there is
/// no option and no command, also a directory or a broken link.
bool is_there(const char *argument) {
    struct stat info {};
    return lstat(argument, &info) == 0;
}

bool is_option(const char *argument) {
    const bool begins =
        begins_option(argument) || (argument[0] == '-' && argument[1] == '-' && letter_at(argument, 2));
    return begins && !is_there(argument);
}

CommandOption split_option(Arguments arguments, std::size_t i) {
    std::string_view text = arguments[i];
    text.remove_prefix(std::min(text.find_first_not_of('-'), text.size()));
    const std::size_t equals = text.find('=');
    const std::string_view key = text.substr(0, std::min(equals, kLongestKey));
    if (equals != std::string_view::npos) return {key, text.data() + equals + 1, false};
    if (i + 1 < arguments.size() && !begins_option(arguments[i + 1])) return {key, arguments[i + 1], true};
    return {key, nullptr, false};
}

bool is_title_key(std::string_view key) {
    return !key.empty() && std::string_view("name").starts_with(key);
}

bool is_path_key(std::string_view key) {
    return key.starts_with("default") || key.starts_with("df");
}

/// The descriptor that a key means: by abbreviation, by name, by the beginning of a name. Nothing for a key
/// of the first pass, which `skipped` tells.
std::optional<std::size_t> match_option(std::string_view key, const ResourceProgram &program, bool &skipped) {
    const auto &descriptors = program.descriptors;
    const auto first = [&](auto fits) -> std::optional<std::size_t> {
        const auto found = std::find_if(descriptors.begin(), descriptors.end(), fits);
        if (found == descriptors.end()) return std::nullopt;
        return static_cast<std::size_t>(found - descriptors.begin());
    };
    using Row = ResourceDescriptor;
    skipped = false;
    if (const auto index = first([&](const Row &row) { return stricmp(key, row.option) == 0; })) return index;
    if (const auto index = first([&](const Row &row) { return stricmp(key, row.name) == 0; })) return index;
    skipped = is_title_key(key) || is_path_key(key);
    if (skipped) return std::nullopt;
    return first([&](const Row &row) { return begins_with(row.name, key); });
}

bool is_switch(ResourceKind kind) {
    return kind == ResourceKind::switch_ || kind == ResourceKind::batch || kind == ResourceKind::help;
}

/// The option at that place; a switch takes no value from the next argument. `index` and `skipped` as of
/// match_option.
CommandOption option_at(Arguments arguments, std::size_t i, const ResourceProgram &program,
                        std::optional<std::size_t> &index, bool &skipped) {
    CommandOption option = split_option(arguments, i);
    index = match_option(option.key, program, skipped);
    if (index && option.value_is_next && is_switch(program.descriptors[*index].kind)) {
        option.value = nullptr;
        option.value_is_next = false;
    }
    return option;
}

/// An option that no resource has may be a mistyped one, whose value then is a file name.
void tell_unknown(const CommandOption &option, const ResourceProgram &program) {
    std::vector<std::string> options{"-df", "-na"};
    for (const ResourceDescriptor &row : program.descriptors)
        for (const std::string_view name : {row.option, row.name})
            if (!name.empty() && !row.option.empty()) options.push_back("-" + std::string(name));
    const std::vector<std::string_view> known(options.begin(), options.end());
    std::string kept = "it is kept as a resource";
    if (option.value_is_next)
        kept += std::string(" and took the next argument, \"") + option.value + "\", as its value";
    WORD_unknown("Options", "-" + std::string(option.key), known, kept);
}

/// Returns the number of arguments used, 1 or 2.
std::size_t read_option(Arguments arguments, std::size_t i, const ResourceProgram &program) {
    std::optional<std::size_t> index;
    bool skipped = false;
    const CommandOption option = option_at(arguments, i, program, index, skipped);
    if (index) {
        RES_store(program, *index, option.value);
    } else if (!skipped) {
        tell_unknown(option, program);
        RES_new(kMissing, option.key, option.value, ResourceKind::text);
    }
    return option.value_is_next ? 2 : 1;
}

/// How a file is called whose name could be taken for something else.
std::string as_file(std::string name) {
    const bool is_sign = name.starts_with('|') || (name.starts_with('-') && name != "-");
    if (is_sign && is_there(name.c_str())) {
        if (begins_option(name.c_str()))
            WORD_tell("Options", '"' + name + "\" is the file of that name here");
        name.insert(0, "./");
    }
    // The list of names holds one a line: a second line would be another name, or a command.
    if (name.starts_with('|') || name.find('\n') == name.npos) return name;
    fill_string(name, '\n', '?');
    WORD_tell("Options", "No file is read whose name has a line break: " + name);
    return name;
}

void read_positional(const char *text, int position, bool &list_begun, const ResourceProgram &program) {
    const std::string name = as_file(text);
    const char *argument = name.c_str();
    const auto &descriptors = program.descriptors;
    const auto at = [&](int wanted) {
        return std::find_if(descriptors.begin(), descriptors.end(),
                            [wanted](const ResourceDescriptor &row) { return row.position == wanted; });
    };
    auto found = at(position);
    if (found == descriptors.end()) found = at(kAllPositions);
    if (found == descriptors.end()) return;
    const auto index = static_cast<std::size_t>(found - descriptors.begin());
    if (found->position == kAllPositions && list_begun)
        RES_append(static_cast<int>(index), found->name, argument, found->kind);
    else
        RES_store(program, index, argument);
    list_begun = list_begun || found->position == kAllPositions;
}

/// Where the "--" stands that is not the value of an option; the number of arguments when there is none.
std::size_t end_of_options(Arguments arguments, const ResourceProgram &program) {
    std::size_t i = 0;
    while (i < arguments.size() && std::string_view(arguments[i]) != "--") {
        std::optional<std::size_t> index;
        bool skipped = false;
        const bool two =
            is_option(arguments[i]) && option_at(arguments, i, program, index, skipped).value_is_next;
        i += two ? 2 : 1;
    }
    return std::min(i, arguments.size());
}

} // namespace

void RES_scan_command(Arguments arguments, ResourceProgram &program) {
    const std::size_t end = end_of_options(arguments, program);
    for (std::size_t i = 0; i < end; ++i) {
        if (!begins_option(arguments[i]) || is_there(arguments[i])) continue;
        const CommandOption option = split_option(arguments, i);
        if (is_title_key(option.key)) {
            RES_new(kMissing, "name", option.value, ResourceKind::text);
            program.title = option.value != nullptr ? option.value : "";
        } else if (is_path_key(option.key)) {
            RES_new(kMissing, "default", option.value, ResourceKind::text);
            program.path_is_option = true;
        }
    }
}

void RES_read_command(Arguments arguments, const ResourceProgram &program) {
    int position = 0;
    bool list_begun = false;
    const std::size_t end = end_of_options(arguments, program);
    for (std::size_t i = 0; i < arguments.size();) {
        const char *argument = arguments[i];
        if (i < end && is_option(argument)) {
            i += read_option(arguments, i, program);
            continue;
        }
        ++i;
        const bool ends_options = i == end + 1;
        if (std::string_view(argument) == "--" && (ends_options || !is_there(argument))) continue;
        read_positional(argument, ++position, list_begun, program);
    }
}
