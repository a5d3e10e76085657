#include "lib/resources/data_files.h"

#include <cerrno>
#include <utility>

#include "lib/resources/database.h"

namespace {

struct State {
    std::vector<std::string> directories;
};
State state;

} // namespace

std::string FILE_find_data(std::string_view name) {
    std::string own;
    (void)RES_getval("file_path", own, ResourceKind::directory);
    std::string path = FILE_add_path(own, name);
    if (FILE_is_stdio(name) != 0 || FILE_fullpath(name) != 0 || FILE_exist(path) != 0) return path;
    for (const std::string &directory : state.directories)
        if (std::string beside = FILE_add_path(directory, name); FILE_exist(beside) != 0) return beside;
    return path;
}

Stream FILE_open_data(std::string_view name) {
    if (FILE_is_stdio(name)) {
        errno = EINVAL;
        return {};
    }
    return FILE_open(FILE_find_data(name), "r");
}

void FILE_set_data_directories(std::vector<std::string> directories) {
    state.directories = std::move(directories);
}
