#pragma once

#include <zvutil/ZvCompressionType.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/zvutil_export.h>

namespace zvutil {
class ZvFilePath;
}

/// Compresses one file into another, and back.
///
/// A compressed file is exactly what `qCompress` yields: the length of the content in four bytes,
/// big-endian, and a zlib stream; so any program that uses Qt can read and write it.
///
/// `compress` and `decompress` hold the whole source and the whole result in memory and block until
/// all is written. Any thread may call them; two calls at once need different targets.
///
/// The target is truncated when it is opened, without a temporary file: its old content is lost
/// from then on, whatever happens. So **source and target must not be the same file**, whose
/// content would be lost; nothing checks that.
///
/// The operations throw `zvutil::ZvFileException`, in the first two cases before the target is
/// touched:
/// - "Cannot open file for reading: " and the path of the source if that can't be opened;
/// - "File too large: " and the path of the source if that has more than 2,126,221,300 bytes, or
///   nearly 2 GiB when it is decompressed, which is the limit of a `QByteArray`;
/// - "Cannot open file for writing: " and the path of the target if that can't be opened.
///
/// Later failures are not reported: on a full disk the target ends short.
///
/// The object itself has no state.
/// @since 0.1 @ingroup basics
class ZVUTIL_EXPORT ZvCompression
{
public:
    /// Takes one allocation; both operations are static and need no object.
    ZvCompression();
    /// Equals a newly made object.
    /// @param other may have been moved from
    ZvCompression(const ZvCompression& other);
    /// Takes over what the other object holds.
    /// @param other may then be destroyed, assigned to and copied
    ZvCompression(ZvCompression&& other) noexcept;
    /// Has no visible effect; this object may have been moved from.
    /// @param other may have been moved from
    ZvCompression& operator=(const ZvCompression& other);
    /// Has no visible effect; this object may have been moved from.
    /// @param other may have been moved from
    ZvCompression& operator=(ZvCompression&& other) noexcept;
    /// Frees the allocation.
    ~ZvCompression();

    /// Writes a file, compressed, to another.
    /// @param source the file to read
    /// @param target the file to write; **not the source**
    /// @param type with another one than `Zlib` nothing happens at all
    /// @param level that of `qCompress`: from 0, nothing is compressed, to 9, slow and small; -1
    /// and every other is the default of zlib
    static void compress(const zvutil::ZvFilePath& source, const zvutil::ZvFilePath& target,
                         ZvCompressionType type, int level);

    /// Writes the content of a compressed file to another.
    /// @param source the file to read
    /// @param target the file to write, **not the source**; it ends up empty if the source isn't in
    /// the format or is broken
    /// @param type with another one than `Zlib` nothing happens at all
    static void decompress(const zvutil::ZvFilePath& source, const zvutil::ZvFilePath& target,
                           ZvCompressionType type);

private:
    struct ZvCompressionImpl;

    zvutil::basic_pimpl<ZvCompressionImpl> m_impl;
};

static_assert(sizeof(ZvCompression) == 2 * sizeof(void*));
