#pragma once

#include <zvutil/StandardPath.h>
#include <zvutil/ZvBasicString.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/zvutil_export.h>

#include <QMetaType>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

class QDebug;
class QString;
class YString;

namespace zvutil {

/// A path as text in 16-bit units, with the lexical rules of Windows on every platform: drive
/// letters, UNC names, both `\` and `/` as separators.
///
/// The text is kept exactly as it was given. Only `Path` asks the host, and no operation touches a
/// file system. Where names of files may have a colon, as on Linux, it is read as that of a drive
/// or of an alternate stream all the same: `a.zvsch:x` has the extension `.zvsch`. A path is read
/// as root name, root directory (the separators after it) and relative path; the filename is what
/// follows the last separator of the relative path. `C:\x` and `\\srv\x` are absolute; `C:x`
/// and `\x` are not.
///
/// Narrow text is in the platform's encoding for file names: the code page on Windows, UTF-8
/// elsewhere. A `YString` is UTF-8 everywhere. Wide text is UTF-16 everywhere: where `wchar_t` has
/// 32 bits, a value above 0xFFFF is taken as its surrogate pair, one above 0x10FFFF as U+FFFD.
/// Unpaired surrogates are kept. Pass a `QString` as wide text, `name.toStdWString()`;
/// `toQString` converts back.
///
/// Constructors throw `std::system_error`: `EINVAL` of the generic category for narrow text or a
/// `YString` of 2 GiB and more and for a 32-bit unit that is no character; for narrow text or a
/// `YString` with a sequence that is invalid in its encoding, the operating system's error of the
/// system category, `EILSEQ` where there are no code pages. Everything else fails only for lack of
/// memory.
///
/// A path takes one allocation. A copy is deep; a move takes none, throws nothing and leaves a path
/// that may only be destroyed or assigned to. No operation takes more than linear time. Objects on
/// different threads share nothing.
///
/// @code{.cpp}
/// #include <QString>
///
/// #include <cassert>
///
/// const QString name = QStringLiteral("C:/boards/amplifier.zvsch"); // from a file dialog, say
/// const zvutil::ZvFilePath schematic(name.toStdWString());
/// assert(schematic.isSchematicFile());
/// assert(schematic == zvutil::ZvFilePath(L"C:\\boards\\amplifier.zvsch"));
///
/// zvutil::ZvFilePath plan = schematic.parentPath();
/// plan /= L"tests";
/// plan /= L"noise.testplan";
/// assert(plan.toQString() == QStringLiteral("C:/boards\\tests\\noise.testplan"));
/// assert(plan.lexicallyRelative(L"C:\\boards") == zvutil::ZvFilePath(L"tests\\noise.testplan"));
///
/// // The standard library and the file system get separators that they know.
/// const std::filesystem::path native = plan.toStdFilePath();
/// assert(native.filename() == "noise.testplan");
/// @endcode
/// @since 0.1 @ingroup paths
class ZVUTIL_EXPORT ZvFilePath
{
public:
    /// The empty path.
    ZvFilePath();
    /// A deep copy.
    /// @param other must not have been moved from
    ZvFilePath(const ZvFilePath& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvFilePath(ZvFilePath&& other) noexcept;

    /// Narrow text up to its NUL.
    /// @param text must not be null
    ZvFilePath(const char* text);
    /// Narrow text up to its first NUL.
    /// @param text in the platform's encoding for file names
    ZvFilePath(const std::string& text);
    /// Narrow text.
    /// @param text in the platform's encoding for file names
    ZvFilePath(const ZvBasicString<char>& text);
    /// Narrow text, NULs included.
    /// @param text need not end in a NUL
    /// @param size the number of bytes
    ZvFilePath(const char* text, std::size_t size);
    /// Narrow text with all its NULs.
    /// @param text in the platform's encoding for file names
    ZvFilePath(const std::string_view& text);

    /// Wide text up to its NUL.
    /// @param text must not be null
    ZvFilePath(const wchar_t* text);
    /// Wide text up to its first NUL.
    /// @param text in UTF-16
    ZvFilePath(const std::wstring& text);
    /// Wide text.
    /// @param text in UTF-16
    ZvFilePath(const ZvBasicString<wchar_t>& text);
    /// Wide text, NULs included.
    /// @param text need not end in a NUL
    /// @param size the number of units
    ZvFilePath(const wchar_t* text, std::size_t size);
    /// Wide text with all its NULs.
    /// @param text in UTF-16
    ZvFilePath(const std::wstring_view& text);

    /// The text of a path up to the first NUL.
    /// @param path taken as UTF-8 where paths are bytes
    ZvFilePath(const std::filesystem::path& path);

    /// Text in UTF-16.
    /// @param text unpaired surrogates are kept
    ZvFilePath(const ZvBasicString<char16_t>& text);
    /// Text in UTF-32.
    /// @param text `std::system_error`, `EINVAL`, is thrown for a unit that is no character
    ZvFilePath(const ZvBasicString<char32_t>& text);

    /// A string of the host up to its first NUL.
    /// @param text in UTF-8
    ZvFilePath(const YString& text);

    /// Frees the text; what `c_str` returned ends with it.
    ~ZvFilePath();

    /// Copies the value; this object may have been moved from.
    /// @param other must not have been moved from
    ZvFilePath& operator=(const ZvFilePath& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvFilePath& operator=(ZvFilePath&& other) noexcept;

    /// @return whether the paths are equal by the one order that all three operators follow. Root
    /// names are compared exactly, so `c:` differs from `C:` and `\\srv` from `//srv`. After the
    /// root name case counts too, but any run of separators equals any other: `a/b`, `a\b` and
    /// `a\\b` are equal. A trailing separator matters, and nothing is resolved: `a\` differs from
    /// `a`, `a\.\b` from `a\b`. A separator is less than any other unit, units are compared as
    /// numbers, and a path without root directory is less than one with.
    /// @param other must not have been moved from
    bool operator==(const ZvFilePath& other) const;
    /// @return the negation of `==`.
    /// @param other must not have been moved from
    bool operator!=(const ZvFilePath& other) const;
    /// @return whether this path comes before the other: a strict weak order, for containers; its
    /// equivalence is `==`.
    /// @param other must not have been moved from
    bool operator<(const ZvFilePath& other) const;

    /// Appends a path, with a `\` between if there is no separator and this is more than a drive.
    /// @param other replaces this if it is absolute or has another root name; keeps this one's root
    /// name alone if it begins with a separator; makes a directory of this if it is empty
    ZvFilePath& operator/=(const ZvFilePath& other);

    /// @return the text with a NUL at its end, valid until the path is assigned to or destroyed.
    const wchar_t* c_str() const;
    /// @return the number of 16-bit units.
    std::size_t size() const;
    /// @return whether there is no unit.
    bool isEmpty() const;

    /// @return the filename from its last dot on, without the name of an alternate stream: `.gz`
    /// for `a.tar.gz` and for `a.gz:s`. A dot at the start begins no extension: `.profile` has
    /// none.
    ZvBasicString<wchar_t> extension() const;

    /// @return the part after the last separator of the relative path; empty for a path that ends
    /// in a separator or is a root alone.
    [[nodiscard]] ZvFilePath filename() const;

    /// @return the path without its filename and the separators before it. A root alone is its own
    /// parent.
    [[nodiscard]] ZvFilePath parentPath() const;

    /// @return the path that leads from \p base to this one, without looking at what exists; empty
    /// if none does, for instance because the roots differ.
    /// @param base where the path that is returned begins; a trailing separator counts for nothing
    [[nodiscard]] ZvFilePath lexicallyRelative(const ZvFilePath& base) const;

    /// @return whether \p other lies below this directory, by comparing the texts: case counts, and
    /// `\` differs from `/`. This has to end in a separator, be a root or be empty (see
    /// `Directory`).
    /// @param other taken unit by unit, as it is
    bool isDescendant(const ZvFilePath& other) const;

    /// Turns each `/` into `\`.
    /// @return this path
    ZvFilePath& makePreferred();

    /// @return the text by Qt's own conversion, which drops a byte order mark at the start: a file
    /// opened by the result is another one then. On Windows a swapped mark (U+FFFE) at the start
    /// swaps the bytes of the text.
    QString toQString() const;

    /// @return the text up to the first NUL as the platform's path: where separators are `/` alone,
    /// each `\` becomes one, and the text is UTF-8, with an unpaired surrogate in three bytes.
    std::filesystem::path toStdFilePath() const;

    /// @return the text in directory form: with a `\` at its end, unless there is a separator
    /// already, or it is empty or a drive alone. Narrow and wide text are taken as by the
    /// constructors. But a `std::string_view` or `std::wstring_view` becomes a
    /// `std::filesystem::path` here, by the rules of the standard library, and ends at its first
    /// NUL; for the whole of one make a `ZvFilePath` of it and append the empty path.
    /// @param text must not be null
    [[nodiscard]] static ZvFilePath Directory(const char* text);
    /// @return the same for narrow text up to its first NUL.
    /// @param text in the platform's encoding for file names
    [[nodiscard]] static ZvFilePath Directory(const std::string& text);
    /// @return the same for wide text up to its NUL.
    /// @param text must not be null
    [[nodiscard]] static ZvFilePath Directory(const wchar_t* text);
    /// @return the same for wide text up to its first NUL.
    /// @param text in UTF-16
    [[nodiscard]] static ZvFilePath Directory(const std::wstring& text);
    /// @return the same for the text of a path up to its first NUL.
    /// @param path taken as UTF-8 where paths are bytes
    [[nodiscard]] static ZvFilePath Directory(const std::filesystem::path& path);

    /// @return the same as `Path`: no directory form is made.
    /// @param path which directory
    [[nodiscard]] static ZvFilePath Directory(StandardPath path);

    /// Asks the host where a standard directory is. Throws `std::system_error` if the answer isn't
    /// UTF-8.
    /// @param path which directory
    /// @return the answer, in which each `/` becomes `\`; whether it ends in a separator is up to
    /// the host. Empty for another value than the three, and for what the host doesn't know.
    [[nodiscard]] static ZvFilePath Path(StandardPath path);

    /// @return whether the extension is ".zvsch"; case counts. The file isn't looked at.
    bool isSchematicFile() const;
    /// @return whether the extension is ".zvscr"; case counts. The file isn't looked at.
    bool isScriptFile() const;

private:
    struct ZvFilePathImpl;

    explicit ZvFilePath(std::unique_ptr<ZvFilePathImpl>&& implementation);

    basic_pimpl<ZvFilePathImpl> m_impl;
};

static_assert(sizeof(ZvFilePath) == 2 * sizeof(void*));

/// Prints the text in quotes.
/// @param debug where to print
/// @param path the path to print
/// @return \p debug
/// @since 0.1 @ingroup paths
ZVUTIL_EXPORT QDebug operator<<(QDebug debug, const ZvFilePath& path);

/// Makes Qt Test show paths that differ.
/// @param path the path to show
/// @return its text, which the caller frees with `delete[]`
/// @since 0.1 @ingroup paths
ZVUTIL_EXPORT char* toString(const ZvFilePath& path);

} // namespace zvutil

Q_DECLARE_METATYPE(zvutil::ZvFilePath)
