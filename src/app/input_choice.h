#pragma once
/// The input "auto": the kind of the file that the file selection finds.

#include "app/input_type.h"

/// Chooses the file, tells from its first bytes what it is, and sets input type and naming convention for it;
/// the file is the current one then. Where no file can be opened, or none is of a known kind, the program
/// ends with kExitNoFile. Returns the input type.
[[nodiscard]] InputType choose_input();
