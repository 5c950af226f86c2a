#pragma once

#include "common/path_names.h"
#include "common/translations.h"
#include "shell/DocumentCommands.h"
#include "shell/Workbench.h"
#include "shell/document_types.h"
#include "shell/open_workbench.h"
#include "support/Files.h"

#include <zvworkbench/Document.h>

#include <support/Background.h>
#include <support/RefusedWrite.h>
#include <support/StyleHost.h>
#include <support/WindowResponder.h>
#include <support/Workbench.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace zvtest {

/// Closes and deletes itself, as it does in the program.
class Window
{
public:
    Window()
        : m_window(new workbench::Workbench)
    {
        m_window->restoreSession();
        m_window->show();
    }

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Asks for nothing: nobody would answer behind a test that has failed.
    ~Window()
    {
        if (m_window) {
            for (workbench::Document* const document : m_window->documents())
                document->setModified(false);
        }
        close();
    }

    workbench::Workbench* operator->() const { return m_window; }
    workbench::Workbench& operator*() const { return *m_window; }

    bool close()
    {
        if (!m_window)
            return true;
        if (!m_window->close())
            return false;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return m_window.isNull();
    }

private:
    QPointer<workbench::Workbench> m_window;
};

inline QAction* actionOf(const workbench::Workbench& window, const char* name)
{
    return window.findChild<QAction*>(QLatin1String(name));
}

inline QStringList textsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        if (!action->isSeparator())
            texts.append(action->text().remove(QLatin1Char('&')));
    }
    return texts;
}

inline QStringList namesOf(const workbench::Workbench& window)
{
    QStringList names;
    for (const workbench::Document* const document : window.documents())
        names.append(document->shortTitle());
    return names;
}

/// The box that tells of a failure, once it is there.
inline QMessageBox* failureOf(const workbench::Workbench& window)
{
    QMessageBox* box = nullptr;
    const bool isThere = QTest::qWaitFor(
        [&] {
            box = window.findChild<QMessageBox*>();
            return box != nullptr;
        },
        longWait);
    return isThere ? box : nullptr;
}

inline void dismiss(QMessageBox& box)
{
    box.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline WindowResponder<QFileDialog> chooseFile(const QString& file)
{
    return WindowResponder<QFileDialog>([file](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
        QMetaObject::invokeMethod(&dialog, "accept");
    });
}

/// Gives each test function a host and a folder of its own.
class WindowTest : public QObject
{
    Q_OBJECT

protected:
    static QByteArray optionsOf(const StyleHost& host)
    {
        return contentOf(host.path() + "/options.ini");
    }

    QString script(const char* name, const QByteArray& content = "print(1)") const
    {
        const QString path = m_folder->filePath(QString::fromUtf8(name));
        return writeTo(path, content) ? path : QString();
    }

    std::optional<StyleHost> m_host;
    std::optional<QTemporaryDir> m_folder;

protected Q_SLOTS:
    void initTestCase()
    {
        workbench::installTranslations();
        workbench::addOwnDocumentTypes();
    }

private Q_SLOTS:
    void init()
    {
        m_host.emplace();
        m_folder.emplace();
        QVERIFY(m_host->isValid());
    }

    void cleanup()
    {
        qApp->setStyleSheet(QString());
        m_folder.reset();
        m_host.reset();
    }
};

} // namespace zvtest
