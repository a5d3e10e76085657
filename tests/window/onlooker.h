#pragma once
/// Another client's look at the screen, and the ending of child processes.

#include <array>
#include <string>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <sys/wait.h>
#include <unistd.h>

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
        if (XFetchName(display_, window, &name) == 0) return {};
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
