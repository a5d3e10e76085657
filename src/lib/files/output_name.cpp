#include "lib/files/output_name.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "lib/files/naming.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"

namespace {

/// Stands for a blank while a template, which turns blanks into "_", is expanded.
constexpr char kBlankMark = '\x1F';

using FileId = std::pair<dev_t, ino_t>;

/// Nothing for a command and for what is not there.
std::optional<FileId> id_of_input(std::string_view name) {
    struct stat info {};
    if (name.starts_with('@')) name.remove_prefix(1); // marks a name that is taken as it stands
    if (name.empty() || name.front() == '|') return std::nullopt;
    const bool known = FILE_is_stdio(name) != 0 ? fstat(STDIN_FILENO, &info) == 0
                                                : stat(FILE_add_user_path(name).c_str(), &info) == 0;
    if (!known) return std::nullopt;
    return FileId{info.st_dev, info.st_ino};
}

/// The files of a long list are looked at once, not for each file that is written.
struct State {
    std::string list; ///< the resource that `files` belongs to
    std::set<FileId> files;
};
State state;

bool is_listed(FileId id) {
    const char *const list = RES_get("filename");
    if (list == nullptr) return false;
    if (state.list != list) {
        state.list = list;
        state.files.clear();
        for (const std::string &name : RES_getvals("filename"))
            if (const auto file = id_of_input(name)) state.files.insert(*file);
    }
    if (!state.files.contains(id)) return false;
    // A new file may have got the number of an input that is gone.
    return std::ranges::any_of(RES_getvals("filename"),
                               [id](const std::string &name) { return id_of_input(name) == id; });
}

} // namespace

std::string FILE_name_output(std::string_view convention, const DateRecord &date,
                             std::span<const NameKey> keys) {
    std::string wanted(convention);
    fill_string(wanted, ' ', kBlankMark);
    FILE_save_name_conv();
    (void)FILE_set_name(wanted); // without a convention it is the template itself
    for (const NameKey &key : keys) FILE_set_key(key.letter, key.value);
    std::string name;
    FILE_set_date(&date, name);
    FILE_restore_name_conv();
    fill_string(name, kBlankMark, ' ');
    return name;
}

bool FILE_is_input(std::string_view name) {
    struct stat info {};
    if (name.empty() || FILE_is_stdio(name) != 0 || name.front() == '|') return false;
    if (stat(FILE_add_user_path(name).c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    const FileId id{info.st_dev, info.st_ino};
    return id_of_input(FILE_get_filename()) == id || is_listed(id);
}
