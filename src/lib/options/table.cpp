#include "lib/options/table.h"

#include <algorithm>
#include <array>

namespace {

using Kind = ResourceKind;
using Row = ResourceDescriptor;

/// A resource that other programs of the package list: known by name, without option or environment key here.
constexpr Row other(int id, std::string_view name) {
    return {id, name, "", 0, "", Kind::text, "", ""};
}

// clang-format off
/// What the program accepts. The order is that of the help listing, and of the matching of options that are
/// only begun.
constexpr std::array kProgramRows{
    Row{57, "help", "h", 0, "vyxhelp", Kind::help, "-h", "Print this help"},
    Row{3, "batch", "ba", 0, "vyxbatch", Kind::batch, "-ba", "Run program in batch mode"},
    Row{73, "message", "me", 0, "vyxmess", Kind::message, "-me level", "Message level to be displayed:\nnone,print,error,warn,mess,out1,*out2,out3,out4,debug"},
    Row{48, "file_path", "fp", 0, "vyxfile", Kind::directory, "-fp path", "File path"},
    Row{41, "data_path", "dp", 0, "vyxdata", Kind::directory, "-dp path", "Raw data path"},
    Row{39, "con_path", "cp", 0, "vyxcon", Kind::directory, "-cp path", "Converted data path"},
    Row{55, "grid_path", "gp", 0, "vyxgrid", Kind::directory, "-gp path", "Gridded data path"},
    Row{94, "raw_path", "rp", 0, "vyxraw", Kind::directory, "-rp path", "Raw files path"},
    Row{63, "image_path", "ip", 0, "vyximage", Kind::text, "-ip path", "Image file path"},
    Row{106, "watch_path", "wp", 0, "vyxwatch", Kind::directory, "-wp path", "Watch file data path"},
    Row{112, "text_path", "tp", 0, "vyxtext", Kind::directory, "-tp path", "Text file path"},
    Row{113, "model_path", "mp", 0, "vyxmpath", Kind::directory, "-mp path", "Model file path"},
    Row{114, "sat_path", "sp", 0, "vyxsat", Kind::directory, "-sp path", "Satellite file path"},
    Row{6, "city_file", "cf", 0, "vyxcity", Kind::text, "-cf file", "City database file name"},
    Row{72, "map_file", "mf", 0, "vyxmap", Kind::text, "-mf file[,file]", "Map database files"},
    Row{111, "input", "inp", 0, "vyxin", Kind::text, "-in type", "Type of input"},
    Row{82, "output", "ou", 0, "vyxout", Kind::text, "-ou type", "Type of output"},
    Row{76, "name_conv", "nc", 0, "vyxnameconv", Kind::name_conv, "-nc type", "Naming convention file name"},
    Row{64, "in_file", "if", 0, "vyxinfile", Kind::text, "-if type", "Input data file type"},
    Row{80, "out_file", "of", 0, "vyxoutfile", Kind::text, "-of type", "Output file type"},
    Row{47, "file_param", "pf", 0, "vyxfileparam", Kind::file_param, "-pf param", "File parameters: use,calc,over,app"},
    Row{40, "current", "cu", 0, "vyxcurrent", Kind::current, "-cu [hour]", "Use current data file"},
    Row{58, "hour", "ho", 0, "vyxhour", Kind::hour, "-ho hour", "Actual hour of the file"},
    Row{78, "num_hour", "nh", 0, "vyxnumhour", Kind::text, "-nh hour[,step]", "Number of hours to view"},
    Row{60, "identifier", "id", 0, "vyxident", Kind::text, "-id ident", "Specific station identifier"},
    Row{84, "plot_domain", "pd", 0, "vyxdomain", Kind::domain, "-pd region or [proj],clat,clon[,nx,ny][,dx,dy]", "Output plot domain"},
    Row{110, "grid_domain", "gd", 0, "vyxgrddomain", Kind::domain, "-gd region or [proj],clat,clon[,nx,ny][,dx,dy]", "Grid domain"},
    Row{96, "region", "re", 0, "vyxregion", Kind::region, "-re region or [proj],clat,clon[,nx,ny][,dx,dy]", "Region to be used for plotting and gridding"},
    Row{98, "stat_prior", "pr", 0, "vyxprior", Kind::integer, "-pr prior", "Priority of stations used in the plot"},
    Row{105, "variable", "va", 0, "vyxvar", Kind::text, "-va var", "Variable to be plotted or contoured"},
    Row{89, "plot_type", "pl", 0, "vyxplot", Kind::plot_type, "-pl type", "Plot type: cf,lcf,ln,dln,ndln,value,none"},
    Row{88, "plot_scale", "sc", 0, "vyxscale", Kind::real, "-sc scale", "Text and wind vector scale factor"},
    Row{85, "plot_format", "fm", 0, "vyxformat", Kind::text, "-fm format", "Numeric format"},
    Row{86, "plot_param", "pp", 0, "vyxpltparam", Kind::text, "-pp param", "Plot parameters"},
    Row{44, "draw", "dr", 0, "vyxdraw", Kind::draw, "-dr param[,...]", "Draw components: text,data,sum,map,none"},
    Row{69, "label", "la", 0, "vyxlabel", Kind::text, "-la label", "Plot labels"},
    Row{37, "con_interval", "in", 0, "vyxconint", Kind::real, "-in intrvl", "Contour interval"},
    Row{35, "con_base", "cb", 0, "vyxconbase", Kind::real, "-cb base", "Color fill contour/vector base value"},
    Row{51, "font_list", "fl", 0, "vyxfontlist", Kind::text, "-fl list", "List of fonts to use"},
    Row{27, "color_table", "ct", 0, "vyxclrtbl", Kind::text, "-ct file", "Color table file name"},
    Row{28, "color_text", "cot", 0, "vyxclrtext", Kind::text, "-cot clr", "Text color"},
    Row{13, "color_data", "cod", 0, "vyxclrdata", Kind::text, "-cod clr", "Data plotting color"},
    Row{23, "color_map", "com", 0, "vyxclrmap", Kind::text, "-com clr", "line map color"},
    Row{17, "color_grid", "cogr", 0, "vyxclrgrid", Kind::text, "-cogr clr", "grid color"},
    Row{22, "color_line", "coln", 0, "vyxclrln", Kind::text, "-coln clr", "Lat-lon line color"},
    Row{31, "color_wind", "cowd", 0, "vyxclrwind", Kind::text, "-cowd clr", "Wind barb colors"},
    Row{108, "color_watch", "cowa", 0, "vyxclrwatch", Kind::text, "-cowa sclr,tclr", "Watch box colors"},
    Row{10, "color_cmap", "cocm", 0, "vyxclrcmap", Kind::text, "-cocm clr", "Fill map color"},
    Row{11, "color_cont", "coco", 0, "vyxclrcont", Kind::text, "-coco clr", "Line contour color"},
    Row{15, "color_fill", "cof", 0, "vyxclrfill", Kind::text, "-cof clr[,...]", "Fill contour colors"},
    Row{20, "color_label", "cola", 0, "vyxclrlab", Kind::text, "-cola clr", "Line label color"},
    Row{8, "color_clabel", "cocl", 0, "vyxclrclab", Kind::text, "-cocl clr", "Fill label color"},
    Row{46, "device", "de", 0, "vyxdevice", Kind::device, "-de dev[,name]", "Output device: d,p,q,w,m"},
    Row{102, "title", "ti", 0, "vyxtitle", Kind::text, "-ti title", "Window title"},
    Row{59, "icon", "ic", 0, "vyxicon", Kind::switch_, "-ic", "Open window iconified"},
    Row{2, "background", "bg", 0, "vyxback", Kind::text, "-bg clr", "Background color"},
    Row{53, "geometry", "ge", 0, "vyxgeometry", Kind::text, "-ge wxh+x+y", "Window geometry"},
    Row{50, "filename", "", 10, "vyxfilename", Kind::list, "file [file...]", "Input file names"},
};

/// What other programs of the package accept: rows whose names a resource file may use.
constexpr std::array kOtherRows{
    Row{49, "filename", "", 1, "vyxfilename", Kind::text_copy, "file", "Input file name"},
    Row{68, "input", "in", 0, "vyxin", Kind::text, "-in type", "Type of input"},
    other(5, "bull_file"),
    other(9, "color_cloud"),
    other(16, "color_front"),
    other(18, "color_hodo"),
    other(19, "color_hodtxt"),
    other(24, "color_pop"),
    other(26, "color_sound"),
    other(29, "color_therm"),
    other(30, "color_thrmtxt"),
    other(32, "color_wx"),
    other(33, "command"),
    other(34, "command"),
    other(45, "decode_hour"),
    other(52, "forecast"),
    other(54, "grid_num"),
    other(56, "grid_type"),
    other(65, "in_file"),
    other(67, "ingestor"),
    other(71, "level"),
    other(74, "model"),
    other(79, "object_param"),
    other(83, "parameter"),
    other(92, "product"),
    other(99, "state"),
    other(100, "table"),
    other(101, "time"),
    other(104, "value"),
    other(107, "window_num"),
    other(109, "log_file"),
};

// clang-format on

constexpr const Row *row_of(int id) {
    for (const std::span<const Row> rows :
         {std::span<const Row>(kProgramRows), std::span<const Row>(kOtherRows)})
        for (const Row &row : rows)
            if (row.id == id) return &row;
    return nullptr;
}

/// Each row is the first with its id.
constexpr bool ids_are_unique() {
    const auto is_first = [](const Row &row) { return row_of(row.id) == &row; };
    return std::ranges::all_of(kProgramRows, is_first) && std::ranges::all_of(kOtherRows, is_first);
}
static_assert(ids_are_unique());

constexpr bool is_keyed(const Row &row) {
    return row.position == 0;
}
constexpr std::size_t kKeyedCount = std::ranges::count_if(kProgramRows, is_keyed);

/// The ids of the program's rows, in their order.
template <std::size_t Count> constexpr std::array<int, Count> program_ids(bool keyed) {
    std::array<int, Count> ids{};
    std::size_t used = 0;
    for (const Row &row : kProgramRows)
        if (is_keyed(row) == keyed) ids[used++] = row.id;
    return ids;
}
constexpr auto kKeyedIds = program_ids<kKeyedCount>(true);
constexpr auto kPositionalIds = program_ids<kProgramRows.size() - kKeyedCount>(false);

/// Two options of the program with one abbreviation or one name would hide each other.
constexpr bool program_options_are_distinct() {
    for (std::size_t i = 0; i < kProgramRows.size(); ++i) {
        const Row &row = kProgramRows[i];
        if (!is_keyed(row)) continue;
        if (row.option.empty()) return false;
        for (std::size_t k = i + 1; k < kProgramRows.size(); ++k) {
            const Row &later = kProgramRows[k];
            if (is_keyed(later) && (later.option == row.option || later.name == row.name)) return false;
        }
    }
    return true;
}
static_assert(program_options_are_distinct());

} // namespace

const ResourceDescriptor *RES_descriptor(int id) {
    return row_of(id);
}

std::span<const int> RES_keyed_ids() {
    return kKeyedIds;
}

std::span<const int> RES_positional_ids() {
    return kPositionalIds;
}
