#pragma once

#include <zvutil/ZvStyle.h>

#include <QString>

#include <vector>

class QColor;

namespace libzvutil {

class ZVUTIL_NO_EXPORT ZvStyle::Impl
{
public:
    /// Makes a style named \p name with the host's accent.
    explicit Impl(const char* name);

    ZvNamedColour& colour(ZvStyleBrush brush);
    const ZvNamedColour& colour(ZvStyleBrush brush) const;
    ZvNamedIcon& icon(ZvStyleIcon icon);
    const ZvNamedIcon& icon(ZvStyleIcon icon) const;

    /// The first editor of that name, or null.
    ZvEditorStyle* editor(const char* name);
    const ZvEditorStyle* editor(const char* name) const;

    /// Sets the accent and computes its shades.
    void deriveAccent(const QColor& accent);

    /// Replaces the variables in a style sheet by this style's values.
    QString substituteVariables(const QString& text) const;

    ZvString name;
    std::vector<ZvNamedColour> colours; ///< one for each `ZvStyleBrush`, `TOTAL` included
    std::vector<ZvNamedIcon> icons; ///< one for each `ZvStyleIcon`, `TOTAL` included
    std::vector<ZvEditorStyle> editors; ///< in the order of their addition; names may repeat
    bool isDefault = false;
};

} // namespace libzvutil
