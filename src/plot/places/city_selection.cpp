#include "plot/places/city_selection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr double kUnbounded = std::numeric_limits<double>::infinity();
constexpr double kRounding = 0.005; // positions are written to a hundredth of a degree or finer

bool fits_pattern(std::string_view text, std::string_view pattern) {
    if (pattern.ends_with('*')) return begins_with(text, pattern.substr(0, pattern.size() - 1));
    return stricmp(text, pattern) == 0;
}

double bound(std::string_view text, double open) {
    const auto number = Scanner(text).real();
    return number ? *number : open;
}

// "value" or "from:to".
std::pair<double, double> parse_range(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos)
        return {bound(text.substr(0, colon), -kUnbounded), bound(text.substr(colon + 1), kUnbounded)};
    const auto value = Scanner(text).real();
    if (!value) return {kUnbounded, -kUnbounded}; // no number: nothing passes
    return {*value, *value};
}

double distance_km(double lat1, double lon1, double lat2, double lon2) {
    const double half_lat = std::sin((lat2 - lat1) * kDegree / 2),
                 half_lon = std::sin((lon2 - lon1) * kDegree / 2);
    const double h =
        half_lat * half_lat + std::cos(lat1 * kDegree) * std::cos(lat2 * kDegree) * half_lon * half_lon;
    return 2 * kEarthRadiusKm * std::asin(std::sqrt(std::clamp(h, 0.0, 1.0)));
}

} // namespace

CitySelection::CitySelection(const std::vector<std::string> &words, const PlotDomain &domain)
    : center_lat_(domain.clat), center_lon_(domain.clon) {
    if (words.size() == 1 && stricmp(words[0], "all") == 0) return;
    for (const std::string &word : words)
        if (!word.empty()) criteria_.push_back(parse(word));
}

CitySelection::Criterion CitySelection::parse(const std::string &word) {
    static constexpr std::pair<std::string_view, Kind> kinds[] = {
        {"name=", Kind::name},        {"st=", Kind::state},
        {"cn=", Kind::country},       {"id=", Kind::id},
        {"p=", Kind::priority},       {"p<", Kind::priority_below},
        {"p>", Kind::priority_above}, {"wmo=", Kind::wmo},
        {"lat=", Kind::lat},          {"lon=", Kind::lon},
        {"elev=", Kind::elevation},   {"ra<", Kind::distance}};
    for (const auto &[prefix, kind] : kinds) {
        if (!begins_with(word, prefix)) continue;
        const std::string text = word.substr(prefix.size());
        auto [from, to] = parse_range(text);
        if (prefix.ends_with('<')) from = -kUnbounded;
        if (prefix.ends_with('>')) to = kUnbounded;
        // "P<" and "P>" leave the digit itself out.
        if (prefix == "p<") to -= 0.5;
        if (prefix == "p>") from += 0.5;
        if (kind == Kind::lat || kind == Kind::lon) {
            from -= kRounding;
            to += kRounding;
        }
        return {kind, text, from, to};
    }
    return {Kind::id, word, 0, 0};
}

bool CitySelection::meets(const Criterion &criterion, const CityEntry &entry) const {
    const auto within = [&criterion](double value) {
        return value >= criterion.from && value <= criterion.to && value != kMissingF;
    };
    switch (criterion.kind) {
    case Kind::name: return fits_pattern(entry.name, criterion.text);
    case Kind::state: return fits_pattern(entry.state, criterion.text);
    case Kind::country: return fits_pattern(entry.country, criterion.text);
    case Kind::id: return fits_pattern(entry.id, criterion.text);
    case Kind::priority:
    case Kind::priority_below:
    case Kind::priority_above: return within(entry.priority);
    case Kind::wmo: return within(entry.wmo);
    case Kind::lat: return within(entry.lat);
    case Kind::lon: return within(entry.lon);
    case Kind::elevation: return within(entry.elevation);
    case Kind::distance: return within(distance_km(center_lat_, center_lon_, entry.lat, entry.lon));
    }
    return false;
}

bool CitySelection::passes(const CityEntry &entry) const {
    return std::all_of(criteria_.begin(), criteria_.end(), [&](const Criterion &wanted) {
        return std::any_of(criteria_.begin(), criteria_.end(), [&](const Criterion &alternative) {
            return alternative.kind == wanted.kind && meets(alternative, entry);
        });
    });
}
