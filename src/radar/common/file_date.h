#pragma once
/// Dates and times as radar files store them.

/// Days (the "modified Julian date" of ICD 2620001 and 2620002, 1 = 1 January 1970) and seconds after
/// midnight. Return 0.
int NIDS_julian_date(int days, int &year, int &month, int &day);
int NIDS_dec_time(int seconds, int &hour, int &minute, int &second);
