#include "plot/colour/data_lines.h"

#include "lib/text/strings.h"

bool PLT_read_line(TextLines &lines, std::string &line) {
    if (!lines.next(line)) return false;
    line = std::string(trimmed(line));
    return true;
}
