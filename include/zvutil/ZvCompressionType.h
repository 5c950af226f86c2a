#pragma once

/// The format of a compressed file.
/// @since 0.1 @ingroup basics
enum class ZvCompressionType {
    Zlib = 0 ///< Qt's own, that of `qCompress`
};
