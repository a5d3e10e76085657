#pragma once
/// What the kernel asks of the window room, which stands above it and registers itself here. Without it
/// nothing is done, as on devices that have no window.

struct WindowHooks {
    int (*hold)(int flag) = nullptr;   ///< shows the picture until the user ends it
    void (*init_loop)() = nullptr;     ///< forgets every frame
    void (*opened)() = nullptr;        ///< a window has just opened: drawing follows
    void (*delete_frames)() = nullptr; ///< frees the frames' pictures, before the display closes
};
void gset_window_hooks(const WindowHooks &hooks);
const WindowHooks &gwindow_hooks();
