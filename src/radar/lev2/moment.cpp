#include "radar/lev2/moment.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "radar/common/file_date.h"
#include "radar/common/level_lists.h"

namespace {

/// Cuts that share their angle differ by less (degrees).
constexpr float kSameAngle = 0.1F;

/// In the order of the moments.
constexpr std::array<Lev2Moment, kLev2Types> kMoments{
    Lev2Moment{
        "ref", "Reflectivity (Dbz)", "dBZ",
        "-50:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,"
        "55:magenta,60:lmagenta,65:dgray,70:lgray,75:white",
        0},
    Lev2Moment{"vel", "Velocity (m/s)", "m/s", kDopplerLevels, 0},
    Lev2Moment{"spect", "Spectrum width (m/s)", "m/s", kDopplerLevels, 0},
    Lev2Moment{"zdr", "Differential reflectivity (dB)", "dB",
               "-50:off,-8:dgray,-2:lgray,-.5:white,0:blue,.25:lblue,.5:cyan,1:lcyan,1.5:green,2:lgreen,"
               "2.5:yellow,3:brown,4:red,5:lred,6:magenta",
               1},
    Lev2Moment{"phi", "Differential phase (deg)", "deg",
               "-50:off,0:dgray,30:blue,60:lblue,90:cyan,120:lcyan,150:green,180:lgreen,210:brown,240:yellow,"
               "270:red,300:lred,330:magenta",
               0},
    Lev2Moment{
        "rho", "Correlation coefficient", "",
        "-50:off,0:dgray,.45:lgray,.65:blue,.75:lblue,.8:cyan,.85:lcyan,.9:green,.93:lgreen,.95:yellow,"
        ".96:brown,.97:red,.98:lred,.99:magenta,1:lmagenta",
        2},
    Lev2Moment{"cfp", "Clutter power removed (dB)", "dB",
               "-50:off,0:blue,5:lblue,10:cyan,15:lcyan,20:green,25:lgreen,30:brown,35:yellow,40:red,45:lred,"
               "50:magenta,60:lmagenta",
               0}};

std::string moments_text(const Lev2Cut &cut) {
    std::string text;
    for (std::size_t i = 0; i < kLev2Types; ++i) {
        const Lev2CutMoment &m = cut.moments[i];
        if (m.gates == 0) continue;
        text += format_text("  %s %dx%.3f", std::string(kMoments[i].keyword).c_str(), m.gates,
                            static_cast<double>(m.gate_km));
    }
    return text;
}

} // namespace

const Lev2Moment &LEV2_moment(Lev2Type type) {
    return kMoments[static_cast<std::size_t>(type)];
}

bool LEV2_decode_choice(std::string_view text, Lev2Choice &choice) {
    const auto *found =
        std::ranges::find_if(kMoments, [&](const Lev2Moment &m) { return begins_with(text, m.keyword); });
    if (found == kMoments.end()) return false;
    choice = Lev2Choice{};
    choice.type = static_cast<Lev2Type>(found - kMoments.begin());
    const std::string_view rest = text.substr(found->keyword.size());
    Scanner scanner(rest);
    if (!rest.empty() && rest.front() == '@') {
        scanner.literal('@');
        choice.angle = scanner.real().value_or(kMissingF);
    } else {
        choice.number = scanner.integer().value_or(choice.number);
    }
    return true;
}

void LEV2_check_choice(std::string_view text) {
    const auto *found =
        std::ranges::find_if(kMoments, [&](const Lev2Moment &m) { return begins_with(text, m.keyword); });
    if (found == kMoments.end()) {
        std::vector<std::string_view> known{kLev2ListWord};
        for (const Lev2Moment &moment : kMoments) known.push_back(moment.keyword);
        WORD_unknown("variable", text.substr(0, text.find_first_of("@0123456789")), known);
        return;
    }
    std::string_view cut = text.substr(found->keyword.size());
    if (cut.empty() || (cut.front() == '@' ? WORD_is_number(cut.substr(1)) : WORD_is_integer(cut))) return;
    WORD_not("variable", text, "a moment with the number of a cut, or @ and an angle");
}

std::optional<int> LEV2_nearest_cut(std::span<const Lev2Cut> cuts, const Lev2Choice &choice) {
    const Lev2Cut *nearest = nullptr;
    const auto distance = [&](const Lev2Cut &cut) { return std::abs(cut.elevation - choice.angle); };
    for (const Lev2Cut &cut : cuts) {
        if (cut.moments[static_cast<std::size_t>(choice.type)].gates == 0) continue;
        if (nearest == nullptr || distance(cut) < distance(*nearest) - kSameAngle) nearest = &cut;
    }
    if (nearest == nullptr) return {};
    return nearest->number;
}

void LEV2_print_cuts(std::span<const Lev2Cut> cuts) {
    MESS_print(kPrint, "Cut  Angle  Radials  Width  Nyquist  Time      Moments (gates x km)\n");
    for (const Lev2Cut &cut : cuts) {
        int hour = 0, minute = 0, second = 0;
        NIDS_dec_time(cut.time / 1000, hour, minute, second);
        MESS_print(kPrint, "%3d  %5.1f  %7d  %5.1f  %7.1f  %02d:%02d:%02d%s\n", cut.number,
                   static_cast<double>(cut.elevation), cut.radials,
                   static_cast<double>(cut.azimuth_resolution), static_cast<double>(cut.nyquist), hour,
                   minute, second, moments_text(cut).c_str());
    }
}
