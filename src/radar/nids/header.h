#pragma once
/// What the readers of this room need of the header blocks beyond the public declarations.

#include "radar/nids/product_table.h"

/// The rules of the open product.
const NidsProduct &NIDS_product();
/// The threshold value that a value word selects; kMissingF when it is none of the sixteen.
float NIDS_threshold_of(int word);
/// Forgets the blocks of the product before.
void NIDS_clear_header();
