#include "app/input_type.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "plot/symbols/station.h"

namespace {

enum class Test { equals, begins, contains };

constexpr int kUnset = 0;   ///< leave the input type alone
constexpr int kNoForm = -1; ///< leave the radar form alone
constexpr int kRaw = 0;
constexpr int kConverted = 1;
constexpr int kFormatPackage = 3;
constexpr int kFormatNetcdf = 12;
constexpr std::string_view kValueItself = "=";
constexpr std::string_view kAuto = "auto";

struct Row {
    Test test;
    std::string_view word;
    int type;
    int form;
    std::string_view key; ///< naming key; kValueItself: the value
    std::string_view model;
};

/// Values of "input"; the first match decides.
constexpr std::array kInputRows{Row{Test::begins, "raw", kUnset, kRaw, "rad_dat", ""},
                                Row{Test::begins, "cvt", kUnset, kConverted, "", ""},
                                Row{Test::equals, "conv", kUnset, kConverted, "", ""},
                                Row{Test::equals, "site", kInputRrwds, kNoForm, "rrwds", ""},
                                Row{Test::equals, "rrwds", kInputRrwds, kNoForm, "rrwds", ""},
                                Row{Test::equals, "nids", kInputNids, kNoForm, "nids", ""},
                                Row{Test::equals, "lev2z", kInputLev2z, kNoForm, "lev2", ""},
                                Row{Test::equals, "lev2", kInputLev2, kNoForm, "lev2", ""},
                                Row{Test::equals, "nowrad", kInputNowrad, kNoForm, "nowrad", ""},
                                Row{Test::equals, "kavrad", kInputKavrad, kNoForm, "kavrad", ""},
                                Row{Test::equals, "rcmsite", kInputRcm, kNoForm, "rcm_dat", ""},
                                Row{Test::equals, "rcm", kInputRadar, kNoForm, "rcm_cvt", "rcm"},
                                Row{Test::contains, "rad", kUnset, kConverted, "", ""},
                                Row{Test::equals, "mdr", kInputRadar, kNoForm, "rad_raw", ""}};

/// Values of "in_file"; types and forms count only when "input" decided nothing.
constexpr std::array kFileRows{Row{Test::begins, "raw", kUnset, kRaw, "rad_raw", ""},
                               Row{Test::begins, "cvt", kUnset, kConverted, "rad_cvt", ""},
                               Row{Test::equals, "conv", kUnset, kConverted, "rad_cvt", ""},
                               Row{Test::equals, "site", kInputRrwds, kNoForm, "rrwds", ""},
                               Row{Test::contains, "rrwds", kInputRrwds, kNoForm, kValueItself, ""},
                               Row{Test::contains, "nids", kInputNids, kNoForm, kValueItself, ""},
                               Row{Test::contains, "lev2z", kInputLev2z, kNoForm, kValueItself, ""},
                               Row{Test::contains, "lev2", kInputLev2, kNoForm, kValueItself, ""},
                               Row{Test::contains, "nowrad", kInputNowrad, kNoForm, kValueItself, ""},
                               Row{Test::equals, "kavrad", kInputKavrad, kNoForm, kValueItself, ""},
                               Row{Test::contains, "rad", kUnset, kConverted, kValueItself, ""},
                               Row{Test::equals, "mdr", kInputRadar, kNoForm, "rad_raw", "mdr"},
                               Row{Test::equals, "rcmsite", kInputRcm, kNoForm, "rcm_dat", ""},
                               Row{Test::equals, "rcm", kInputRadar, kNoForm, "rcm_cvt", "rcm"},
                               Row{Test::contains, "", kUnset, kNoForm, kValueItself, ""}};

bool matches(const Row &row, std::string_view value) {
    switch (row.test) {
    case Test::equals: return stricmp(row.word, value) == 0;
    case Test::begins: return strnicmp(row.word, value, 3) == 0;
    case Test::contains: return value.find(row.word) != std::string_view::npos;
    }
    return false;
}

template <std::size_t N> const Row *find_row(const std::array<Row, N> &rows, std::string_view value) {
    for (const Row &row : rows)
        if (matches(row, value)) return &row;
    return nullptr;
}

void set_type(const Row &row) {
    if (row.type != kUnset) FLAG_set(kFlagInputType, row.type);
    if (row.form != kNoForm) FLAG_set(kFlagRawForm, row.form);
    if (!row.model.empty()) VAR_set_model_str(row.model);
}

void set_file_format(std::string_view value) {
    if (value.find("vyx") != std::string_view::npos) FLAG_set(kFlagFileFormat, kFormatPackage);
    if (value.find("nc") != std::string_view::npos || value.find("cdf") != std::string_view::npos)
        FLAG_set(kFlagFileFormat, kFormatNetcdf);
}

void tell_unknown_input(const std::string &value) {
    std::vector<std::string_view> known{kAuto};
    for (const Row &row : kInputRows) known.push_back(row.word);
    WORD_unknown("input", value, known);
}

/// A key without convention is taken as the files' name itself, which is hardly meant without a code in it.
void check_convention(const std::string &key) {
    const std::string name = key.substr(0, key.find(':'));
    if (name == "none" || name.find('%') != std::string::npos) return;
    const std::vector<std::string> keys = FILE_convention_keys();
    if (!keys.empty())
        WORD_unknown("in_file", name, std::vector<std::string_view>(keys.begin(), keys.end()),
                     "it counts as the name of the files");
}

} // namespace

int RAD_cvt_in_file() {
    std::string key = "rad_cvt";
    FLAG_set(kFlagInputType, kInputRadar);
    VAR_set_model_str("mdr");

    bool given = false;
    for (const std::string &value : RES_getvals("input")) {
        if (stricmp(value, kAuto) == 0) {
            given = true;
            FLAG_set(kFlagInputType, kInputAuto);
            key = "nids";
            continue;
        }
        const Row *row = find_row(kInputRows, value);
        if (row == nullptr) {
            tell_unknown_input(value);
            continue;
        }
        given = true;
        set_type(*row);
        if (!row->key.empty()) key = row->key;
    }
    for (const std::string &value : RES_getvals("in_file")) {
        const Row *row = find_row(kFileRows, value);
        if (!given) set_type(*row);
        key = row->key == kValueItself ? value : std::string(row->key);
        set_file_format(value);
    }
    if (FILE_set_name(key) == 0 && !RES_getvals("in_file").empty()) check_convention(key);
    return 0;
}
