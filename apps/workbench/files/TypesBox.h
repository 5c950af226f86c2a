#pragma once

#include <QComboBox>
#include <QStringList>

namespace workbench {

/// Lets the user choose which types of files matter: all, those of the workbench's documents, or
/// extensions that the user types.
class TypesBox : public QComboBox
{
    Q_OBJECT

public:
    explicit TypesBox(QWidget* parent);

    /// Returns the extensions, each with its dot; none stands for all files.
    QStringList types() const;
    /// Shows \p types, and emits no signal.
    void setTypes(const QStringList& types);

    /// Returns the extensions in a text such as "txt, *.csv .md", each with its dot.
    static QStringList typesIn(const QString& text);

Q_SIGNALS:
    /// Emitted when the user has chosen or finished typing other types.
    void typesChanged();

private:
    void takeOver();

    QStringList m_types;
};

} // namespace workbench
