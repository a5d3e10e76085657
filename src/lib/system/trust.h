#pragma once
/// Whether a file that was found, not named, may be believed.

#include <string>

/// Why somebody else than the user and root may decide what stands in the file: "it belongs to another user",
/// "others may write to its directory", and the like. Empty when nobody may.
std::string TRUST_fault(const std::string &path);
