#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "graphics/images/vyximg.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

/// Projections that the line knows, by the codes of the plot domain.
enum Code : int { kPolar = 1, kLatLon = 2, kMercator = 3, kLambert = 4, kSatellite = 9 };
struct Word {
    int proj;
    std::string_view name;
};
constexpr std::array kWords{Word{kLatLon, "LL"}, Word{kMercator, "ME"}, Word{kPolar, "PS"},
                            Word{kLambert, "LC"}, Word{kSatellite, "SAT"}};
constexpr std::size_t kMostParameters = 5;

std::array<float, kMostParameters> parameters_of(const ImageDomain &domain) {
    return {domain.plat, domain.plon, domain.p3, domain.p4, domain.p5};
}

std::string number(float value) {
    return is_missing(value) ? ":" : format_text(":%f", static_cast<double>(value));
}

/// A single parameter is the central longitude; of several, those behind the last given one are left out.
std::string parameters_text(const ImageDomain &domain) {
    if (domain.proj == kLatLon || domain.proj == kMercator) return {};
    if (domain.proj == kPolar)
        return is_missing(domain.plon) || domain.plon == domain.clon ? std::string() : number(domain.plon);
    const auto values = parameters_of(domain);
    std::size_t count = domain.proj == kSatellite ? 3 : kMostParameters;
    while (count > 0 && is_missing(values[count - 1])) --count;
    if (count == 0) return {};
    const bool longitude_only = count == 2 && is_missing(values[0]);
    if (longitude_only && domain.proj != kSatellite) return number(domain.plon);
    std::string text;
    for (std::size_t i = 0; i < std::max<std::size_t>(count, 2); ++i) text += number(values[i]);
    return text;
}

bool read_parameters(std::string_view word, ImageDomain &domain) {
    // Empty parts count, at the end too; the splitter drops those unless something follows.
    std::vector<std::string> parts = parse_string(std::string(word) + ":end", ':');
    parts.pop_back();
    const auto row = std::find_if(kWords.begin(), kWords.end(),
                                  [&](const Word &candidate) { return candidate.name == parts[0]; });
    if (row == kWords.end() || parts.size() > kMostParameters + 1) return false;
    domain.proj = row->proj;
    const std::array fields{&domain.plat, &domain.plon, &domain.p3, &domain.p4, &domain.p5};
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (parts[i].empty()) continue;
        const auto value = Scanner(parts[i]).real();
        if (!value) return false;
        *fields[parts.size() == 2 ? 1 : i - 1] = *value;
    }
    return true;
}

/// The spacing that lays `points` over what `grid` points cover.
float fitted(float spacing, int grid, int points) {
    return points < 2 ? spacing : static_cast<float>(grid - 1) / static_cast<float>(points - 1) * spacing;
}

} // namespace

std::string vyx_size_line(const ImageDomain &domain, int width, int height) {
    const auto row = std::find_if(kWords.begin(), kWords.end(),
                                  [&](const Word &candidate) { return candidate.proj == domain.proj; });
    if (row == kWords.end()) return format_text("%d %d", width, height);
    const float dx = fitted(domain.dx, domain.nx, width), dy = fitted(domain.dy, domain.ny, height);
    return std::string(row->name) + parameters_text(domain) +
           format_text(" %f %f %f %f %d %d", static_cast<double>(domain.clat),
                       static_cast<double>(domain.clon), static_cast<double>(dx), static_cast<double>(dy),
                       width, height);
}

bool vyx_read_size_line(std::string_view line, ImageDomain &domain, int &width, int &height) {
    domain = ImageDomain{};
    Scanner scanner(line);
    if (!line.empty() && line[0] >= 'A' && line[0] <= 'Z') {
        const auto word = scanner.word();
        if (!word || !read_parameters(*word, domain)) return false;
        for (float *value : {&domain.clat, &domain.clon, &domain.dx, &domain.dy})
            *value = scanner.real().value_or(kMissingF);
    }
    width = scanner.integer().value_or(0);
    height = scanner.integer().value_or(0);
    if (scanner.failed()) return false;
    if (!is_missing(domain.proj)) {
        domain.nx = width;
        domain.ny = height;
    }
    return true;
}
