#pragma once
/// A netCDF file in memory, read through the netCDF library: dimensions, attributes, and parts of variables.
/// Sources: netcdf_library.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct NetcdfLibrary;

class NetcdfFile {
public:
    /// Takes the bytes of a file. When they are none that the library reads, is_open() is false and fault()
    /// tells why.
    explicit NetcdfFile(std::vector<std::byte> bytes);
    NetcdfFile(const NetcdfFile &) = delete;
    NetcdfFile &operator=(const NetcdfFile &) = delete;
    ~NetcdfFile();

    [[nodiscard]] bool is_open() const { return library_ != nullptr; }
    /// The first thing that went wrong, in words.
    [[nodiscard]] const std::string &fault() const { return fault_; }

    /// A dimension's length.
    [[nodiscard]] std::optional<std::size_t> dimension(const char *name) const;
    [[nodiscard]] std::optional<std::string> text_attribute(const char *name) const;
    [[nodiscard]] std::optional<float> number_attribute(const char *name) const;

    [[nodiscard]] bool exists(const char *variable) const;
    enum class Type { text, byte, number };
    /// A variable of this type, whose dimensions are these, in this order.
    [[nodiscard]] bool has_variable(const char *name, Type type,
                                    std::span<const char *const> dimensions) const;

    /// Parts of a variable: `start` and `count` for each of its dimensions. False, with fault() set, when the
    /// variable has no such part or another type.
    bool read(const char *name, std::span<const std::size_t> start, std::span<const std::size_t> count,
              std::span<float> out);
    bool read(const char *name, std::span<const std::size_t> start, std::span<const std::size_t> count,
              std::span<signed char> out);
    /// The characters without what stands behind the first null, and without blanks at the ends.
    bool read(const char *name, std::span<const std::size_t> start, std::span<const std::size_t> count,
              std::string &out);
    /// Remembers what went wrong, unless something did before. False.
    bool fail(std::string_view what);

private:
    bool fail(const char *name, int status);
    /// The variable's number, when it has as many dimensions as are given and `out` is as long as they say.
    std::optional<int> variable_for(const char *name, std::span<const std::size_t> start,
                                    std::span<const std::size_t> count, std::size_t room);

    std::vector<std::byte> bytes_; ///< the library reads from them as long as the file is open
    const NetcdfLibrary *library_ = nullptr;
    int id_ = -1;
    std::string fault_;
};
