#include "radar/common/file_date.h"

#include <array>

#include "lib/report/message.h"
#include "lib/system/calendar.h"

int NIDS_julian_date(int days, int &year, int &month, int &day) {
    constexpr std::array kMonthLengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    constexpr int kFirstYear = 1970, kFebruary = 1;
    year = kFirstYear;
    for (int length = 365; days > length; length = DATE_is_leap(year) != 0 ? 366 : 365) {
        days -= length;
        ++year;
    }
    const bool leap = DATE_is_leap(year) != 0;
    int index = 0;
    for (const int length : kMonthLengths) {
        const int this_month = length + (leap && index == kFebruary ? 1 : 0);
        if (days <= this_month) break;
        days -= this_month;
        ++index;
    }
    month = index + 1;
    day = days;
    MESS_print(kDebug, "%d %d %d\n", year, month, day);
    return 0;
}

int NIDS_dec_time(int seconds, int &hour, int &minute, int &second) {
    hour = seconds / 3600;
    minute = seconds % 3600 / 60;
    second = seconds % 60;
    MESS_print(kDebug, "%d %d %d\n", hour, minute, second);
    return 0;
}
