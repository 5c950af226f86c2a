#pragma once

#include <zvutil/zvutil_export.h>

#include <QRegularExpressionValidator>

#include <cstddef>

/// The validator of a line edit in which a user types the name of a file, without a directory.
///
/// A name has at least one character, and none of the characters `<>:/\|?*`, no double quote and no
/// control character up to 0x1F. It has to be **shorter** than the limit: with the default of 256
/// the longest acceptable one has 255 units of 16 bits.
///
/// Only the text is checked, not a file system. Reserved names of devices, a dot or a blank at
/// the end, `.` and `..` are acceptable. `setRegularExpression` of the base class replaces the rule
/// about characters, and an empty expression removes it; the limit stays. Callers should leave the
/// expression alone.
/// @since 0.1 @ingroup paths
class ZVUTIL_EXPORT ZvFilenameValidator : public QRegularExpressionValidator
{
public:
    /// Makes a validator with the limit 256.
    /// @param parent owns the validator; may be null
    explicit ZvFilenameValidator(QObject* parent);
    /// Makes a validator with a limit. A literal 0 alone doesn't compile, as it may be a parent as
    /// well; say `std::size_t(0)`.
    /// @param maximumLength the number of units at which a text is invalid; with 0 everything is
    /// invalid, the empty text too. A negative number turns into a limit that no text reaches.
    /// @param parent owns the validator; may be null
    explicit ZvFilenameValidator(std::size_t maximumLength = 256, QObject* parent = nullptr);
    /// Destroys the rule; line edits that use the validator drop it.
    ~ZvFilenameValidator() override;

    /// Checks a text in linear time.
    /// @param input the text, which isn't changed
    /// @param position isn't looked at
    /// @return `Invalid` for a text that has reached the limit or has a banned character anywhere,
    /// otherwise `Acceptable`, or `Intermediate` for the empty text
    State validate(QString& input, int& position) const override;

private:
    std::size_t m_maximumLength;
};
