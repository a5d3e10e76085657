#include "plot/session/status_text.h"

#include <algorithm>
#include <cstdarg>
#include <string>

#include "graphics/kernel/kernel.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kMessageLength = 263;
constexpr int kStatusMessage = 1;

} // namespace

int PLT_mess(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = vformat_text(format, arguments);
    va_end(arguments);
    text.resize(std::min(text.size(), kMessageLength));
    return gmessage(kStatusMessage, text);
}
