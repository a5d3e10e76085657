#include "plot/data_file.h"

#include <string>

#include "lib/resource.h"
#include "lib/text.h"

std::string PLT_data_file_path(std::string_view name) {
    std::string directory;
    RES_getval("file_path", directory, ResourceKind::directory);
    return FILE_add_path(directory, name);
}

Stream PLT_open_data_file(std::string_view name) {
    if (FILE_is_stdio(name)) return {};
    return FILE_open(PLT_data_file_path(name), "r");
}

bool PLT_read_line(Stream &stream, std::string &line, std::size_t most) {
    if (!stream.get_line(line)) return false;
    line = std::string(trimmed(std::string_view(line).substr(0, most)));
    return true;
}
