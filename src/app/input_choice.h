#pragma once
/// The input "auto": the kind of the file that the file selection finds.

#include "app/input_type.h"

/// Chooses the file, tells from its first bytes what it is, and sets input type and naming convention for it;
/// the file is the current one then. Where no file can be opened, or none is of a known kind, the program
/// ends with kExitNoFile. Returns the input type.
[[nodiscard]] InputType choose_input();
/// Chooses the input file as the described default does, with its prompt, and the kind of input that a file
/// given by its name is; sets the input-type flag. A file of converted summaries, or one that a naming
/// convention finds, is kInputRadar. A named file that is nothing known ends the program with kExitNoFile
/// after messages.
InputType choose_for_file(const char *prompt);
