#pragma once
/// What a session ends with when something that was asked for is not there.

#include "lib/report/process.h"

/// A picture that was asked for will not be there; why has been told.
void PLT_miss_picture();
/// Memory ran out while a picture was drawn, which has been told: the session ends with kExitNoMemory.
void PLT_lack_memory();
/// kExitOk when nothing is missing. Forgets it.
ExitStatus PLT_take_outcome();
ExitStatus PLT_outcome();
