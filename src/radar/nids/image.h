#pragma once
/// Inside the Level III driver: the product image.

#include "radar/common/cells.h"
#include "radar/nids/product.h"

/// Chooses level values and colours for the product.
void NIDS_choose_levels(const NidsInfo &info);

/// Walks the packets of the open product's image, the first one's header being read, and draws what they
/// hold. Cells go to `sink`, or are filled when it is null.
void NIDS_walk_image(const NidsInfo &info, const CellSink *sink);
