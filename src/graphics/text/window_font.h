#pragma once
/// Fonts of the window's own ("#name" in the font list): the device that has them registers how they are
/// loaded, measured and drawn.

#include <string_view>

struct WindowFonts {
    bool (*load)(std::string_view name) = nullptr;
    int (*width)(std::string_view text) = nullptr; ///< pixels
    int (*ascent)() = nullptr;
    int (*descent)() = nullptr;
    /// (x, y): left end of the base line, pixels.
    void (*draw)(int x, int y, std::string_view text) = nullptr;
};

/// Set when a window opens; an empty record when it closes.
void gset_window_fonts(const WindowFonts &fonts);
