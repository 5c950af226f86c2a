#include "shell/Arguments.h"

#include <zvworkbench/DocumentType.h>

#include <zvutil/ZvStyleManager.h>

#include <QFileInfo>

namespace workbench {

namespace {

QString absolutePath(const QString& file)
{
    return QFileInfo(file).absoluteFilePath();
}

void setStyle(Arguments& arguments, const QString& name)
{
    const QStringList names = libzvutil::ZvStyleManager::AvailableStyleNames();
    if (names.contains(name, Qt::CaseInsensitive))
        arguments.style = name;
    else
        arguments.error = Arguments::tr("There is no style “%1”. Available styles: %2.")
                              .arg(name, names.join(QStringLiteral(", ")));
}

void addNewDocument(Arguments& arguments, const QString& id)
{
    QStringList ids;
    for (const DocumentType* const type : documentTypes())
        ids.append(type->id);
    if (const DocumentType* const type = documentTypeOf(id))
        arguments.newDocuments.push_back(type);
    else
        arguments.error = Arguments::tr("There is no document type “%1”. Available types: %2.")
                              .arg(id, ids.join(QStringLiteral(", ")));
}

} // namespace

Arguments Arguments::of(const QStringList& words)
{
    Arguments arguments;
    for (int i = 0; i < words.size() && arguments.error.isEmpty(); ++i) {
        const QString& word = words.at(i);
        if (!word.startsWith(QLatin1String("--"))) {
            arguments.files.append(absolutePath(word));
            continue;
        }
        const QString value = words.value(++i);
        if (value.isEmpty())
            arguments.error = Arguments::tr("“%1” needs a value.").arg(word);
        else if (word == QLatin1String("--style"))
            setStyle(arguments, value);
        else if (word == QLatin1String("--new"))
            addNewDocument(arguments, value);
        else if (word == QLatin1String("--screenshot"))
            arguments.picture = absolutePath(value);
        else
            arguments.error = Arguments::tr("Unknown option “%1”.").arg(word);
    }
    return arguments;
}

} // namespace workbench
