#include "radar/summary/netcdf_file.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

#include "lib/text/strings.h"
#include "radar/summary/netcdf_header.h"
#include "radar/summary/netcdf_library.h"

namespace {

constexpr std::size_t kMostAttributeBytes = 4096;

NetcdfFile::Type type_of(nc_type type) {
    if (type == NC_CHAR) return NetcdfFile::Type::text;
    return type == NC_BYTE || type == NC_UBYTE ? NetcdfFile::Type::byte : NetcdfFile::Type::number;
}

} // namespace

NetcdfFile::NetcdfFile(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {
    if (const char *const damage = netcdf_header_fault(bytes_)) {
        fault_ = damage;
        return;
    }
    const char *why = nullptr;
    const NetcdfLibrary *const library = load_netcdf(why);
    if (library == nullptr) {
        fault_ = why;
        return;
    }
    // The name is the library's word for it; nothing of that name is opened.
    const int status = library->open_mem("memory", NC_NOWRITE, bytes_.size(), bytes_.data(), &id_);
    if (status == NC_NOERR)
        library_ = library;
    else // a number of the system's says nothing about bytes in memory
        fault_ = status > 0 ? "the file is no netCDF file" : library->strerror(status);
}

NetcdfFile::~NetcdfFile() {
    if (library_ != nullptr) library_->close(id_);
}

std::optional<std::size_t> NetcdfFile::dimension(const char *name) const {
    int dimension = 0;
    std::size_t length = 0;
    if (!is_open() || library_->inq_dimid(id_, name, &dimension) != NC_NOERR ||
        library_->inq_dimlen(id_, dimension, &length) != NC_NOERR)
        return std::nullopt;
    return length;
}

std::optional<std::string> NetcdfFile::text_attribute(const char *name) const {
    nc_type type = NC_NAT;
    std::size_t length = 0;
    if (!is_open() || library_->inq_att(id_, NC_GLOBAL, name, &type, &length) != NC_NOERR ||
        type != NC_CHAR || length > kMostAttributeBytes)
        return std::nullopt;
    std::string text(length, '\0');
    if (length > 0 && library_->get_att_text(id_, NC_GLOBAL, name, text.data()) != NC_NOERR)
        return std::nullopt;
    return text.substr(0, text.find('\0'));
}

std::optional<float> NetcdfFile::number_attribute(const char *name) const {
    nc_type type = NC_NAT;
    std::size_t length = 0;
    float number = 0;
    if (!is_open() || library_->inq_att(id_, NC_GLOBAL, name, &type, &length) != NC_NOERR ||
        type == NC_CHAR || length != 1 || library_->get_att_float(id_, NC_GLOBAL, name, &number) != NC_NOERR)
        return std::nullopt;
    return number;
}

bool NetcdfFile::exists(const char *variable) const {
    int id = 0;
    return is_open() && library_->inq_varid(id_, variable, &id) == NC_NOERR;
}

bool NetcdfFile::has_variable(const char *name, Type type, std::span<const char *const> dimensions) const {
    constexpr std::size_t kMostDimensions = 4;
    int variable = 0, count = 0;
    nc_type stored = NC_NAT;
    if (!is_open() || library_->inq_varid(id_, name, &variable) != NC_NOERR ||
        library_->inq_vartype(id_, variable, &stored) != NC_NOERR || type_of(stored) != type ||
        library_->inq_varndims(id_, variable, &count) != NC_NOERR ||
        static_cast<std::size_t>(count) != dimensions.size() || dimensions.size() > kMostDimensions)
        return false;
    std::array<int, kMostDimensions> ids{};
    if (count > 0 && library_->inq_vardimid(id_, variable, ids.data()) != NC_NOERR) return false;
    for (std::size_t i = 0; i < dimensions.size(); ++i) {
        int id = 0;
        if (library_->inq_dimid(id_, dimensions[i], &id) != NC_NOERR || id != ids[i]) return false;
    }
    return true;
}

bool NetcdfFile::fail(std::string_view what) {
    if (fault_.empty()) fault_ = what;
    return false;
}

bool NetcdfFile::fail(const char *name, int status) {
    return fail(std::string(name) + ": " + library_->strerror(status));
}

std::optional<int> NetcdfFile::variable_for(const char *name, std::span<const std::size_t> start,
                                            std::span<const std::size_t> count, std::size_t room) {
    int variable = 0, dimensions = 0;
    if (!is_open()) return std::nullopt;
    int status = library_->inq_varid(id_, name, &variable);
    if (status == NC_NOERR) status = library_->inq_varndims(id_, variable, &dimensions);
    if (status != NC_NOERR) {
        fail(name, status);
        return std::nullopt;
    }
    const std::size_t wanted =
        std::accumulate(count.begin(), count.end(), std::size_t{1}, std::multiplies<>());
    if (static_cast<std::size_t>(dimensions) != count.size() || start.size() != count.size() ||
        wanted != room) {
        fail(std::string(name) + ": other dimensions than expected");
        return std::nullopt;
    }
    return variable;
}

bool NetcdfFile::read(const char *name, std::span<const std::size_t> start,
                      std::span<const std::size_t> count, std::span<float> out) {
    const auto variable = variable_for(name, start, count, out.size());
    if (!variable) return false;
    const int status = library_->get_vara_float(id_, *variable, start.data(), count.data(), out.data());
    // A double beyond the range of float is no reason to lose the rest.
    return status == NC_NOERR || status == NC_ERANGE || fail(name, status);
}

bool NetcdfFile::read(const char *name, std::span<const std::size_t> start,
                      std::span<const std::size_t> count, std::span<signed char> out) {
    const auto variable = variable_for(name, start, count, out.size());
    if (!variable) return false;
    const int status = library_->get_vara_schar(id_, *variable, start.data(), count.data(), out.data());
    return status == NC_NOERR || fail(name, status);
}

bool NetcdfFile::read(const char *name, std::span<const std::size_t> start,
                      std::span<const std::size_t> count, std::string &out) {
    out.assign(std::accumulate(count.begin(), count.end(), std::size_t{1}, std::multiplies<>()), '\0');
    const auto variable = variable_for(name, start, count, out.size());
    if (!variable) return false;
    const int status = library_->get_vara_text(id_, *variable, start.data(), count.data(), out.data());
    if (status != NC_NOERR) return fail(name, status);
    out.resize(std::min(out.find('\0'), out.size()));
    out = trimmed(out);
    return true;
}
