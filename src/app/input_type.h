#pragma once
/// Which kind of radar data is plotted: the resources "input" and "in_file" turned into flags and a naming
/// key.

/// Input type codes of the input-type flag.
enum InputType : int {
    kInputRadar = 31, ///< converted or raw radar summaries
    kInputRrwds = 32,
    kInputNids = 33, ///< NEXRAD Level III
    kInputNowrad = 34,
    kInputRcm = 35, ///< Radar Coded Message site data
    kInputKavrad = 36,
    kInputLev2 = 37,  ///< NEXRAD Level II
    kInputLev2z = 38, ///< NEXRAD Level II with compressed records
    kInputAuto = 60   ///< what the file that the file selection finds is
};

/// Sets the flags of input type, radar form and file format, the naming convention and the model string.
/// Returns 0.
int RAD_cvt_in_file();
