/// Resource files: entries, keys with stars, sections.

#include <cstddef>
#include <cstdint>

#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/resources/settings_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const ResourceProgram program = [] {
        MESS_set(0, 0); // warnings of stray sections would drown the fuzzer's own words
        ResourceProgram made;
        made.name = "radar";
        for (const int id : RES_keyed_ids()) made.descriptors.push_back(*RES_descriptor(id));
        return made;
    }();
    const std::string text(data, data + size);
    ResourceSections sections;
    RES_read_entries(text, sections, program);
    // The database only grows: a run that stored many names would grow slow.
    if (RES_records().size() > 2000) RES_clear();
    return 0;
}
