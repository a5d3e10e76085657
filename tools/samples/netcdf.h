#pragma once
/// Writing netCDF files from descriptions, through the netCDF library.

#include <string>
#include <utility>
#include <vector>

#include "samples/byte_writer.h"

namespace samples {

struct NetcdfDimension {
    std::string name;
    std::size_t length;
};
struct NetcdfVariable {
    enum class Type { text, byte, integer, real };
    std::string name;
    Type type;
    std::vector<std::string> dimensions;
    /// One for each element, or fewer: the others have fill values. Characters count as their codes.
    std::vector<double> values;
};
struct NetcdfDescription {
    std::vector<NetcdfDimension> dimensions;
    std::vector<NetcdfVariable> variables;
    std::vector<std::pair<std::string, std::string>> texts; ///< global attributes
    std::vector<std::pair<std::string, float>> numbers;
};

/// Characters of a variable, each text padded with nulls to `length`.
std::vector<double> netcdf_texts(const std::vector<std::string> &texts, std::size_t length);
/// The bytes of a classic file; none, after a message, when the library refuses the description.
Bytes netcdf_file(const NetcdfDescription &description);

} // namespace samples
