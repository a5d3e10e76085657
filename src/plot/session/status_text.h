#pragma once
/// What the program is at, for its user.

/// Shows a status text on the workstation.
int PLT_mess(const char *format, ...) __attribute__((format(printf, 1, 2)));
