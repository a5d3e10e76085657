#include <algorithm>
#include <array>

#include "lib/report/message.h"
#include "lib/text/strings.h"
#include "plot/map/current_map.h"
#include "radar/common/file_date.h"
#include "radar/nids/product_reader.h"

namespace {

/// Grid points each way of a product that has neither rows nor bins.
constexpr int kPlainGrid = 460;
constexpr float kScreenSize = 511;

/// Where the extremes stand (ICD 2620001, product-dependent halfwords): indexes of the product parameters (0:
/// none), and value = word / divisor x factor.
struct ExtremeRule {
    NidsExtremes rule;
    unsigned minimum_word, maximum_word;
    float divisor, factor;
    int decimals; ///< in the label, -1: not there
};
constexpr auto kExtremeRules = std::to_array<ExtremeRule>({
    {NidsExtremes::maximum, 0, 4, 1, 1, 0},
    {NidsExtremes::both, 4, 5, 1, 1, 0},
    {NidsExtremes::both_tenths, 4, 5, 10, 1, 1},
    {NidsExtremes::both_correlation, 4, 5, 1, 0.00333F, 1},
    {NidsExtremes::difference, 7, 4, 100, 1, 2},
    {NidsExtremes::maximum_tenths, 0, 4, 10, 1, 1},
    {NidsExtremes::maximum_hundredths, 0, 4, 100, 1, 2},
    {NidsExtremes::maximum_unlabelled, 0, 4, 1, 1, -1},
});
constexpr bool rules_stand_in_order() {
    for (std::size_t i = 0; i < kExtremeRules.size(); ++i)
        if (static_cast<std::size_t>(kExtremeRules[i].rule) != i) return false;
    return true;
}
static_assert(rules_stand_in_order());

const ExtremeRule &extreme_rule(const NidsProduct &product) {
    return kExtremeRules[static_cast<std::size_t>(product.extremes)];
}

bool is_mosaic(const NidsInfo &info) {
    return info.source > kLastRadarSource;
}

void set_name_and_size(const NidsProduct &product, NidsInfo &info) {
    std::string_view name;
    if (is_mosaic(info)) {
        const NidsMosaic *mosaic = NIDS_find_mosaic(info.code);
        // A mosaic without a size of its own has that of the product before.
        if (mosaic != nullptr && !is_missing(mosaic->bin_km)) info.resolution = mosaic->bin_km;
        if (mosaic != nullptr) name = mosaic->name;
        info.range = 0;
    } else {
        name = product.name;
        info.resolution = product.bin_nm;
        if (!name.empty()) info.range = product.range_nm;
    }
    info.name = name.empty() ? format_text("Not supported - %d", info.code) : std::string(name);
}

void set_grid_size(const NidsReader &reader, NidsInfo &info) {
    info.columns = info.rows = kPlainGrid;
    if (info.packet == kPacketRaster || info.packet == kPacketDigitalPrecip)
        info.columns = info.rows = reader.packet.raster.rows;
    else if (info.packet == kPacketRadial || info.packet == kPacketDigitalRadial)
        info.columns = info.rows = 2 * reader.packet.radial.bins;
    if (is_mosaic(info)) info.columns = reader.blocks.description.p[10];
}

/// Plane units of one bin at the radar.
float bin_in_plane(float bin_nm, float latitude) {
    if (is_missing(bin_nm)) return bin_nm;
    const int projection = MAP_get_proj();
    MAP_proj(kProjPolar);
    const float size = MAP_factor(latitude) * (bin_nm * kKmPerNauticalMile) / kKmPerPlaneUnit;
    MAP_proj(projection);
    return size;
}

PlotDomain mosaic_domain(const NidsInfo &info, float latitude, float longitude) {
    PlotDomain domain;
    DOM_init(domain);
    domain.proj = kProjLambert;
    domain.plat = 90;
    domain.plon = longitude;
    domain.p3 = 33;
    domain.p4 = 45;
    domain.p5 = 1;
    domain.clat = latitude;
    domain.clon = longitude;
    domain.dx = domain.dy = info.resolution / kKmPerPlaneUnit;
    domain.nx = info.columns;
    domain.ny = info.rows;
    return domain;
}

PlotDomain radar_domain(const NidsInfo &info, NidsGrid grid, float latitude, float longitude) {
    PlotDomain domain;
    DOM_init(domain);
    domain.proj = kProjPolar;
    domain.clat = latitude;
    domain.clon = longitude;
    domain.nx = info.columns;
    domain.ny = info.rows;
    switch (grid) {
    case NidsGrid::screen:
        domain.proj = kProjPixel;
        domain.clat = domain.clon = 0;
        domain.dx = domain.dy = kScreenSize;
        break;
    case NidsGrid::precipitation:
        // The grid of the limited-fine-mesh model stands on this meridian.
        domain.plat = 90;
        domain.plon = -105;
        domain.dx = domain.dy = info.resolution; // this product's size is in plane units
        break;
    case NidsGrid::radar:
        domain.plat = latitude;
        domain.plon = longitude;
        // Half as wide again as high, as the screen is.
        domain.nx = info.columns * 3 / 2 + 1;
        domain.ny = info.rows + 1;
        domain.dx = domain.dy = bin_in_plane(info.resolution, latitude);
        break;
    }
    return domain;
}

void set_domain(const NidsBlocks &blocks, NidsInfo &info) {
    const float latitude = blocks.latitude(), longitude = blocks.longitude();
    info.domain = is_mosaic(info) ? mosaic_domain(info, latitude, longitude)
                                  : radar_domain(info, blocks.product().grid, latitude, longitude);
}

void set_extremes(const NidsBlocks &blocks, NidsInfo &info) {
    const ExtremeRule &rule = extreme_rule(blocks.product());
    const auto value = [&](unsigned word) {
        return word == 0 ? 0.0F : static_cast<float>(blocks.description.p[word]) / rule.divisor * rule.factor;
    };
    info.minimum = value(rule.minimum_word);
    info.maximum = value(rule.maximum_word);
}

std::string begin_label(int days, int minutes) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    NIDS_julian_date(days, year, month, day);
    NIDS_dec_time(minutes * 60, hour, minute, second);
    return format_text(" B=%d/%.2d:%.2d", day, hour, minute);
}

std::string part_label(NidsLabelPart part, const NidsDescription &description) {
    const auto &p = description.p;
    switch (part) {
    case NidsLabelPart::none: break;
    case NidsLabelPart::begin_p5: return begin_label(p[5], p[6]);
    case NidsLabelPart::begin_p1: return begin_label(p[1], p[2]);
    case NidsLabelPart::storm_motion: return format_text(" Stm=%.0f-%.0f", p[9] / 10.0, p[8] / 10.0);
    case NidsLabelPart::layer: return format_text(" Lyr=%d-%d", p[5], p[6]);
    }
    return {};
}

std::string extremes_label(const NidsInfo &info, const ExtremeRule &rule) {
    const double minimum = static_cast<double>(info.minimum), maximum = static_cast<double>(info.maximum);
    if (rule.decimals < 0) return {};
    if (rule.minimum_word != 0)
        return format_text(" Mn,Mx=%.*f,%.*f", rule.decimals, minimum, rule.decimals, maximum);
    return format_text(" Mx=%.*f", rule.decimals, maximum);
}

void set_label(const NidsBlocks &blocks, NidsInfo &info) {
    constexpr std::array<std::string_view, 3> kModes{"Md=mt", "Md=cl", "Md=pr"};
    const NidsProduct &product = blocks.product();
    const auto mode = static_cast<std::size_t>(info.mode);
    std::string label(mode < kModes.size() ? kModes[mode] : std::string_view{});
    if (is_mosaic(info))
        label += format_text(" Res=%3.1f", static_cast<double>(info.resolution));
    else if (product.label_range)
        label += format_text(" Rng=%.0f(%.1f)", static_cast<double>(info.range),
                             static_cast<double>(info.resolution));
    if (product.elevation == NidsElevation::labelled)
        label += format_text(" El=%.1f", static_cast<double>(info.elevation));
    label += part_label(product.label, blocks.description);
    label += extremes_label(info, extreme_rule(product));
    info.label = label;
}

void set_date(const NidsDescription &description, NidsInfo &info) {
    info.date = DateRecord{};
    MESS_print(kOut4, "Volume Scan date: %d\n", description.scan_days);
    NIDS_julian_date(description.scan_days, info.date.year, info.date.month, info.date.day);
    MESS_print(kOut4, "Volume Scan time: %d\n", description.scan_seconds);
    NIDS_dec_time(description.scan_seconds, info.date.hour, info.date.minute, info.date.second);
}

/// Two codes that agree and a place on the earth: bytes that are no product hardly have both.
bool makes_sense(const NidsBlocks &blocks) {
    const NidsDescription &description = blocks.description;
    constexpr int kMostLatitude = 90000, kMostLongitude = 180000; // thousandths of a degree
    const auto within = [](int value, int most) { return value >= -most && value <= most; };
    return description.code == blocks.message.code && within(description.latitude, kMostLatitude) &&
           within(description.longitude, kMostLongitude);
}

/// The image begins within the product, which of a cut file is longer than what is there.
bool image_within(const NidsReader &reader) {
    const std::size_t offset = std::size_t{reader.blocks.description.symbology} * 2;
    const auto announced = static_cast<std::size_t>(std::max(reader.blocks.message.length, 0));
    return offset <= std::max(announced, reader.stream.extent().view);
}

} // namespace

/// Reads up to the first packet's header; its code, or 0 when the product has no image.
int NidsReader::first_packet() {
    int code = 0;
    if (!symbology() || !symbology_layer()) return 0;
    return next_packet(code) == NidsRead::done ? code : 0;
}

bool NidsReader::read_header(NidsInfo &record) {
    blocks = {};
    packet = {};
    if (!stream.rewind() || !stream.select_product()) return false;
    if (!message_header() || !product_description() || !makes_sense(blocks)) return false;
    const int first = first_packet();
    if (stream.is_encrypted() || !image_within(*this)) return false;

    const NidsDescription &description = blocks.description;
    record.source = blocks.message.source;
    record.mode = description.mode;
    record.code = blocks.message.code;
    record.packet = first;
    record.thresholds = blocks.thresholds;
    record.elevation =
        blocks.product().elevation == NidsElevation::none ? 0 : static_cast<float>(description.p[3]) / 10;
    set_name_and_size(blocks.product(), record);
    set_grid_size(*this, record);
    set_domain(blocks, record);
    set_extremes(blocks, record);
    set_label(blocks, record);
    set_date(description, record);
    return true;
}
