#pragma once
/// Fonts of the window's own ("#name" in the font list): the device that has them registers how they are
/// loaded, measured and drawn.

#include <string>
#include <string_view>

struct WindowFonts {
    /// The font list that the window's own resources name; empty when none.
    std::string (*list)() = nullptr;
    bool (*load)(std::string_view name) = nullptr;
    int (*width)(std::string_view text) = nullptr; ///< pixels
    int (*ascent)() = nullptr;
    int (*descent)() = nullptr;
    /// (x, y): left end of the base line, pixels.
    void (*draw)(int x, int y, std::string_view text) = nullptr;
};

/// Set when a window opens; an empty record when it closes.
void gset_window_fonts(const WindowFonts &fonts);
