#include "radar/summary/netcdf_header.h"

#include <array>
#include <cstdint>

#include "lib/text/byte_reader.h"

namespace {

constexpr std::uint32_t kDimensionTag = 10, kVariableTag = 11, kAttributeTag = 12;
constexpr std::uint64_t kMostNameBytes = 256, kMostElements = 10000, kMostDimensions = 32;
constexpr std::uint8_t kClassic = 1, kWideOffsets = 2, kWideNumbers = 5;
/// Bytes of a value of types 1 to 11: byte, character, short, integer, float, double, and those of version 5.
constexpr std::array<std::uint64_t, 12> kTypeBytes{0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
constexpr std::uint32_t kClassicTypes = 6;

class HeaderWalk {
public:
    explicit HeaderWalk(std::span<const std::byte> bytes) : reader_(bytes) {}

    const char *fault() {
        constexpr std::size_t kMagicBytes = 3; // "CDF", which has been seen
        reader_.take(kMagicBytes);
        version_ = reader_.u8();
        if (version_ != kClassic && version_ != kWideOffsets && version_ != kWideNumbers)
            return "the file is no netCDF file";
        wide_ = version_ == kWideNumbers;
        (void)number(); // records, as far as the data reach
        const bool good = list(kDimensionTag, [this] { return dimension(); }) && attributes() &&
                          list(kVariableTag, [this] { return variable(); });
        return good && !reader_.failed() ? nullptr : "the netCDF header is damaged";
    }

private:
    std::uint64_t number() {
        const std::uint64_t high = wide_ ? reader_.u32() : 0;
        return high << 32U | reader_.u32();
    }
    bool pass(std::uint64_t count) {
        constexpr std::uint64_t kAlign = 4;
        const std::uint64_t padded = (count + kAlign - 1) / kAlign * kAlign;
        if (padded > reader_.remaining()) return false;
        reader_.take(static_cast<std::size_t>(padded));
        return true;
    }
    bool name() {
        const std::uint64_t length = number();
        return length <= kMostNameBytes && pass(length);
    }

    /// A tag and so many elements, or none of both.
    template <typename Element> bool list(std::uint32_t tag, Element element) {
        const std::uint32_t found = reader_.u32();
        const std::uint64_t count = number();
        if (found == 0) return count == 0;
        if (found != tag || count > kMostElements) return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (reader_.failed() || !element()) return false;
        return true;
    }

    bool dimension() {
        ++dimensions_;
        if (!name()) return false;
        (void)number(); // its length allocates nothing
        return true;
    }

    bool type(std::uint64_t &bytes) {
        const std::uint32_t code = reader_.u32();
        if (code == 0 || code > (wide_ ? kTypeBytes.size() - 1 : kClassicTypes)) return false;
        bytes = kTypeBytes[code];
        return true;
    }

    bool attributes() {
        return list(kAttributeTag, [this] {
            std::uint64_t bytes = 0;
            if (!name() || !type(bytes)) return false;
            const std::uint64_t count = number();
            return count <= reader_.remaining() && pass(count * bytes);
        });
    }

    bool variable() {
        if (!name()) return false;
        const std::uint64_t count = number();
        if (count > kMostDimensions) return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (number() >= dimensions_) return false;
        std::uint64_t bytes = 0;
        if (!attributes() || !type(bytes)) return false;
        (void)number(); // size: the library counts it itself
        return pass(version_ == kClassic ? sizeof(std::uint32_t) : sizeof(std::uint64_t));
    }

    ByteReader reader_;
    std::uint8_t version_ = 0;
    bool wide_ = false; ///< counts have eight bytes
    std::uint64_t dimensions_ = 0;
};

} // namespace

const char *netcdf_header_fault(std::span<const std::byte> bytes) {
    return HeaderWalk(bytes).fault();
}
