#include "files/TypesBox.h"

#include <zvworkbench/DocumentType.h>

#include <QLineEdit>
#include <QRegularExpression>

#include <vector>

namespace workbench {

namespace {

QStringList documentExtensions()
{
    QStringList extensions;
    for (const DocumentType* const type : documentTypes())
        extensions.append(type->extension);
    return extensions;
}

} // namespace

TypesBox::TypesBox(QWidget* parent)
    : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
    setAccessibleName(tr("Types of files"));
    setToolTip(tr("Choose which files to list, or type extensions such as “.txt .csv”."));
    addItem(tr("All files"), QStringList());
    addItem(tr("Documents"), documentExtensions());
    lineEdit()->setAccessibleName(accessibleName());
    lineEdit()->setAcceptDrops(false);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &TypesBox::takeOver);
    connect(lineEdit(), &QLineEdit::editingFinished, this, &TypesBox::takeOver);
}

QStringList TypesBox::types() const
{
    return m_types;
}

void TypesBox::setTypes(const QStringList& types)
{
    m_types = types;
    for (int i = 0; i < count(); ++i) {
        if (itemData(i).toStringList() == types) {
            setCurrentIndex(i);
            setEditText(itemText(i));
            return;
        }
    }
    setEditText(types.join(QLatin1Char(' ')));
}

QStringList TypesBox::typesIn(const QString& text)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,;]+"));
    QStringList types;
    for (QString type : text.split(separators, Qt::SkipEmptyParts)) {
        if (type.startsWith(QLatin1Char('*')))
            type.remove(0, 1);
        if (!type.startsWith(QLatin1Char('.')))
            type.prepend(QLatin1Char('.'));
        if (type.size() > 1 && type != QLatin1String(".*") && !types.contains(type))
            types.append(type);
    }
    return types;
}

void TypesBox::takeOver()
{
    const int item = findText(currentText().trimmed(), Qt::MatchFixedString);
    const QStringList types = item >= 0 ? itemData(item).toStringList() : typesIn(currentText());
    const bool areOthers = types != m_types;
    setTypes(types);
    if (areOthers)
        Q_EMIT typesChanged();
}

} // namespace workbench
