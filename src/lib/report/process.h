#pragma once
/// Process services: ending, sleeping, the elapsed-time clock, going into the background.

/// Exit statuses seen by the user.
enum ExitStatus : int {
    kExitOk = 0,
    kExitSession = 1,  ///< plot session closed with an error; unusable terminal input
    kExitNoMemory = 3, ///< memory ran out; what was drawn before is whole
    kExitGraphics = 4, ///< graphics start-up failure
    kExitNoFile = 10,  ///< input file not found or unreadable
    kExitHeader = 11,  ///< site-file header failure
    kExitRegion = 43   ///< region failure
};

/// A status of 0 becomes kExitSession, after a message, when standard output could not be written.
[[noreturn]] void VYX_exit(int status);

/// Sleeps (microsecond resolution); -1 when `seconds` is not above 0, else 0.
[[nodiscard]] int VYX_sleep(float seconds);
/// Starts the elapsed-time clock, which goes on evenly when the time of day is set.
void VYX_init_time();
/// Seconds since VYX_init_time.
float VYX_elapse_time();

/// Detaches the process: the parent ends with `status`; the child gets default interrupt handling, the null
/// device on its standard streams and a process group of its own, and 1 (0 when the null device fails).
[[nodiscard]] int VYX_back_proc(int status = kExitOk);
