#pragma once
/// Reading a text metafile back: its records are replayed through the kernel onto the device that is open.

#include <string>

/// Draws the records of a file. Returns 0, also after a message when the file cannot be opened. Other words
/// than those of records pass with their line; a record that is cut, or counts more points than are there, is
/// told and draws what it has.
int gread_metafile(const std::string &path);
