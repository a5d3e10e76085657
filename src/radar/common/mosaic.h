#pragma once
/// What formats of national mosaics share: a grid of levels in runs, line by line, drawn as filled cells. A
/// format reads; everything else of its driver is here.

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lib/resources/list_words.h"
#include "lib/system/calendar.h"
#include "lib/system/stream.h"
#include "plot/domain/plot_domain.h"
#include "radar/common/cells.h"
#include "radar/common/driver.h"
#include "radar/common/mosaic_cells.h"
#include "radar/common/options.h"
#include "radar/common/readout.h"

/// Lines or columns of a mosaic at most; the largest known have 5760. More is taken for damage.
inline constexpr int kMostMosaicSide = 32768;
/// A value below every level: no echo.
inline constexpr float kMosaicNoEcho = -100.0F;

struct MosaicInfo {
    std::string title;
    DateRecord date;
    PlotDomain domain; ///< the product's own grid
};

struct MosaicLine {
    int number = 0; ///< from 0 at the top
    std::vector<MosaicRun> runs;
};

/// Why the lines of a mosaic ended.
enum class MosaicEnd {
    complete,   ///< all lines, or the format's mark of its end
    cut,        ///< the file ends before
    damaged,    ///< what follows is no line
    beyond_grid ///< more follows than the grid has room for, which was left out
};

/// The value of each level.
using MosaicValues = std::array<float, kCellLevels>;

/// How one format is read. All of the one stream that is open; lines come in order.
struct MosaicFormat {
    const char *name;                                      ///< as procedures and messages spell it
    bool (*read_header)(Stream &stream, MosaicInfo &info); ///< false: no lines will come
    bool (*next_line)(Stream &stream, MosaicLine &line);
    MosaicEnd (*end)();              ///< asked for when there are no more lines
    const MosaicValues &(*values)(); ///< of the file whose header was read
    float first_edge = 0;            ///< lines that the first line's upper edge lies below the grid's
};

struct MosaicOptions {
    RadarOptions radar;
    int run_length = 0; ///< cells of a polygon; 0: by the projections
};

/// The driver of one format.
class MosaicDriver {
public:
    explicit MosaicDriver(const MosaicFormat &format) : format_(format) {}

    /// False after a warning. A file without a good header is open, and has no lines: what is drawn of it is
    /// empty, and counts as missing.
    [[nodiscard]] bool open(std::string_view name);
    void close();
    [[nodiscard]] bool rewind();
    void set_date(const DateRecord *date);
    /// Takes the resource "plot_param": "run", and "refresh" and "strict" of every radar driver.
    void take_params();
    /// `plot` and `mouse` are what the window calls, `next` looks for a newer file.
    void plot(PlotDomain &domain, const RadarSteps &steps);
    void next_file(const RadarSteps &steps);
    void plot_frame();
    /// Draws the mosaic of the open file, and sets the labels. Cells go to `sink`, or are filled when it is
    /// null.
    void draw(const CellSink *sink = nullptr);
    /// What the window's keys and buttons do.
    static void on_event(std::string_view event, float x, float y, RadarReader read);
    /// A RadarReader's work: walks the file anew to the cell.
    [[nodiscard]] bool read_place(const std::string &file, RadarReading &reading) const;

    [[nodiscard]] const MosaicInfo &info() const { return info_; }

private:
    [[nodiscard]] RadarSteps complete(RadarSteps steps) const;
    [[nodiscard]] bool is_whole();
    [[nodiscard]] MosaicGrid grid(const MosaicInfo &info) const;
    void tell_end(int lines);

    const MosaicFormat &format_;
    Stream stream_;
    std::string name_; ///< of the open file
    bool readable_ = false;
    MosaicInfo info_;
    DateRecord base_date_; ///< requested date
    DateRecord file_date_;
    MosaicOptions options_;
    std::string told_; ///< the file that was last told what it lacks
};

/// The words of "plot_param" that mosaics take.
std::span<const WordRule> MOSAIC_param_words();
/// Tells every word of the resource "variable" but "watch".
void MOSAIC_check_variables();
