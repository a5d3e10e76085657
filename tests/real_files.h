#pragma once
/// Where the real radar samples are, for tests that compare with independent decodings of them.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

/// The samples directory: the environment variable VYX_SHARED, else a folder "shared" beside the checkout;
/// empty when there is none.
inline std::string shared_dir() {
    namespace fs = std::filesystem;
    if (const char *named = std::getenv("VYX_SHARED")) return named;
    const fs::path beside = fs::path(VYX_SOURCE_DIR).parent_path() / "shared";
    return fs::is_directory(beside / "samples") ? beside.string() : std::string();
}

#define SKIP_WITHOUT_REAL_FILES()                                                                            \
    if (shared_dir().empty())                                                                                \
    GTEST_SKIP() << "real radar samples are not here; set VYX_SHARED to their folder"
