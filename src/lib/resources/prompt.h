#pragma once
/// Questions at the terminal. Every prompt is repeated until the answer fits; "exit" ends the program with
/// status 0, a "set" command is carried out and the prompt repeated, the end of input ends the program with
/// kExitSession and a message.

#include <string>
#include <string_view>

/// One word of at most `length` - 1 characters (at least 1).
std::string VYX_prompts(std::string_view prompt, int length);
/// One word of at most 19 characters.
std::string VYX_promptl(std::string_view prompt);
float VYX_promptf(std::string_view prompt);
int VYX_promptd(std::string_view prompt);
/// 1 when the line was a "set" command, 0 otherwise; a line beginning with "exit" ends the program.
[[nodiscard]] int VYX_set_command(std::string_view line);
