#include "lib/system/trust.h"

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// What is told of `subject`; an empty text when it is in the hands of the user or root alone.
std::string fault_of(const std::string &path, const std::string &subject) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return subject + " cannot be examined";
    if (info.st_uid != 0 && info.st_uid != geteuid()) return subject + " belongs to another user";
    if ((info.st_mode & (S_IWGRP | S_IWOTH)) != 0) return "others may write to " + subject;
    return {};
}

std::string directory_of(const fs::path &path) {
    const fs::path parent = path.parent_path();
    return parent.empty() ? "." : parent.string();
}

} // namespace

std::string TRUST_fault(const std::string &path) {
    if (std::string fault = fault_of(path, "it"); !fault.empty()) return fault;
    if (std::string fault = fault_of(directory_of(path), "its directory"); !fault.empty()) return fault;
    std::error_code error;
    // Where a link leads to, too, another file could be laid.
    const fs::path target = fs::canonical(path, error);
    return error ? "it cannot be examined" : fault_of(directory_of(target), "the directory it lies in");
}
