#pragma once

#include <QComboBox>
#include <QStringList>

namespace workbench {

/// Where a user chooses which types of files matter: all, those of the workbench's documents, or
/// extensions that are typed.
class TypesBox : public QComboBox
{
    Q_OBJECT

public:
    explicit TypesBox(QWidget* parent);

    /// The extensions, each with its dot; none stands for all files.
    QStringList types() const;
    /// Shows them, and emits no signal.
    void setTypes(const QStringList& types);

    /// The extensions in a text such as "txt, *.csv .md".
    static QStringList typesIn(const QString& text);

Q_SIGNALS:
    /// The user has chosen or finished typing others.
    void typesChanged();

private:
    void takeOver();

    QStringList m_types;
};

} // namespace workbench
