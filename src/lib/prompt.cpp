#include "lib/prompt.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "lib/message.h"
#include "lib/process.h"
#include "lib/resource.h"
#include "lib/scan.h"
#include "lib/text.h"

namespace {

constexpr std::size_t kLineLength = 79;
constexpr std::size_t kWordLength = 19;
constexpr unsigned kListTitle = 2048; ///< level of the title above the resource list

/// The next line of standard input, cut at kLineLength characters. The end of input ends the program: a
/// prompt that nobody can answer would repeat for ever.
std::string read_line(const char *caller) {
    std::fflush(stdout);
    std::string line;
    int c = std::getchar();
    if (c == EOF) {
        MESS_print(kError, "%s: End of input, no answer to the prompt\n", caller);
        VYX_exit(kExitSession);
    }
    for (; c != EOF && c != '\n'; c = std::getchar())
        if (line.size() < kLineLength) line.push_back(static_cast<char>(c));
    wstrim_string(line);
    return line;
}

/// Repeats the prompt until `scan`, which takes a Scanner and gives an optional, finds a value in the answer.
template <typename Scan> auto ask(const char *caller, std::string_view prompt, Scan scan) {
    for (;;) {
        MESS_print(kPrint, "%s", std::string(prompt).c_str());
        const std::string line = read_line(caller);
        if (VYX_set_command(line) == 1) continue;
        Scanner scanner(line);
        if (const auto value = scan(scanner)) return *value;
    }
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
        RES_put(*name, rest.substr(std::min(rest.find_first_not_of("= "), rest.size())));
    } else {
        MESS_print(kListTitle, "Set resources\n");
        RES_list();
        MESS_print(kListTitle, "\n");
    }
    return 1;
}
