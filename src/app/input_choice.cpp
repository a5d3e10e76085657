#include "app/input_choice.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "app/input_type.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/files/series.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "radar/common/file_kind.h"
#include "radar/summary/reader.h"

namespace {

constexpr std::string_view kPrompt = "Enter the radar filename: ";

struct Format {
    const char *word; ///< of the resource "input"
    const char *key;  ///< of its naming convention
    RadarFileKind kind;
    InputType type;
};
constexpr std::array kFormats{Format{"nids", "nids", RadarFileKind::level3, kInputNids},
                              Format{"lev2", "lev2", RadarFileKind::level2, kInputLev2},
                              Format{"nowrad", "nowrad", RadarFileKind::nowrad, kInputNowrad},
                              Format{"kavrad", "kavrad", RadarFileKind::kavrad, kInputKavrad},
                              Format{"rcmsite", "rcm_dat", RadarFileKind::coded_message, kInputRcm},
                              Format{"rrwds", "rrwds", RadarFileKind::rrwds, kInputRrwds},
                              Format{"rad", "rad_cvt", RadarFileKind::summary, kInputRadar}};

/// Why a file was not taken; told only when no other one is.
using Complaints = std::vector<std::string>;

void complain(Complaints &complaints, std::string complaint) {
    if (std::ranges::find(complaints, complaint) == complaints.end())
        complaints.push_back(std::move(complaint));
}

const Format *format_of(const std::string &name, Complaints &complaints) {
    Stream stream = FILE_open_input(name);
    if (!stream) {
        complain(complaints, "Unable to open file:" + name + ": " + std::strerror(errno));
        return nullptr;
    }
    const RadarFileKind kind = RADAR_file_kind(stream.read_all(kKindBytes));
    const auto found = std::ranges::find(kFormats, kind, &Format::kind);
    if (found != kFormats.end()) return &*found;
    complain(complaints, "Kind of file not recognised: " + name);
    return nullptr;
}

/// The format of the first file of the selection that has one.
const Format *format_of_selection(const std::string &first, Complaints &complaints) {
    if (const Format *format = format_of(first, complaints)) return format;
    const DateRecord date = FILE_get_date();
    std::string name;
    FILE_set_date(&date, name); // which tells the step of a series in time
    FILE_first(date);
    if (FILE_get_num_file() == 0) return nullptr;
    Complaints of_series;
    while (FILE_get_next(name) == 1)
        if (const Format *format = format_of(name, of_series)) return format;
    // Of a series in time the first name tells enough.
    if (RES_getvals("filename").size() > 1)
        for (std::string &complaint : of_series) complain(complaints, std::move(complaint));
    return nullptr;
}

/// The naming conventions that may find the file, the likeliest first.
std::vector<std::string> convention_keys() {
    if (const std::vector<std::string> given = RES_getvals("in_file"); !given.empty()) return {given.back()};
    std::vector<std::string> keys;
    keys.reserve(kFormats.size());
    for (const Format &format : kFormats) keys.emplace_back(format.key);
    return keys;
}

struct Choice {
    std::string key;
    const Format *format;
};

/// The convention under which the selection finds a file of its own format, else the first that finds any.
std::optional<Choice> find_choice(Complaints &complaints) {
    std::optional<Choice> choice;
    for (const std::string &key : convention_keys()) {
        (void)FILE_set_name(key); // without a convention it is a name
        std::string name;
        (void)FILE_select(name); // what only a question could tell has no format
        const Format *format = format_of_selection(name, complaints);
        if (format == nullptr) continue;
        if (!choice || key == format->key) choice = Choice{key, format};
        if (key == format->key) break;
    }
    return choice;
}

[[noreturn]] void end_without_file(const Complaints &complaints) {
    for (const std::string &complaint : complaints)
        MESS_print(kError, "RAD_cvt_in_file: %s\n", complaint.c_str());
    VYX_exit(kExitNoFile);
}

bool nothing_is_selected() {
    return RES_getvals("filename").empty() && RES_get("current") == nullptr && FLAG_batch() == 0;
}

} // namespace

InputType choose_input() {
    Complaints complaints;
    std::string name;
    const Format *format = nullptr;
    if (nothing_is_selected()) {
        (void)FILE_get_file(kPrompt, name); // whether it is there, its first bytes tell
        format = format_of(name, complaints);
    } else if (const auto choice = find_choice(complaints)) {
        (void)FILE_set_name(choice->key); // found before
        (void)FILE_select(name);
        format = choice->format;
        if (RES_getvals("filename").empty()) MESS_print(kMess, "Current filename: %s\n", name.c_str());
    } else if (RES_getvals("filename").empty()) {
        (void)FILE_set_name(convention_keys().front());
        (void)FILE_get_file(kPrompt, name); // a missing file of a time ends the program here
    }
    if (format == nullptr) end_without_file(complaints);
    FLAG_set(kFlagInputType, format->type);
    return format->type;
}

InputType choose_for_file(const char *prompt) {
    std::string name;
    (void)FILE_get_file(prompt, name); // a missing file, the driver tells
    // What a naming convention finds by time is of the convention's kind; so is a file that is not there.
    const bool by_time = RES_getvals("filename").empty() && !nothing_is_selected();
    if (by_time || FILE_exist(name) == 0) return kInputRadar;
    Complaints complaints;
    const Format *format = format_of_selection(name, complaints);
    if (format == nullptr && RAD_chktype(name) == kRadUnknown) {
        MESS_print(kError, "Unable to open file:%s\n", name.c_str());
        end_without_file(complaints);
    }
    if (format == nullptr || format->type == kInputRadar) return kInputRadar;
    MESS_print(kMess, "%s is read as -inp %s\n", name.c_str(), format->word);
    FLAG_set(kFlagInputType, format->type);
    return format->type;
}
