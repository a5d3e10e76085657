#pragma once
/// A gzip file around given bytes.

#include <gtest/gtest.h>
#include <zlib.h>

#include "samples/byte_writer.h"

inline samples::Bytes gzipped(const samples::Bytes &bytes) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    samples::Bytes in = bytes;
    samples::Bytes out(deflateBound(&stream, static_cast<uLong>(in.size())));
    stream.next_in = reinterpret_cast<Bytef *>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}
