#include "lib/resources/start.h"

#include <cstdlib>

#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/message_words.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/resources/flag_words.h"
#include "lib/resources/sources.h"
#include "lib/text/missing.h"
#include "lib/time/date.h"
#include "lib/time/fixed_time.h"

namespace {

constexpr unsigned kBatchLevels = 0xFF; ///< print, error and warning

void start_batch() {
    FLAG_set_batch(1);
    if (MESS_check_set() == 0) MESS_set(kSetLevels, kBatchLevels);
}

void convert(const ResourceRecord &record) {
    switch (record.kind) {
    case ResourceKind::batch: start_batch(); return;
    case ResourceKind::help: FLAG_set(kFlagHelp, 1); return;
    default: break;
    }
    if (!record.has_value) return;
    switch (record.kind) {
    case ResourceKind::message: MESS_set_str(record.value); break;
    case ResourceKind::draw: FLAG_set_draw(record.value); break;
    case ResourceKind::hour: FILE_set_hour_text(record.value); break;
    case ResourceKind::file_param: FLAG_set_file_param(record.value); break;
    case ResourceKind::plot_type: FLAG_set_plot_type(record.value); break;
    default: break; // read as text, or converted by who uses it
    }
}

/// The place of the shipped data, unless a source told another.
void default_file_path(const ResourceProgram &program, const std::string &directory) {
    if (directory.empty() || RES_get("file_path") != nullptr) return;
    for (std::size_t i = 0; i < program.descriptors.size(); ++i) {
        if (program.descriptors[i].name != "file_path") continue;
        RES_store(program, i, directory.c_str());
        return;
    }
}

void read_sources(std::span<const char *const> arguments, ResourceProgram &program) {
    if (const char *path = std::getenv("vyxdefault")) RES_new(kMissing, "default", path, ResourceKind::text);
    RES_scan_command(arguments, program);
    const std::string data_directory = RES_read_search_path(program);
    RES_read_environment(program);
    RES_read_command(arguments, program);
    default_file_path(program, data_directory);
    RES_convert_all();
}

} // namespace

std::string ResourceProgram::qualifier() const {
    if (title.empty()) return name;
    return title.starts_with('+') ? name + "." + title.substr(1) : title;
}

ResourceDescriptor RES_descriptor_or_report(int id) {
    if (const ResourceDescriptor *row = RES_descriptor(id)) return *row;
    MESS_print(kPrint, "%d\n", id);
    return {id, "", "", 0, "", ResourceKind::text, "", ""};
}

void RES_store(const ResourceProgram &program, std::size_t index, const char *value) {
    const ResourceDescriptor &descriptor = program.descriptors[index];
    RES_new(static_cast<int>(index), descriptor.name, value, descriptor.kind);
}

void RES_convert_all() {
    for (const ResourceRecord &record : RES_records())
        if (!is_missing(record.index)) convert(record);
}

int RES_init(int argc, const char *const argv[], std::span<const int> keyed_ids,
             std::span<const int> positional_ids) {
    FLAG_reset(kMissing);
    WORD_forget();
    const WordHold until_levels_are_known;
    const std::span<const char *const> arguments(argv, static_cast<std::size_t>(argc > 0 ? argc : 0));
    RES_set_program(arguments.empty() ? "" : arguments.front());

    ResourceProgram program;
    program.name = RES_get_progname();
    for (const int id : keyed_ids) program.descriptors.push_back(RES_descriptor_or_report(id));
    for (const int id : positional_ids) program.descriptors.push_back(RES_descriptor_or_report(id));
    read_sources(arguments.empty() ? arguments : arguments.subspan(1), program);

    if (FLAG_help() != 1) RES_tell_settings();
    if (const char *zone = std::getenv("vyxtz")) DATE_set_TZ(zone);
    return 1;
}
