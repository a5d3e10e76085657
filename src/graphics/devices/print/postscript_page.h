#pragma once
/// What stands around the drawing in a PostScript file, and how a drawing joins the page of a finished file.

#include <cstdint>
#include <string>
#include <string_view>

#include "graphics/devices/print/postscript_options.h"

inline constexpr std::string_view kPsCreator = "%%Creator: VYX Postscript Processor-2.0\n";
inline constexpr std::string_view kPsPlotEnd = "%%End of plot\n";
inline constexpr std::string_view kPsPageEnd = "saveobj restore\nshowpage\nend\n";
inline constexpr std::string_view kPsFileEnd = "%%EOF\n";
/// The page's state is saved; restored, the page is as it was before anything was placed.
inline constexpr std::string_view kPsSave = "/saveobj save def\n";
inline constexpr std::string_view kPsRestore = "saveobj restore\n";

/// Asks for a sheet that holds the page, unless that is the upright letter sheet that printers start with. A
/// printer without such a sheet goes on with the one it has.
std::string ps_sheet_request(const PostScriptOptions &options);
std::string ps_color_reset(const PostScriptOptions &options);
/// Definitions, place, colour and line of a page, up to where the drawing begins.
std::string ps_page_setup(const PostScriptOptions &options, const EpsLayout &eps);

/// A file that something is to be appended to.
struct PsTarget {
    enum class Kind {
        absent,       ///< or empty
        finished,     ///< a file of this program's, with its ending
        encapsulated, ///< nothing can be appended
        foreign       ///< anything else
    };
    Kind kind = Kind::foreign;
    std::uint64_t page_end = 0; ///< bytes before kPsPageEnd; of a finished file
    std::string sheet;          ///< its width and height in points
    std::string setup;          ///< of its last page, as ps_page_setup makes it
};
PsTarget ps_look_at_target(const std::string &name);
/// Takes off what stands behind the last drawing. False when the file cannot be changed, for the
/// reason in errno.
[[nodiscard]] bool ps_take_off_end(const std::string &name, const PsTarget &target);
/// The file as it was before something was appended that could not be written.
void ps_put_back_end(const std::string &name, const PsTarget &target);
/// Width and height in points of the sheet that the page is for, as in PsTarget.
std::string ps_sheet(const PostScriptOptions &options);
