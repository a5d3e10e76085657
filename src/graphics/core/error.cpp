#include "graphics/core/error.h"

#include <cstdarg>

#include "graphics/core/state.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"

void gerr_printf(const char *operation, const char *format, ...) {
    if (!gstate().kernel_open) return;
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = vformat_text(format, arguments);
    va_end(arguments);
    MESS_print(kWarn, "%s: %s", operation, text.c_str());
}
