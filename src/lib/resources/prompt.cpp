#include "lib/resources/prompt.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <optional>
#include <vector>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kLineLength = 2 * PATH_MAX; ///< room for a path and what stands before it
constexpr std::size_t kWordLength = 19;
constexpr unsigned kListTitle = 2048; ///< level of the title above the resource list

[[noreturn]] void end_without_answer(const char *caller) {
    MESS_print(kError, "%s: End of input, no answer to the prompt\n", caller);
    VYX_exit(kExitSession);
}

/// The next line of standard input; nothing, after a message, when it is longer than any answer. The end of
/// input ends the program: a prompt that nobody can answer would repeat for ever.
std::optional<std::string> read_line(const char *caller) {
    std::fflush(stdout);
    std::string line;
    int c = std::getchar();
    if (c == EOF) end_without_answer(caller);
    for (; c != EOF && c != '\n'; c = std::getchar())
        if (line.size() <= kLineLength) line.push_back(static_cast<char>(c));
    wstrim_string(line);
    if (line.size() <= kLineLength) return line;
    MESS_print(kWarn, "%s: An answer has at most %zu characters\n", caller, kLineLength);
    return std::nullopt;
}

/// Repeats the prompt until `scan`, which takes a Scanner and gives an optional, finds a value in the answer.
template <typename Scan> auto ask(const char *caller, std::string_view prompt, Scan scan) {
    for (;;) {
        MESS_print(kPrint, "%s", std::string(prompt).c_str());
        const std::optional<std::string> line = read_line(caller);
        if (!line || VYX_set_command(*line) == 1) continue;
        Scanner scanner(*line);
        if (const auto value = scan(scanner)) return *value;
    }
}

/// A name that no option has may be a mistyped one.
void tell_unknown(std::string_view name) {
    std::vector<std::string_view> known{"filename", "name", "default"};
    for (const int id : RES_keyed_ids()) known.push_back(RES_descriptor(id)->name);
    if (std::find(known.begin(), known.end(), name) == known.end())
        WORD_unknown("set", name, known, "it is kept as a resource");
}

std::string ask_word(const char *caller, std::string_view prompt, std::size_t width) {
    return ask(caller, prompt, [width](Scanner &scanner) -> std::optional<std::string> {
        if (const auto word = scanner.word(width)) return std::string(*word);
        return std::nullopt;
    });
}

} // namespace

std::string VYX_prompts(std::string_view prompt, int length) {
    return ask_word("VYX_prompts", prompt, static_cast<std::size_t>(std::max(length, 2) - 1));
}

std::string VYX_promptl(std::string_view prompt) {
    return ask_word("VYX_promptl", prompt, kWordLength);
}

float VYX_promptf(std::string_view prompt) {
    return ask("VYX_promptf", prompt, [](Scanner &scanner) { return scanner.real(); });
}

int VYX_promptd(std::string_view prompt) {
    return ask("VYX_promptd", prompt, [](Scanner &scanner) { return scanner.integer(); });
}

int VYX_set_command(std::string_view line) {
    if (begins_with(line, "exit")) VYX_exit(kExitOk);
    if (!begins_with(line, "set")) return 0;
    Scanner scanner(line);
    scanner.word();
    scanner.skip_blanks();
    if (const auto name = scanner.until("= ")) {
        const std::string_view rest = scanner.rest();
        tell_unknown(*name);
        RES_put(*name, rest.substr(std::min(rest.find_first_not_of("= "), rest.size())));
    } else {
        MESS_print(kListTitle, "Set resources\n");
        RES_list();
        MESS_print(kListTitle, "\n");
    }
    return 1;
}
