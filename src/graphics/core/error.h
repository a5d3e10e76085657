#pragma once
/// Error reports of the graphics floor.

/// Reports "operation: text" at level kWarn; silent until the kernel has been opened.
void gerr_printf(const char *operation, const char *format, ...) __attribute__((format(printf, 2, 3)));
