#include "app/input_type.h"

#include <gtest/gtest.h>

#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"

namespace {

struct InputCase {
    const char *input, *in_file; ///< null: not set
    int type, form, format;
    const char *name; ///< the template: without a convention file the key itself
};

TEST(InputType, ResourcesToFlags) {
    const InputCase cases[]{
        {nullptr, nullptr, 31, kMissing, kMissing, "rad_cvt"},
        {"nids", nullptr, 33, kMissing, kMissing, "nids"},
        {"NIDS", "nowrad", 33, kMissing, kMissing, "nowrad"},
        {"lev2z", nullptr, 38, kMissing, kMissing, "lev2"},
        {"lev2", nullptr, 37, kMissing, kMissing, "lev2"},
        {nullptr, "my_lev2z", 38, kMissing, kMissing, "my_lev2z"},
        {nullptr, "nids_N0R", 33, kMissing, kMissing, "nids_N0R"},
        {"site", nullptr, 32, kMissing, kMissing, "rrwds"},
        {"rcm", nullptr, 31, kMissing, kMissing, "rcm_cvt"},
        {"rcmsite", nullptr, 35, kMissing, kMissing, "rcm_dat"},
        {"raw", nullptr, 31, 0, kMissing, "rad_dat"},
        {"conv", "rad_vyx", 31, 1, 3, "rad_vyx"},
        {nullptr, "radcdf", 31, 1, 12, "radcdf"},
        {"mdr", nullptr, 31, kMissing, kMissing, "rad_raw"},
        {"unknown", nullptr, 31, kMissing, kMissing, "rad_cvt"},
    };
    for (const InputCase &c : cases) {
        RES_clear();
        FLAG_reset(kMissing);
        RES_put("name_conv", "/none");
        RES_put("message", "none");
        if (c.input != nullptr) RES_put("input", c.input);
        if (c.in_file != nullptr) RES_put("in_file", c.in_file);
        const std::string label = std::string(c.input ? c.input : "-") + " " + (c.in_file ? c.in_file : "-");
        RAD_cvt_in_file();
        EXPECT_EQ(FLAG_get(kFlagInputType), c.type) << label;
        EXPECT_EQ(FLAG_get(kFlagRawForm), c.form) << label;
        EXPECT_EQ(FLAG_get(kFlagFileFormat), c.format) << label;
        EXPECT_TRUE(FILE_get_name_conv().find(std::string(" ") + c.name + " ") != std::string::npos)
            << label << ": " << FILE_get_name_conv();
    }
}

} // namespace
