#pragma once

#include <QHeaderView>
#include <QObject>
#include <QString>

class QLineEdit;

namespace workbench {

/// Lets the user type the name of a column in its heading.
class HeadingEditor : public QObject
{
    Q_OBJECT

public:
    /// \p header has to stay for as long as the editor.
    explicit HeadingEditor(QHeaderView& header);

    /// Shows a field with \p name over the heading of \p section. A field that is still open is closed
    /// and its name taken.
    void edit(int section, const QString& name);

    /// Closes the field, and takes its name if \p isKept. Does nothing without one.
    void end(bool isKept);

Q_SIGNALS:
    /// The field is closed.
    void ended();
    void renamed(int section, const QString& name);

private:
    QHeaderView& m_header;
    QLineEdit* m_field = nullptr; ///< while the user types
    int m_section = 0;
};

} // namespace workbench
