#include "graphics/devices/print/hpgl_options.h"

#include <array>
#include <vector>

#include "graphics/devices/print/paper.h"
#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr float kSmallestScale = 0.01F, kLargestScale = 100, kLargestBaseWidth = 1000;
constexpr std::array<std::string_view, 5> kValued{"scale", "lwidth", "rot", "sz", "roll"};

void tell_option(std::string_view word) {
    std::vector<std::string_view> known{"pcl", "nopcl", "lj", "port", "land"};
    known.insert(known.end(), kValued.begin(), kValued.end());
    for (const PaperSize &paper : kPaperSizes) known.push_back(paper.name);
    for (const std::string_view name : kValued)
        if (keyword_value(word, name)) {
            WORD_not("device", word, "an option with a value that can be used");
            return;
        }
    WORD_unknown("device", word, known);
}

/// "scale=2" and the like. False when the word is none of these, or its value cannot be used.
bool apply_number(HpglOptions &options, std::string_view word) {
    const auto number = [word](std::string_view keyword) {
        const auto value = keyword_value(word, keyword);
        return value ? Scanner(*value).real() : std::nullopt;
    };
    if (const auto scale = number("scale"); scale && *scale >= kSmallestScale && *scale <= kLargestScale) {
        options.scale = *scale;
    } else if (const auto width = number("lwidth"); width && *width >= 0 && *width <= kLargestBaseWidth) {
        options.base_width = *width;
    } else if (const auto turn = number("rot");
               turn && (*turn == 0 || *turn == 90 || *turn == 180 || *turn == 270)) {
        options.rotation = static_cast<int>(*turn);
    } else if (const auto roll = number("roll"); roll && *roll >= kSmallestPage && *roll <= kLargestPage) {
        options.page = {*roll, kHpglRollHeight};
    } else {
        return false;
    }
    return true;
}

bool apply_option(HpglOptions &options, std::string_view word) {
    if (const auto page = parse_page_size(word))
        options.page = *page;
    else if (begins_with(word, "pcl"))
        options.pcl = PclWrap::wrapper;
    else if (begins_with(word, "nopcl"))
        options.pcl = PclWrap::none;
    else if (begins_with(word, "lj"))
        options.pcl = PclWrap::laser;
    else if (begins_with(word, "port"))
        options.rotation = 90;
    else if (begins_with(word, "land"))
        options.rotation = 0;
    else
        return word.empty() || apply_number(options, word);
    return true;
}

} // namespace

void apply_hpgl_options(HpglOptions &options, std::string_view words) {
    for (const std::string &word : split_device_spec(words))
        if (!apply_option(options, trimmed(word))) tell_option(trimmed(word));
}

DrawingArea hpgl_area(const PageInches &page) {
    return {static_cast<int>((page.width - kPageMargin) * kHpglPerInch),
            static_cast<int>((page.height - kPageMargin) * kHpglPerInch), kHpglOrigin, kHpglOrigin};
}
