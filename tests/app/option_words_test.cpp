/// Every option with a word or number that means nothing, and with those that mean something.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/input_type.h"
#include "app/option_check.h"
#include "graphics/devices/print/postscript_options.h"
#include "graphics/text/font.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/options/table.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/resources/start.h"
#include "lib/scratch_dir.h"
#include "lib/text/strings.h"
#include "lib/time/fixed_time.h"
#include "plot/colour/look_check.h"
#include "plot/colour/named_colors.h"
#include "radar/lev2/plot.h"
#include "radar/nids/plot.h"

namespace {

void decode_device() {
    const std::vector<std::string> spec = RES_getvals("device");
    PostScriptOptions options;
    bool inverse = false;
    for (std::size_t i = 2; i < spec.size(); ++i) apply_postscript_options(options, spec[i], inverse);
}

/// What the program tells of a command line before it draws, one line each.
std::vector<std::string> told(const std::string &line) {
    std::vector<std::string> words = parse_string("vyxradar " + line, ' ');
    std::vector<const char *> arguments;
    for (const std::string &word : words) arguments.push_back(word.c_str());
    RES_clear();
    MESS_set(0, kPrint | kError | kWarn);
    FILE_reset_time();
    GPH_set_def_font("");
    testing::internal::CaptureStderr();
    RES_init(static_cast<int>(arguments.size()), arguments.data(), RES_keyed_ids(), RES_positional_ids());
    check_options();
    RAD_cvt_in_file();
    if (FLAG_get(kFlagInputType) == kInputNids) NIDS_check_variables();
    if (FLAG_get(kFlagInputType) == kInputLev2) LEV2_check_variables();
    decode_device();
    CLR_read_table("");
    gsetup_fonts();
    for (const std::string &word : RES_getvals("plot_param"))
        if (word.starts_with("font=")) GPH_set_def_font(word.substr(5));
    PLT_check_looks();
    return parse_string(testing::internal::GetCapturedStderr(), '\n');
}

struct Misfit {
    const char *arguments;
    const char *option, *word;
    const char *nearest; ///< null: none is told
};

constexpr Misfit kMisfits[]{
    {"-plot_domian us", "Options", "-plot_domian", "-plot_domain"},
    {"-devcie p,a.ps", "Options", "-devcie", "-device"},
    {"--lable ul:x", "Options", "-lable", "-label"},
    {"-iinp nids", "Options", "-iinp", "-inp"},
    {"-zoom", "Options", "-zoom", nullptr},
    {"-dr foo", "-dr (draw)", "foo", nullptr},
    {"-dr map,dtaa", "-dr (draw)", "dtaa", "data"},
    {"-dr=-txet", "-dr (draw)", "txet", "text"},
    {"-dr text_xx", "-dr (draw)", "text_xx", "text_ul"},
    {"-dr nnoe", "-dr (draw)", "nnoe", "none"},
    {"-pl foo", "-pl (plot_type)", "foo", nullptr},
    {"-pl valu", "-pl (plot_type)", "valu", "value"},
    {"-pl cff", "-pl (plot_type)", "cff", "cf"},
    {"-pf ovre", "-pf (file_param)", "ovre", "over"},
    {"-pf keep", "-pf (file_param)", "keep", nullptr},
    {"-me wanr", "-me (message)", "wanr", "warn"},
    {"-me warn,+debgu", "-me (message)", "debgu", "debug"},
    {"-me line=abc,warn", "-me (message)", "abc", nullptr},
    {"-inp nidz", "-inp (input)", "nidz", "nids"},
    {"-inp atuo", "-inp (input)", "atuo", "auto"},
    {"-inp nids -if nidz", "-if (in_file)", "nidz", "nids"},
    {"-inp nids -if lve2:s=KLSX", "-if (in_file)", "lve2", "lev2"},
    {"-of gfi", "-of (out_file)", "gfi", "gif"},
    {"-of grid", "-of (out_file)", "grid", nullptr},
    {"-pp stie", "-pp (plot_param)", "stie", "site"},
    {"-pp site,brr", "-pp (plot_param)", "brr", "bar"},
    {"-pp pgn=x.png", "-pp (plot_param)", "pgn", "png"},
    {"-pp pngfile", "-pp (plot_param)", "pngfile", nullptr},
    {"-pp gif_intr", "-pp (plot_param)", "gif_intr", "gif_inter"},
    {"-pp dist30:60", "-pp (plot_param)", "dist30", "dist"},
    {"-pp site=1", "-pp (plot_param)", "site=1", nullptr},
    {"-pp super_res", "-pp (plot_param)", "super_res", "superres"},
    {"-pp strogn", "-pp (plot_param)", "strogn", "strong"},
    {"-pp bar=abc", "-pp (plot_param)", "abc", nullptr},
    {"-pp bar=5", "-pp (plot_param)", "5", nullptr},
    {"-pp dist=a", "-pp (plot_param)", "a", nullptr},
    {"-pp dist=1:2:3:4:5", "-pp (plot_param)", "1:2:3:4:5", nullptr},
    {"-pp clutter=x", "-pp (plot_param)", "x", nullptr},
    {"-pp range=far", "-pp (plot_param)", "far", nullptr},
    {"-pp numplt=2.5", "-pp (plot_param)", "2.5", nullptr},
    {"-pp lalo=x", "-pp (plot_param)", "x", nullptr},
    {"-pp min_size=1k", "-pp (plot_param)", "1k", nullptr},
    {"-pp conmin=low", "-pp (plot_param)", "low", nullptr},
    {"-pp fill=haat", "-pp (plot_param)", "haat", nullptr},
    {"-pp vp_size=2x2", "-pp (plot_param)", "2x2", nullptr},
    {"-pp shadow=big", "-pp (plot_param)", "big", nullptr},
    {"-pp font=romna", "-pp (plot_param)", "romna", "roman"},
    {"-pp min_szie=5", "-pp (plot_param)", "min_szie", "min_size"},
    {"-in abc", "-in (con_interval)", "abc", nullptr},
    {"-in 5x", "-in (con_interval)", "5x", nullptr},
    {"-cb >x", "-cb (con_base)", ">x", nullptr},
    {"-sc abc", "-sc (plot_scale)", "abc", nullptr},
    {"-pr high", "-pr (stat_prior)", "high", nullptr},
    {"-ho noon", "-ho (hour)", "noon", nullptr},
    {"-ho 18:3o", "-ho (hour)", "18:3o", nullptr},
    {"-ic=maybe", "-ic (icon)", "maybe", nullptr},
    {"-ba=off", "-ba (batch)", "off", nullptr},
    {"-inp nids -va foo", "-va (variable)", "foo", nullptr},
    {"-inp nids -va comp,trakc", "-va (variable)", "trakc", "track"},
    {"-inp nids -va vel1", "-va (variable)", "vel1", nullptr},
    {"-inp lev2 -va rfe2", "-va (variable)", "rfe", "ref"},
    {"-inp lev2 -va comp", "-va (variable)", "comp", nullptr},
    {"-inp lev2 -va ref@low", "-va (variable)", "ref@low", nullptr},
    {"-inp lev2 -va velx", "-va (variable)", "velx", nullptr},
    {"-de x,a.ps", "-de (device)", "x", nullptr},
    {"-de d,memory,color", "-de (device)", "color", nullptr},
    {"-de p,a.ps,colour", "-de (device)", "colour", "color"},
    {"-de p,a.ps,a5", "-de (device)", "a5", "a4"},
    {"-de p,a.ps,scale=big", "-de (device)", "scale=big", nullptr},
    {"-ge big", "-ge (geometry)", "big", nullptr},
    {"-ge 640", "-ge (geometry)", "640", nullptr},
    {"-cot nocolor", "-cot (color_text)", "nocolor", nullptr},
    {"-cod bleu", "-cod (color_data)", "bleu", "blue"},
    {"-com red:z3", "-com (color_map)", "z3", nullptr},
    {"-coln red:w", "-coln (color_line)", "w", nullptr},
    {"-cogr red:st=dhs", "-cogr (color_grid)", "dhs", "dsh"},
    {"-cocm red:fi=haat", "-cocm (color_cmap)", "haat", "hat"},
    {"-cola red:fo=romna", "-cola (color_label)", "romna", "roman"},
    {"-cowa yellow,#12345", "-cowa (color_watch)", "#12345", nullptr},
    {"-cof 10:blue,20:gren", "-cof (color_fill)", "gren", "green"},
    {"-cof blue-rde", "-cof (color_fill)", "rde", "red"},
    {"-bg blakc", "-bg (background)", "blakc", "black"},
};

TEST(OptionWords, EveryMisfitIsToldOnceWithItsOptionAndTheNearestWord) {
    for (const Misfit &c : kMisfits) {
        const std::vector<std::string> lines = told(std::string("-ba ") + c.arguments);
        ASSERT_EQ(lines.size(), 1U) << c.arguments << ": " << (lines.empty() ? "" : lines.back());
        const std::string &line = lines.front();
        EXPECT_TRUE(line.starts_with(std::string(c.option) + ": \"" + c.word + '"')) << line;
        const std::size_t at = line.find("the nearest is \"");
        EXPECT_EQ(at != line.npos, c.nearest != nullptr) << c.arguments << ": " << line;
        if (at == line.npos || c.nearest == nullptr) continue;
        EXPECT_NE(line.find(std::string("the nearest is \"") + c.nearest + '"'), line.npos) << line;
    }
    EXPECT_GE(std::size(kMisfits), 60U);
}

TEST(OptionWords, WhatIsRightIsSilent) {
    const char *const lines[]{
        "-inp nids -de p,page.ps,color file",
        "-plot_d=us -INP NIDS -de p,-,gray,land,eps,a4,sz=12x3,scale=0.5,lwidth=2 a b c",
        "-inp nids -if nids:s=KLSX:p=N0R -dp samples -cu #200307042300la",
        "-inp nids -if nids:s=KLSX -nh -0:12,0:06 -de d -pp refresh",
        "-inp nids -if none",
        "-inp nids -if @%D/%s",
        "-inp lev2 -va ref1,vel2,zdr@0.5,spect,phi,rho,cfp,list",
        "-inp lev2z -inp nids,lev2 -if lev2",
        "-inp nids -va "
        "comp,track,id,tvs,meso,posh,poh,hsize,vil-1,dbzm,dbzht,top,wave_dir,move_spd,mvmt,table",
        "-inp nids -va watch -wp watches -cowa black:w3,red",
        "-inp auto -va ref@0.5 -",
        "-dr=-text",
        "-dr text_ul,+bord,-grid,summary,none,all,data",
        "-pl none -pf use -me debug,fi=/dev/null,+warn,-out1a,page,nopage,line=30",
        "-pp site,dist=30:60:120,dist,nodist,clutter=10,clutter,noclutter,range=230,superres,strict",
        "-pp graph,nograph,numplt=5,strong,refresh,bar,bar=0:70,nobar,fill=hat,fill=3,conmin=5,conmax=-.5",
        "-pp lalo=2:2:10,full,fullab,vp_size=2x2+0+0,font=roman,over=1:2,tz=-CDT:-5,pscolor,psrev,inv",
        "-pp min_size=100,id,wmo,cod_wmo,loc_pr=2,page,nopage,gif,gif=a.gif,png:%y.png,img,xwd,anim=x.gif",
        "-pp gif_inter,gif_norm,gif_trans,nolooptitle,noredraw,shadow,shadow=3,lcmap,nolcmap,rwclr,clear",
        "-of vyx:KEY,gif,png=x.png -gp grids -ip images -fm 2.3 -ou any",
        "-in 5 -cb 10,>0,<70 -sc -1.5 -pr +1 -ic -ti A_title -na radar",
        "-ho 18",
        "-ho 18:30",
        "-ho 4d18:30 -pr -1",
        "-ho :30 -ge 800x640",
        "-ho #20030704 -ge +10-10",
        "-ho -306 -ge 500x400+100+50",
        "-ho -:30 -ge P2x1+1+0",
        "-ho 070418 -ge P0.5x0.5+0.5+0",
        "-cot black:fo=roman -cod blue:w2:s3:h1.5:e0.9:t2:f4 -com none -coln magenta:s4 -cocl co=red:wi=2",
        "-cof ref.lev",
        "-cof 35:#FFE600,50:#E60000:la=heavy,60:#001002003,red,end",
        "-cof blue-red -cogr 7 -coco ptblk -cola off:st=lsdsh:fi=9%:fp=//",
        "-cof def -bg none",
        "-bg #102030 -fl vyx.fnl",
    };
    for (const char *line : lines) {
        const std::vector<std::string> lines_told = told(std::string("-ba ") + line);
        EXPECT_TRUE(lines_told.empty()) << line << ": " << lines_told.front();
    }
}

TEST(OptionWords, LevelsAndSourcesDecideWhatIsTold) {
    EXPECT_TRUE(told("-dr foo -me none").empty());
    EXPECT_TRUE(told("-me error -nosuch x").empty());
    // The value that a mistyped option took is named: it may be the only file.
    const std::vector<std::string> taken = told("-lable file.nids");
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_NE(taken[0].find("took the next argument, \"file.nids\", as its value"), std::string::npos);
    EXPECT_STREQ(RES_get("lable"), "file.nids");

    const ScratchDir dir;
    const std::string settings = dir.write(
        "my.cfg", "*other_program: x\nvyxradar.nosuch: y\n*draw: foo\n*label: " + std::string(300, 'x') +
                      "\n# " + std::string(300, 'c') + "\n");
    setenv("vyxnosuch", "z", 1);
    const std::vector<std::string> lines = told("-ba -df " + settings);
    ASSERT_EQ(lines.size(), 2U) << lines.back();
    EXPECT_EQ(lines[0], settings + ", line 4: Of 308 characters only the first 249 are read");
    EXPECT_EQ(lines[1], "-dr (draw): \"foo\" is not known");
    EXPECT_EQ(told("-ba -df " + dir.at("none")),
              std::vector<std::string>{"-df (default): Unable to read settings file: " + dir.at("none") +
                                       ": No such file or directory"});
}

} // namespace
