#include "samples/netcdf.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include <netcdf.h>
#include <netcdf_mem.h>

namespace samples {

namespace {

nc_type type_of(NetcdfVariable::Type type) {
    switch (type) {
    case NetcdfVariable::Type::text: return NC_CHAR;
    case NetcdfVariable::Type::byte: return NC_BYTE;
    case NetcdfVariable::Type::integer: return NC_INT;
    case NetcdfVariable::Type::real: break;
    }
    return NC_FLOAT;
}

/// A file that the library makes in memory; what it refuses is told once.
class Maker {
public:
    Maker() { check(nc_create_mem("memory", NC_CLOBBER, kFirstBytes, &id_)); }

    void describe(const NetcdfDescription &description) {
        for (const NetcdfDimension &row : description.dimensions)
            check(nc_def_dim(id_, row.name.c_str(), row.length, &dimensions_[row.name].id)),
                dimensions_[row.name].length = row.length;
        for (const NetcdfVariable &row : description.variables) {
            std::vector<int> ids;
            for (const std::string &name : row.dimensions) ids.push_back(dimensions_[name].id);
            check(nc_def_var(id_, row.name.c_str(), type_of(row.type), static_cast<int>(ids.size()),
                             ids.data(), &variables_[row.name]));
        }
        for (const auto &[name, text] : description.texts)
            check(nc_put_att_text(id_, NC_GLOBAL, name.c_str(), text.size(), text.c_str()));
        for (const auto &[name, number] : description.numbers)
            check(nc_put_att_float(id_, NC_GLOBAL, name.c_str(), NC_FLOAT, 1, &number));
        check(nc_enddef(id_));
        for (const NetcdfVariable &row : description.variables) put(row);
    }

    Bytes take() {
        NC_memio memory{};
        check(nc_close_memio(id_, &memory));
        Bytes bytes(memory.size);
        if (memory.size > 0) std::memcpy(bytes.data(), memory.memory, memory.size);
        std::free(memory.memory);
        return ok_ ? bytes : Bytes();
    }

private:
    static constexpr std::size_t kFirstBytes = 65536;

    void check(int status) {
        if (status == NC_NOERR) return;
        if (ok_) std::fprintf(stderr, "netcdf_file: %s\n", nc_strerror(status));
        ok_ = false;
    }

    void put(const NetcdfVariable &row) {
        std::vector<std::size_t> start(row.dimensions.size(), 0), count;
        std::size_t elements = 1;
        for (const std::string &name : row.dimensions) {
            count.push_back(dimensions_[name].length);
            elements *= count.back();
        }
        if (row.values.empty() || elements == 0) return;
        std::vector<double> values = row.values;
        values.resize(elements, row.type == NetcdfVariable::Type::text ? 0 : -9999);
        const int variable = variables_[row.name];
        if (row.type == NetcdfVariable::Type::text) {
            std::string characters(elements, '\0');
            std::ranges::transform(values, characters.begin(), [](double c) { return static_cast<char>(c); });
            check(nc_put_vara_text(id_, variable, start.data(), count.data(), characters.data()));
        } else {
            check(nc_put_vara_double(id_, variable, start.data(), count.data(), values.data()));
        }
    }

    struct Dimension {
        int id = 0;
        std::size_t length = 0;
    };
    int id_ = -1;
    bool ok_ = true;
    std::map<std::string, Dimension> dimensions_;
    std::map<std::string, int> variables_;
};

} // namespace

std::vector<double> netcdf_texts(const std::vector<std::string> &texts, std::size_t length) {
    std::vector<double> values;
    for (std::string text : texts) {
        text.resize(length, '\0');
        for (const char c : text) values.push_back(static_cast<unsigned char>(c));
    }
    return values;
}

Bytes netcdf_file(const NetcdfDescription &description) {
    Maker maker;
    maker.describe(description);
    return maker.take();
}

} // namespace samples
