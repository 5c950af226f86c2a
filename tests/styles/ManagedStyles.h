#pragma once

#include "UserStyles.h"

#include <zvutil/ZvStyleManager.h>

#include <zvutil/ZvStyleLibrary.h>

#include "support/StyleHost.h"

#include <QApplication>
#include <QColor>
#include <QTest>
#include <QThread>

namespace zvtest {

inline QColor panel(const libzvutil::ZvStyle& style)
{
    return style.colour(libzvutil::ZvStyleBrush::Panel).qColour();
}

/// The signals of the manager, in the order in which they come.
class Listener
{
public:
    Listener()
    {
        QObject::connect(&libzvutil::styleManager(),
                         &libzvutil::ZvStyleManager::currentStyleChanged, &m_context,
                         [this](const libzvutil::ZvStyle& style) {
                             events += "style " + style.name().toQString();
                             sheets += qApp->styleSheet();
                             onManagersThread &= QThread::currentThread() == qApp->thread()
                                 && &style == &libzvutil::ZvStyleManager::CurrentStyle();
                         });
        QObject::connect(&libzvutil::styleManager(),
                         &libzvutil::ZvStyleManager::styleLibraryChanged, &m_context,
                         [this] { events += "library"; });
    }

    QStringList events;
    QStringList sheets; ///< the application's sheet at each change of style
    bool onManagersThread = true;

private:
    QObject m_context;
};

/// Starts each test function with the built-in library in its light style.
class StyleManagerTest : public QObject
{
    Q_OBJECT

protected:
    const StyleHost m_host;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        QVERIFY(qApp->styleSheet().isEmpty());
        QCOMPARE(libzvutil::ZvStyleManager::AvailableStyleNames(), builtIn);
    }

    void init()
    {
        QFile::remove(m_host.modificationsFile());
        libzvutil::ZvStyleManager::SetLibrary(libzvutil::ZvStyleLibrary());
        libzvutil::ZvStyleManager::SetStyle(libzvutil::ZvStyleManager::Library().light());
        qApp->setStyleSheet(QString());
    }

    void cleanup() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

} // namespace zvtest
