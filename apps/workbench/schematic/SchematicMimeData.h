#pragma once

#include "schematic/Schematic.h"

#include <QByteArray>
#include <QMimeData>

namespace workbench {

/// Symbols and wires on the clipboard: for schematics, and as pictures for other programs. The pictures are only made
/// when a program asks for them.
class SchematicMimeData : public QMimeData
{
    Q_OBJECT

public:
    /// \p bytes are what schematics read, in the format \p format.
    SchematicMimeData(const Schematic& part, const QString& format, const QByteArray& bytes);

    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& format, QVariant::Type type) const override;

private:
    bool hasPictures() const;

    Schematic m_part;
};

} // namespace workbench
