#include "graphics/devices/print/paper.h"

#include <algorithm>

#include "lib/text/strings.h"

std::optional<PaperSize> find_paper(std::string_view name) {
    const auto found = std::ranges::find_if(
        kPaperSizes, [&](const PaperSize &paper) { return stricmp(name, paper.name) == 0; });
    if (found == kPaperSizes.end()) return std::nullopt;
    return *found;
}
