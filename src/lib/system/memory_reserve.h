#pragma once
/// Memory put aside for the moment when there is no more: what was drawn is still to be closed, and said.

/// Takes the reserve unless it is there. From then on an allocation that fails gives it back to the program
/// before it throws std::bad_alloc.
void VYX_reserve_memory();
