#include "radar/nids/levels.h"

#include <array>

#include "radar/common/level_lists.h"

namespace {

struct Row {
    int first, last; ///< product codes
    const NidsLevelRule &rule;
};

constexpr NidsLevelRule kByThresholds{
    "off,blue,lblue,cyan,lcyan,green,lgreen,brown,yellow,red,lred,magenta,lmagenta,dgray,lgray,white", true};
constexpr NidsLevelRule kReflectivity{kReflectivityLevels};
constexpr NidsLevelRule kVelocity{kDopplerLevels};
constexpr NidsLevelRule kStormRelative{
    "-50:lblue,-40:cyan,-30:lcyan,-22:green,-10:lgreen,-5:dgray,-1:off,0:lgray,"
    "5:yellow,10:brown,22:lred,30:red,40:lmagenta,50:magenta"};
constexpr NidsLevelRule kWindProfile{"lblue,lcyan,lgreen,yellow,lred", false, 0.0F, 4.0F, 0.0F, 16.0F};
constexpr NidsLevelRule kPrecipitation{
    "0.01:blue,.1:lblue,.2:cyan,.5:lcyan,.8:green,1.0:lgreen,1.2:brown,1.5:yellow,"
    "1.8:red,2.0:lred,2.5:magenta,3.0:lmagenta,4.0:dgray,6.0:lgray,8.0:white"};
constexpr NidsLevelRule kLiquidAndTops{"-100:off,0:blue,5:lblue,10:cyan,15:lcyan,20:green,25:lgreen,30:brown,"
                                       "35:yellow,40:red,45:lred,50:magenta,"
                                       "55:lmagenta,60:dgray,65:lgray,70:white"};
constexpr NidsLevelRule kDifferentialReflectivity{"-7.0:blue,-6.3:lblue,-4.9:cyan,-3.5:lcyan,-2.5:green,-1.9:"
                                                  "lgreen,-.9:dgray,0:off,.1:lgray,1.0:yellow,2.0:brown,"
                                                  "2.6:lred,3.6:red,5.0:lmagenta,6.4:magenta"};
constexpr NidsLevelRule kCorrelation{
    "-200:off,-1.:blue,-.8:lblue,-.6:cyan,-.4:lcyan,-.2:green,0:yellow,.2:brown,"
    ".4:lred,.6:red,.8:lmagenta,1.:magenta"};
constexpr NidsLevelRule kHydrometeors{
    "-100:off,10:magenta,20:lmagenta,30:cyan,40:blue,50:lblue,60:dgreen,70:green,"
    "80:lgreen,90:lcyan,100:red,140:dgray,150:lgray"};
constexpr NidsLevelRule kAccumulation{
    "-100:off,.01:blue,.05:lblue,.1:cyan,.25:lcyan,.5:green,.75:lgreen,1:brown,"
    "1.25:yellow,1.5:red,2:lred,2.5:magenta,3:lmagenta,4:dgray,6:lgray,8:white"};

constexpr std::array kRows{
    Row{22, 27, kVelocity},       Row{32, 32, kReflectivity},    Row{48, 48, kWindProfile},
    Row{55, 56, kStormRelative},  Row{81, 81, kPrecipitation},   Row{94, 94, kReflectivity},
    Row{99, 99, kVelocity},       Row{134, 135, kLiquidAndTops}, Row{138, 138, kPrecipitation},
    Row{153, 153, kReflectivity}, Row{154, 155, kVelocity},      Row{158, 159, kDifferentialReflectivity},
    Row{161, 161, kCorrelation},  Row{163, 163, kCorrelation},   Row{165, 165, kHydrometeors},
    Row{170, 176, kAccumulation}, Row{177, 177, kHydrometeors},  Row{180, 180, kReflectivity},
    Row{182, 182, kVelocity},     Row{186, 186, kReflectivity}};

constexpr bool ascending() {
    for (std::size_t i = 0; i < kRows.size(); ++i)
        if (kRows[i].first > kRows[i].last || (i > 0 && kRows[i].first <= kRows[i - 1].last)) return false;
    return true;
}
static_assert(ascending(), "each product code has one level rule");

} // namespace

const NidsLevelRule &NIDS_level_rule(int code) {
    for (const Row &row : kRows)
        if (code >= row.first && code <= row.last) return row.rule;
    return kByThresholds;
}
