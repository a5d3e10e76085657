#pragma once
/// Devices that put ink on pages: what is the same for all of them stands here once, above what each writes.

#include "graphics/kernel/device.h"

extern const Device kPostScriptDevice;
extern const Device kHpglDevice;
extern const Device kMetafileDevice;
