#include "graphics/devices/print/postscript_options.h"

#include <algorithm>
#include <cmath>

#include "graphics/devices/print/paper.h"
#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr float kPointsPerInch = 72.0F;
/// Keeps the clip margin of 0.1 points and half a thin line inside the bounding box.
constexpr float kEpsShift = 0.5F;

/// "%.2f inch" of the prologue stands for this many points.
float written_inches(float inch) {
    return std::nearbyint(inch * 100) / 100 * kPointsPerInch;
}

int box_side(float points) {
    return static_cast<int>(std::ceil(points));
}

/// A word that is no option, or has a value that cannot be used.
void tell_option(std::string_view word) {
    std::vector<std::string_view> known{"port", "land",  "eps",    "noeps", "color",
                                        "gray", "scale", "lwidth", "sz"};
    for (const PaperSize &paper : kPaperSizes) known.push_back(paper.name);
    const bool valued =
        keyword_value(word, "scale") || keyword_value(word, "lwidth") || keyword_value(word, "sz");
    if (valued)
        WORD_not("device", word, "an option with a value that can be used");
    else
        WORD_unknown("device", word, known);
}

} // namespace

bool apply_postscript_option(PostScriptOptions &options, std::string_view word, bool &inverse) {
    if (const auto page = parse_page_size(word)) {
        options.page = *page;
    } else if (begins_with(word, "port")) {
        options.portrait = true;
    } else if (begins_with(word, "land")) {
        options.portrait = false;
    } else if (begins_with(word, "eps")) {
        options.eps = true;
    } else if (begins_with(word, "noeps")) {
        options.eps = false;
    } else if (begins_with(word, "color")) {
        options.color = true;
        inverse = true;
    } else if (begins_with(word, "gray")) {
        options.color = false;
    } else if (const auto scale = keyword_value(word, "scale")) {
        const auto value = Scanner(*scale).real();
        if (!value || *value < kSmallestScale || *value > kLargestScale) return false;
        options.scale = *value;
    } else if (const auto width = keyword_value(word, "lwidth")) {
        const auto value = Scanner(*width).integer();
        if (!value || *value < 0 || *value > kLargestBaseWidth) return false;
        options.base_width = *value;
    } else {
        return word.empty();
    }
    return true;
}

void apply_postscript_options(PostScriptOptions &options, std::string_view words, bool &inverse) {
    for (const std::string &word : split_device_spec(words))
        if (!apply_postscript_option(options, trimmed(word), inverse)) tell_option(trimmed(word));
}

DrawingArea postscript_area(const PageInches &page) {
    return {static_cast<int>((page.width - kPageMargin) * kPointsPerInch),
            static_cast<int>((page.height - kPageMargin) * kPointsPerInch), 0, 0};
}

// The box holds the page's drawing area and, where the geometry reaches beyond it, the picture.
EpsLayout eps_layout(const PostScriptOptions &options, const DrawingArea &area) {
    const DrawingArea page = postscript_area(options.page);
    const float scale = options.scale;
    const auto left = static_cast<float>(std::min(0, area.x)),
               bottom = static_cast<float>(std::min(0, area.y));
    const auto right = static_cast<float>(std::max(page.width, area.x + area.width));
    const auto top = static_cast<float>(std::max(page.height, area.y + area.height));
    EpsLayout layout;
    const float across = (right - left) * scale, up = (top - bottom) * scale;
    layout.shift_x = (kEpsShift - left) * scale;
    if (options.portrait) {
        layout.shift_y = (kEpsShift - bottom) * scale;
        layout.width = box_side(across);
        layout.height = box_side(up);
    } else {
        // Turned by 90 degrees the picture's top is the box's left edge, which the described translation puts
        // one page height away from the picture's origin.
        layout.shift_y = written_inches(options.page.height) - (top - kEpsShift) * scale;
        layout.width = box_side(up);
        layout.height = box_side(across);
    }
    return layout;
}
