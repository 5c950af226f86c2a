#pragma once

#include "common/StatusLine.h"
#include "search/FindInFilesDialog.h"
#include "search/HitsModel.h"
#include "search/SearchRequest.h"
#include "support/Files.h"

#include "shell/document_types.h"
#include "support/Background.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <memory>

namespace zvtest {

inline void write(const QString& name, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(name).path());
    if (!writeTo(name, content))
        qFatal("there is no room for the files");
}

/// The dialog, its request manager, and names for what a user sees.
class Finder
{
public:
    explicit Finder(const QStringList& folders)
        : dialog(std::make_unique<workbench::FindInFilesDialog>(managed.manager(), nullptr))
    {
        dialog->setFolders(folders);
        dialog->show();
        QApplication::setActiveWindow(dialog.get());
    }

    ~Finder()
    {
        dialog.reset();
        managed.end();
    }

    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;

    template <typename Widget>
    Widget* child(const QString& name) const
    {
        return dialog->findChild<Widget*>(name);
    }

    QLineEdit* text() const { return child<QLineEdit>("text"); }
    QTreeView* view() const { return child<QTreeView>("hits"); }
    QListWidget* folders() const { return child<QListWidget>("folders"); }
    QString status() const { return child<workbench::StatusLine>("status")->text(); }
    QPushButton* button(const QString& name) const { return child<QPushButton>(name); }

    /// The hits as FILE:LINE.
    QStringList hits() const
    {
        QStringList lines;
        const auto* const model = qobject_cast<workbench::HitsModel*>(view()->model());
        for (int row = 0; row < model->rowCount(); ++row) {
            const workbench::SearchHit& hit = model->hit(row);
            lines.append(QFileInfo(hit.file).fileName() + ":" + QString::number(hit.line.number));
        }
        return lines;
    }

    bool finds(const QString& needle) const
    {
        text()->setText(needle);
        button("find")->click();
        return ends();
    }

    bool ends() const
    {
        return QTest::qWaitFor([this] { return !dialog->isSearching(); }, longWait);
    }

    ManagerWithWorker managed;
    std::unique_ptr<workbench::FindInFilesDialog> dialog;
};

/// Has the workbench's own types of documents registered for the test functions of a program.
class FindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { workbench::addOwnDocumentTypes(); }
};

} // namespace zvtest
