/// What the window is called and whose it is, for window managers old and new.

#include <algorithm>
#include <array>
#include <climits>
#include <unistd.h>

#include <X11/Xatom.h>

#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"

namespace {

constexpr unsigned kFirstOfTwo = 0xC2, kFirstOfThree = 0xE0, kFirstOfFour = 0xF0, kPastFirst = 0xF5;
constexpr unsigned kContinued = 0x80, kContinuedMask = 0xC0, kContinuedBits = 6, kContinuedValue = 0x3F;
constexpr unsigned kAscii = 0x80, kLatin = 0x100;

unsigned byte_of(char c) {
    return static_cast<unsigned char>(c);
}

bool continues(char c) {
    return (byte_of(c) & kContinuedMask) == kContinued;
}

/// Bytes of the UTF-8 character that begins the text; 0 when none does.
std::size_t character_length(std::string_view text) {
    const unsigned first = byte_of(text.front());
    if (first < kAscii) return 1;
    if (first < kFirstOfTwo || first >= kPastFirst) return 0;
    const std::size_t length = first < kFirstOfThree ? 2 : first < kFirstOfFour ? 3 : 4;
    const std::string_view rest = text.substr(1, length - 1);
    return rest.size() == length - 1 && std::ranges::all_of(rest, continues) ? length : 0;
}

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

/// Other bytes than UTF-8 are taken for Latin-1, which old titles and resource files are written in.
std::string to_utf8(std::string_view text) {
    if (is_utf8(text)) return std::string(text);
    std::string result;
    for (const char c : text) {
        if (byte_of(c) < kAscii) {
            result += c;
            continue;
        }
        result += static_cast<char>(kFirstOfTwo + (byte_of(c) >= kContinuedMask ? 1 : 0));
        result += static_cast<char>(kContinued | (byte_of(c) & kContinuedValue));
    }
    return result;
}

/// Characters without a place in Latin-1 become question marks.
std::string to_latin(std::string_view utf8) {
    std::string result;
    while (!utf8.empty()) {
        const std::size_t length = character_length(utf8);
        const unsigned first = byte_of(utf8.front());
        unsigned code = length == 1 ? first : kLatin;
        if (length == 2)
            code =
                ((first & (kContinuedValue >> 1)) << kContinuedBits) | (byte_of(utf8[1]) & kContinuedValue);
        result += code < kLatin ? static_cast<char>(code) : '?';
        utf8.remove_prefix(length);
    }
    return result;
}

std::string shown(std::string_view text) {
    std::string result(text);
    std::ranges::replace(result, '_', ' ');
    return result;
}

void put_property(const X11Session &s, Atom name, Atom type, int format, const void *data,
                  std::size_t count) {
    XChangeProperty(s.display(), s.window.get(), name, type, format, PropModeReplace,
                    static_cast<const unsigned char *>(data), static_cast<int>(count));
}

void name_window(const X11Session &s, std::string_view text) {
    const std::string unicode = to_utf8(text), latin = to_latin(unicode);
    XStoreName(s.display(), s.window.get(), latin.c_str());
    XSetIconName(s.display(), s.window.get(), latin.c_str());
    for (const XAtom name : {XAtom::net_name, XAtom::net_icon_name})
        put_property(s, s.atom(name), s.atom(XAtom::utf8_string), 8, unicode.data(), unicode.size());
    XFlush(s.display());
}

} // namespace

std::string x11_title(std::string_view text) {
    std::string title = to_utf8(text);
    std::size_t end = 0;
    for (std::size_t count = 0; count < kMaxTitle && end < title.size(); ++count)
        end += character_length(std::string_view(title).substr(end));
    title.resize(end);
    return title;
}

void x11_set_owner(const X11Session &s) {
    const long id = getpid(); // 32 bits are longs to the library
    put_property(s, s.atom(XAtom::net_pid), XA_CARDINAL, 32, &id, 1);
    std::array<char, HOST_NAME_MAX + 1> machine{};
    if (gethostname(machine.data(), HOST_NAME_MAX) != 0)
        return; // the id means nothing without, and is not looked at
    const std::string_view name = machine.data();
    put_property(s, XA_WM_CLIENT_MACHINE, XA_STRING, 8, name.data(), name.size());
}

void gx11_set_owner() {
    if (const X11Session *const s = x11_session()) x11_set_owner(*s);
}

// The bit kNoFrameAdded says that the last frame could not be added.
void gx11_tell_frames(unsigned count, bool added) {
    const X11Session *const s = x11_session();
    if (s == nullptr || !s->window) return;
    const long told = static_cast<long>(count) | (added ? 0 : kNoFrameAdded);
    put_property(*s, s->atom(XAtom::frames), XA_CARDINAL, 32, &told, 1);
    XFlush(s->display());
}

void gx11_set_title(std::string_view title) {
    X11Session *const s = x11_session();
    if (s == nullptr || !s->window) return;
    s->title = x11_title(title);
    name_window(*s, shown(s->title));
}

void gx11_set_title_extra(std::string_view extra) {
    const X11Session *const s = x11_session();
    if (s == nullptr || !s->window) return;
    name_window(*s, shown(s->title) + (extra.empty() ? "" : " " + to_utf8(extra)));
}

std::string gx11_title_extra() {
    const X11Session *const s = x11_session();
    char *name = nullptr;
    if (s == nullptr || !s->window || XFetchName(s->display(), s->window.get(), &name) == 0 ||
        name == nullptr)
        return {};
    const std::string present(name);
    XFree(name);
    const std::size_t behind = to_latin(s->title).size() + 1;
    return present.size() > behind ? to_utf8(std::string_view(present).substr(behind)) : std::string();
}
