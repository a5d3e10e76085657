#pragma once
/// Another client's look at the screen, and the ending of child processes.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <sys/wait.h>
#include <unistd.h>

/// Colours of a window's pixels, 0xRRGGBB, rows from the top.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint32_t> colors;

    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return colors.at(static_cast<std::size_t>(y * width + x));
    }
    friend bool operator==(const Picture &, const Picture &) = default;
};

class Onlooker {
public:
    explicit Onlooker(const std::string &name) : display_(XOpenDisplay(name.c_str())) {}
    Onlooker(const Onlooker &) = delete;
    Onlooker &operator=(const Onlooker &) = delete;
    ~Onlooker() { XCloseDisplay(display_); }

    /// The only window of a program on the screen.
    [[nodiscard]] Window window() const {
        Window root = 0, parent = 0, *children = nullptr, found = 0;
        unsigned count = 0;
        XQueryTree(display_, XDefaultRootWindow(display_), &root, &parent, &children, &count);
        for (unsigned i = 0; i < count; ++i) {
            if (!title(children[i]).empty()) found = children[i];
        }
        XFree(children);
        return found;
    }
    [[nodiscard]] std::string title(Window window) const {
        char *name = nullptr;
        if (window == 0 || XFetchName(display_, window, &name) == 0) return {};
        std::string result(name);
        XFree(name);
        return result;
    }
    [[nodiscard]] unsigned long pixel(int x, int y) const {
        XImage *const image = XGetImage(display_, window(), x, y, 1, 1, AllPlanes, ZPixmap);
        const unsigned long result = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        return result;
    }
    /// Empty while the window is not on the screen.
    [[nodiscard]] Picture picture() const {
        const Window of = window();
        XWindowAttributes look{};
        if (of == 0 || XGetWindowAttributes(display_, of, &look) == 0 || look.map_state != IsViewable)
            return {};
        Picture result{look.width, look.height, {}};
        XImage *const image = XGetImage(display_, of, 0, 0, static_cast<unsigned>(look.width),
                                        static_cast<unsigned>(look.height), AllPlanes, ZPixmap);
        if (image == nullptr) return {};
        const std::vector<std::uint32_t> cells = color_cells(look);
        for (int y = 0; y < look.height; ++y) {
            for (int x = 0; x < look.width; ++x) {
                const auto pixel = static_cast<std::uint32_t>(XGetPixel(image, x, y));
                result.colors.push_back(cells.empty() ? pixel & 0xFFFFFFU : cells.at(pixel));
            }
        }
        XDestroyImage(image);
        return result;
    }
    /// NormalState, IconicState; -1 when the window does not say.
    [[nodiscard]] int initial_state() const {
        XWMHints *const hints = XGetWMHints(display_, window());
        if (hints == nullptr) return -1;
        const int state = (hints->flags & StateHint) != 0 ? hints->initial_state : -1;
        XFree(hints);
        return state;
    }
    void unmap() const {
        XUnmapWindow(display_, window());
        XSync(display_, False);
    }
    void map() const {
        XMapWindow(display_, window());
        XSync(display_, False);
    }
    /// Lays a window over the upper left of the screen and takes it away again.
    void cover_and_uncover(unsigned width, unsigned height) const {
        const Window cover =
            XCreateSimpleWindow(display_, XDefaultRootWindow(display_), 0, 0, width, height, 0, 0, 0xFF00FF);
        XMapRaised(display_, cover);
        XSync(display_, False);
        XDestroyWindow(display_, cover);
        XSync(display_, False);
    }
    void destroy() const {
        XDestroyWindow(display_, window());
        XSync(display_, False);
    }
    void move_to(int x, int y) const {
        XMoveWindow(display_, window(), x, y);
        XSync(display_, False);
    }
    void resize(unsigned width, unsigned height) const {
        XResizeWindow(display_, window(), width, height);
        XSync(display_, False);
    }
    /// Wipes the window and asks for its contents again.
    void expose() const {
        XClearArea(display_, window(), 0, 0, 0, 0, True);
        XSync(display_, False);
    }
    /// A message of a cooperating program.
    void send(char first_byte) const {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window();
        event.xclient.message_type = XInternAtom(display_, "VYX_MESSAGE", False);
        event.xclient.format = 8;
        event.xclient.data.b[0] = first_byte;
        XSendEvent(display_, window(), False, NoEventMask, &event);
        XSync(display_, False);
    }
    /// What a window manager's close button sends.
    void ask_to_close() const {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window();
        event.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(XInternAtom(display_, "WM_DELETE_WINDOW", False));
        XSendEvent(display_, window(), False, NoEventMask, &event);
        XSync(display_, False);
    }

private:
    /// What the pixel values of a palette window stand for; empty for one whose pixels are colours.
    [[nodiscard]] std::vector<std::uint32_t> color_cells(const XWindowAttributes &look) const {
        if (look.depth > 8) return {};
        std::vector<XColor> cells(std::size_t{1} << look.depth);
        for (std::size_t i = 0; i < cells.size(); ++i) cells[i].pixel = i;
        XQueryColors(display_, look.colormap, cells.data(), static_cast<int>(cells.size()));
        std::vector<std::uint32_t> result;
        for (const XColor &cell : cells)
            result.push_back((cell.red & 0xFF00U) << 8 | (cell.green & 0xFF00U) | cell.blue >> 8U);
        return result;
    }
    Display *display_;
};

/// Runs `action` in a child that has to end within 20 seconds: its exit status, or minus the signal that
/// ended it. What it wrote is appended to `output`.
template <class Action> int exit_status(Action action, std::string &output) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        alarm(20);
        action();
        std::exit(0);
    }
    close(ends[1]);
    std::array<char, 512> part{};
    for (ssize_t count = 0; (count = read(ends[0], part.data(), part.size())) > 0;)
        output.append(part.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
