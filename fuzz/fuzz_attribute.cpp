// Colour texts, attribute strings and colour table files: whatever the text, indices stay inside their
// tables.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "plot/colour/attribute.h"
#include "plot/colour/named_colors.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    CLR_clear_table();
    CLR_read_table(ScratchFile(text).name());
    if (CLR_get_num() > kColorSlots) std::abort();
    for (int i = -1; i <= kColorSlots; ++i) {
        const Rgb color = CLR_get_rgb(i);
        for (const float part : {color.red, color.green, color.blue})
            if (!(part >= 0 && part <= 1)) std::abort();
        if (CLR_get_name(i).size() > 19) std::abort();
    }
    Attribute record;
    ATTRIB_parse(text, record);
    for (const float number : {record.width, record.height, record.expansion})
        if (!std::isfinite(number)) std::abort();
    ATTR_parse_fill_pat(text);
    ATTR_parse_marker(text);
    if (CLR_get_ind(text) < kColorEnd) std::abort();
    return 0;
}
