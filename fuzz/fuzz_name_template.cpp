/// File names: a template makes a name of a date, a name gives its date back. The input is lines: template,
/// set time, keys, name.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/time/fixed_time.h"

namespace {

std::string take_line(std::string &text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string line = text.substr(0, end);
    text.erase(0, end + 1);
    return line;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    MESS_set(0, 0);
    std::string text(data, data + size);
    const std::string name_template = take_line(text);
    FILE_set_hour_text(take_line(text));
    FILE_set_key('s', take_line(text));
    FILE_set_type(static_cast<int>(size % 2));
    (void)FILE_set_name("@" + name_template);

    std::string name;
    const DateRecord date{2003, 7, 4, 185, 5, 18, 30, 0};
    FILE_set_date(&date, name);
    FILE_search_pattern();
    if (text.starts_with("exit")) return 0; // ends the program, as it should
    FILE_set_file(text, name);
    FILE_set_date(nullptr, name);
    FILE_set_current(text.c_str(), name);
    return 0;
}
