#pragma once
/// What the user says of colours and fonts, checked against those that there are.

/// Tells every word of the colour resources and of the plot parameter "font" that means nothing. To be called
/// when colour table and fonts have been read.
void PLT_check_looks();
