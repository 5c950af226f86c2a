#pragma once

/// The format of a compressed file.
enum class ZvCompressionType {
    Zlib = 0 ///< Qt's own, that of `qCompress`
};
