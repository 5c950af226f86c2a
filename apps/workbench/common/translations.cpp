#include "common/translations.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

/// Registers the resources, which the linker would otherwise drop from a static library. The macro
/// declares a function of the global namespace, so this function can't be inside another one.
static void initTranslations()
{
    Q_INIT_RESOURCE(workbench_resources);
}

namespace workbench {

void installTranslations()
{
    static QPointer<QTranslator> translator;
    if (translator)
        return;
    initTranslations();
    translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/workbench/translations/workbench_en.qm")))
        QCoreApplication::installTranslator(translator);
}

} // namespace workbench
