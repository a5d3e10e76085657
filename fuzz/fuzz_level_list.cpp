// Fill-level lists and level files: whatever the text, every value gets a level that exists, and the bar can
// be laid out.

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "lib/text/strings.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/level_list.h"
#include "plot/colour/levels.h"
#include "plot/colour/named_colors.h"
#include "scratch_file.h"

namespace {

void look_up_values() {
    constexpr float huge = std::numeric_limits<float>::max();
    for (const float value :
         {-huge, -100.0F, -0.5F, 0.0F, 1e-30F, 5.0F, 75.0F, huge, std::numeric_limits<float>::quiet_NaN(),
          std::numeric_limits<float>::infinity()}) {
        Attribute record;
        CONT_get_fill_attrib(record, value);
        if (record.color == kMissing || record.color == kColorEnd) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 1) return 0;
    const std::string_view text(reinterpret_cast<const char *>(data + 1), size - 1);
    CLR_clear_table();
    CLR_add("red", {1, 0, 0});
    CONT_init();
    if (data[0] % 2 == 0) {
        if (decode_level_list(parse_string(text, ',')).size() > kMaxLevels) std::abort();
        // A comma keeps the text from being taken for the name of a file.
        CONT_set_fill_colors(std::string(text) + ",red", 1);
    } else {
        CONT_set_fill_colors(ScratchFile(text).name(), 1);
    }
    look_up_values();
    CONT_set_intrvl(static_cast<float>(data[0]) - 100);
    look_up_values();
    CONT_set_range(100, -50);
    CONT_draw_bar(1, "");
    CONT_get_bar_value(0.2F, 0.01F);
    return 0;
}
