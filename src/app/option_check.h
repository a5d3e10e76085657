#pragma once
/// What the user set, checked against what each option may hold.

/// Tells every word of the closed lists that is in none of them, and every number that is none. Colours and
/// fonts are checked when they have been read, options of a device when it is opened, domains, times and
/// files where they are used.
void check_options();
