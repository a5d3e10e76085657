#pragma once

/// The whole program: resources, help, input type, one driver. Returns the exit status.
[[nodiscard]] int run_program(int argc, const char *const argv[]);
