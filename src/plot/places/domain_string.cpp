#include "plot/places/domain_string.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/places/city.h"
#include "plot/projection/names.h"
#include "plot/projection/transform.h"

namespace {

constexpr unsigned kParsing = 0x40000000; // debug level of the parser's messages
constexpr int kDefaultNx = 25, kDefaultNy = 17;
constexpr float kDefaultSpacing = 1.2F, kZoomSpacing = 1.0F;

/// One form of a domain string: a letter for each token or pair of tokens.
///   z the word "size"   P projection       o central longitude   c centre (latitude and longitude, or one
///   "id:" token)        n nx and ny        d dx and dy           x dx alone, dy the same
///   k a centre, but nx and ny of a projection "size"
/// Longer forms stand first.
struct Pattern {
    std::string_view items;
    const char *message;
};

constexpr std::array kPatterns{
    Pattern{"zn", "proj,nx,ny"},
    Pattern{"Pocnd", "proj,plon,clat,clon,nx,ny,dx,dy"},
    Pattern{"Pcnd", "proj,clat,clon,nx,ny,dx,dy"},
    Pattern{"Pocd", "proj,plon,clat,clon,dx,dy"},
    Pattern{"Pcnx", "proj,clat,clon,nx,ny,dx"},
    Pattern{"cnd", "clat,clon,nx,ny,dx,dy"},
    Pattern{"Pcd", "proj,clat,clon,dx,dy"},
    Pattern{"cnx", "clat,clon,nx,ny,dx"},
    Pattern{"Pcx", "proj,clat,clon,dx"},
    Pattern{"cn", "clat,clon,nx,ny"},
    Pattern{"cx", "clat,clon,dx"},
    Pattern{"Pk", "proj,clat,clon"},
    Pattern{"c", "clat,clon"},
};
/// Six items may fit both of these.
constexpr std::string_view kSpacingForm = "Pocd", kPointForm = "Pcnx";
constexpr const char *kIdMessage = "id:###", *kRegionMessage = "reg:REG";

bool is_id(std::string_view token) {
    return begins_with(token, "id:");
}

bool read_float(std::string_view token, float &target) {
    const auto value = Scanner(token).real();
    if (value) target = *value;
    return value.has_value();
}

bool read_count(std::string_view token, int &target) {
    const auto value = Scanner(token).integer();
    if (value) target = *value;
    return value.has_value();
}

bool is_diagram(int proj) {
    return proj != kProjNone && !is_map_projection(proj);
}

// "name:plat:plon:p3:p4:p5:p6", "name:e:..." for the ellipsoid, "name:plon" with a single value.
bool read_projection(std::string_view token, PlotDomain &domain) {
    // Empty parts count, at the end too; the splitter drops those unless something follows.
    std::vector<std::string> parts = parse_string(std::string(token) + ":end", ':');
    parts.pop_back();
    domain.proj = DOM_proj_str(parts[0]);
    if (domain.proj == kProjUnknown) return false;
    if (parts.size() == 2) return parts[1].empty() || read_float(parts[1], domain.plon);
    std::size_t next = 1;
    if (parts.size() > 2 && parts[1] == "e") {
        domain.ellipsoid = 1;
        next = 2;
    }
    for (float *field : {&domain.plat, &domain.plon, &domain.p3, &domain.p4, &domain.p5, &domain.p6}) {
        if (next >= parts.size()) break;
        const std::string &part = parts[next++];
        if (!part.empty() && !read_float(part, *field)) return false;
    }
    return true;
}

struct Place {
    bool found = false;
    float lat = kMissingF, lon = kMissingF;
};

/// The tokens of a domain string. The place of an "id:" token is looked up once, however many patterns ask.
class Tokens {
public:
    explicit Tokens(std::string_view text) : tokens_(parse_string(text, ',')) {}

    [[nodiscard]] std::size_t size() const { return tokens_.size(); }
    [[nodiscard]] std::string_view operator[](std::size_t index) const { return tokens_[index]; }

    /// The centre from one or two tokens at `next`, which moves behind them.
    bool read_center(std::size_t &next, PlotDomain &domain) {
        if (next >= size()) return false;
        if (is_id(tokens_[next])) return read_place(tokens_[next++], domain);
        if (next + 2 > size()) return false;
        next += 2;
        if (!read_float(tokens_[next - 2], domain.clat) || !read_float(tokens_[next - 1], domain.clon))
            return false;
        return is_diagram(domain.proj) || std::abs(domain.clat) <= 90;
    }

    /// "id:identifier" or "id:file:identifier".
    bool read_place(std::string_view token, PlotDomain &domain) {
        if (!place_) {
            place_.emplace();
            const std::string text(token.substr(3));
            const std::size_t colon = text.find(':');
            const std::string file = colon == std::string::npos ? "sao.cty" : text.substr(0, colon);
            const std::string id = colon == std::string::npos ? text : text.substr(colon + 1);
            place_->found = CTY_get_loc(file.c_str(), id, place_->lat, place_->lon) == 1;
        }
        if (!place_->found) return false;
        domain.clat = place_->lat;
        domain.clon = place_->lon;
        return true;
    }

private:
    std::vector<std::string> tokens_;
    std::optional<Place> place_;
};

bool read_pair_of_counts(const Tokens &tokens, std::size_t &next, PlotDomain &domain) {
    next += 2;
    return next <= tokens.size() && read_count(tokens[next - 2], domain.nx) &&
           read_count(tokens[next - 1], domain.ny);
}

bool read_item(char item, Tokens &tokens, std::size_t &next, PlotDomain &domain) {
    if (next >= tokens.size()) return false;
    switch (item) {
    case 'z': domain.proj = kProjSize; return tokens[next++] == "size";
    case 'P': return read_projection(tokens[next++], domain);
    case 'o': return read_float(tokens[next++], domain.plon);
    case 'c': return tokens.read_center(next, domain);
    case 'k':
        if (domain.proj != kProjSize) return tokens.read_center(next, domain);
        [[fallthrough]];
    case 'n': return read_pair_of_counts(tokens, next, domain);
    case 'd':
        next += 2;
        return next <= tokens.size() && read_float(tokens[next - 2], domain.dx) &&
               read_float(tokens[next - 1], domain.dy);
    default:
        if (!read_float(tokens[next++], domain.dx)) return false;
        domain.dy = domain.dx;
        return true;
    }
}

bool has_item(const Pattern &pattern, char item) {
    return pattern.items.find(item) != std::string_view::npos;
}

void fill_defaults(const Pattern &pattern, PlotDomain &domain) {
    if (domain.proj == kProjSize) return;
    if (!has_item(pattern, 'n')) {
        domain.nx = kDefaultNx;
        domain.ny = kDefaultNy;
    }
    if (!has_item(pattern, 'd') && !has_item(pattern, 'x'))
        domain.dx = domain.dy = domain.proj == kProjZoom ? kZoomSpacing : kDefaultSpacing;
}

bool read_pattern(const Pattern &pattern, Tokens &tokens, PlotDomain &domain) {
    domain = PlotDomain{};
    if (pattern.items[0] == 'c') domain.proj = kProjPolar;
    std::size_t next = 0;
    for (const char item : pattern.items)
        if (!read_item(item, tokens, next, domain)) return false;
    if (next != tokens.size()) return false;
    fill_defaults(pattern, domain);
    return true;
}

/// Six items with a longitude that could be a latitude: whole numbers are counts of points where spacings so
/// unlike each other would only smear the plot.
bool are_points(Tokens &tokens) {
    constexpr float fewest = 2, most_unlike = 3;
    float nx = 0, ny = 0, last = 0;
    if (tokens.size() != 6 || !read_float(tokens[3], nx) || !read_float(tokens[4], ny) ||
        !read_float(tokens[5], last))
        return false;
    const bool whole = nx == std::floor(nx) && ny == std::floor(ny) && nx >= fewest && ny >= fewest;
    const bool unlike = ny > most_unlike * last || last > most_unlike * ny;
    PlotDomain as_points;
    return whole && unlike && read_pattern({kPointForm, nullptr}, tokens, as_points);
}

void print_pattern(const Tokens &tokens, const char *message) {
    MESS_print(kParsing, "%2d %s\n", static_cast<int>(tokens.size()), message);
}

} // namespace

int decode_domain(std::string_view text, PlotDomain &domain, int depth, RegionDecoder region) {
    domain = PlotDomain{};
    if (trimmed(text).empty() || stricmp(text, "miss") == 0) return kMissing;
    Tokens tokens(text);
    MESS_print(kParsing, "******** PARSING DOMAIN: %d %s\n", static_cast<int>(tokens.size()),
               std::string(text).c_str());
    for (const Pattern &pattern : kPatterns) {
        if (pattern.items == kSpacingForm && are_points(tokens)) continue;
        if (!read_pattern(pattern, tokens, domain)) continue;
        print_pattern(tokens, tokens.size() == 1 ? kIdMessage : pattern.message);
        return is_possible_domain(domain) ? kDomainExplicit : kDomainInvalid;
    }
    domain = PlotDomain{};
    if (tokens.size() != 1 || is_id(tokens[0]) || depth >= kDeepestRegion) return kDomainInvalid;
    const int result = region(tokens[0], domain, depth + 1);
    if (result == kDomainRegion) print_pattern(tokens, kRegionMessage);
    return result;
}
