#include "common/translations.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

namespace {

/// The linker drops the resources of a static library that nobody refers to. The macro has to stand
/// outside of any named namespace.
void initResources()
{
    Q_INIT_RESOURCE(workbench_translations);
}

} // namespace

namespace workbench {

void installTranslations()
{
    static QPointer<QTranslator> translator;
    if (translator)
        return;
    initResources();
    translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/workbench/translations/workbench_en.qm")))
        QCoreApplication::installTranslator(translator);
}

} // namespace workbench
