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
    /// Creates the editor. \p header must outlive it.
    explicit HeadingEditor(QHeaderView& header);

    /// Shows a field with \p name over the heading of \p section. A field that is still open is
    /// closed first, and its name accepted.
    void edit(int section, const QString& name);

    /// Closes the field, and accepts its name if \p isKept. Does nothing if no field is open.
    void end(bool isKept);

Q_SIGNALS:
    /// Emitted when the field has been closed.
    void ended();
    void renamed(int section, const QString& name);

private:
    QHeaderView& m_header;
    QLineEdit* m_field = nullptr; ///< null unless the user is typing
    int m_section = 0;
};

} // namespace workbench
