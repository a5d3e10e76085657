#pragma once
/// The header blocks of a product: message header, description, thresholds.

#include "radar/nids/product.h"
#include "radar/nids/product_table.h"

struct NidsBlocks {
    NidsMessageHeader message;
    NidsDescription description;
    std::array<float, kThresholds> thresholds{};

    /// The rules of the product, found once for each message.
    [[nodiscard]] const NidsProduct &product() const { return *rules_; }
    void set_message(const NidsMessageHeader &header) {
        message = header;
        rules_ = &NIDS_find_product(header.code);
    }
    /// The threshold value that a value word selects; kMissingF when it is none of the sixteen.
    [[nodiscard]] float threshold_of(int word) const {
        return word < 0 || word >= kThresholds ? kMissingF : thresholds[static_cast<unsigned>(word)];
    }
    /// Degrees north and east.
    [[nodiscard]] float latitude() const { return static_cast<float>(description.latitude) / 1000; }
    [[nodiscard]] float longitude() const { return static_cast<float>(description.longitude) / 1000; }

private:
    const NidsProduct *rules_ = &NIDS_find_product(NidsMessageHeader().code);
};

/// Half-precision and single-precision threshold numbers. The former are not those of IEEE 754: their
/// exponent counts from 16 (ICD 2620001, thresholds of product 134).
float NIDS_float16(unsigned word);
float NIDS_float32(unsigned high, unsigned low);
/// Value of a threshold word by the generic rule.
float NIDS_threshold_value(unsigned word);
