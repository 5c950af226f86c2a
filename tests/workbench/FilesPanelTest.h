#pragma once

#include "common/StatusLine.h"
#include "common/translations.h"
#include "files/FilesOrder.h"
#include "files/FilesPanel.h"
#include "files/FilteredFilesModel.h"
#include "files/RowFilter.h"
#include "files/TypesBox.h"

#include <zvutil/ZvMultiDirectoryListModel.h>
#include <zvutil/ZvSearchBar.h>

#include "shell/document_types.h"
#include "support/FileTree.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QListWidget>
#include <QRegExp>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace zvtest {

// Wine looks at all files of a folder whenever one is made.
#if defined(ZV_SANITIZED) || defined(Q_OS_WIN)
inline constexpr int manyFiles = 4'000;
#else
inline constexpr int manyFiles = 20'000;
#endif

/// What the library's list model finds, with repetitions of the row before left out.
inline QStringList listed(const QStringList& folders, const QStringList& types = {})
{
    ZvMultiDirectoryListModel model;
    QSignalSpy stopped(&model, &ZvMultiDirectoryListModel::backgroundProcessStopped);
    model.setAllowedFileTypes(types);
    for (const QString& folder : folders)
        model.addDirectory(folder);
    // One scan comes by itself, and one for each call.
    const int scans = 2 + folders.size();
    if (!QTest::qWaitFor([&] { return stopped.count() == scans; }, longWait))
        qFatal("the scans don't end");
    QStringList rows;
    for (int row = 0; row < model.rowCount({}); ++row) {
        const QString path = model.index(row).data().toString();
        if (rows.isEmpty() || rows.last() != path)
            rows.append(path);
    }
    return rows;
}

/// Said once more, in another way than the filter's own.
inline QStringList matching(const QStringList& paths, const QString& text)
{
    QStringList result;
    const bool isWildcard = text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?'));
    const QRegExp wildcard(text, Qt::CaseInsensitive, QRegExp::WildcardUnix);
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName();
        if (isWildcard ? wildcard.exactMatch(name) : name.toLower().contains(text.toLower()))
            result.append(path);
    }
    return result;
}

/// The panel with names for what a user sees.
class Panel
{
public:
    Panel()
    {
        panel->resize(320, 600);
        // The order that most tests know beforehand.
        setOrder(workbench::FilesOrder::Found);
        panel->show();
        QApplication::setActiveWindow(panel.get());
    }

    template <typename Widget>
    Widget* child(const QString& name) const
    {
        return panel->findChild<Widget*>(name);
    }

    /// Shortcuts need it.
    bool activate() const { return zvtest::activate(*panel); }

    ZvSearchBar* search() const { return child<ZvSearchBar>("search"); }
    QListView* view() const { return child<QListView>("files"); }
    QListWidget* folders() const { return child<QListWidget>("folders"); }
    workbench::StatusLine* status() const { return child<workbench::StatusLine>("status"); }
    QToolButton* stop() const { return child<QToolButton>("stop"); }
    workbench::TypesBox* types() const { return child<workbench::TypesBox>("types"); }

    void setOrder(workbench::FilesOrder order) const
    {
        auto* const box = child<QComboBox>("order");
        box->setCurrentIndex(box->findData(int(order)));
    }

    QStringList shown() const
    {
        const auto* const model = qobject_cast<workbench::FilteredFilesModel*>(view()->model());
        QStringList paths;
        for (int row = 0; row < model->rowCount(); ++row)
            paths.append(model->path(model->index(row)));
        return paths;
    }

    QAction* action(const QString& text) const
    {
        for (QAction* const action : panel->findChildren<QAction*>()) {
            if (action->text() == text)
                return action;
        }
        qFatal("there is no such action");
    }

    /// Waits until all is as it has to be in the end.
    bool comesToShow(const QStringList& paths) const
    {
        return QTest::qWaitFor([&] { return !panel->isWorking() && shown() == paths; }, longWait);
    }

    std::unique_ptr<workbench::FilesPanel> panel = std::make_unique<workbench::FilesPanel>();
};

/// Joins a filter and the model that shows its hits, as the panel does.
inline void join(workbench::RowFilter& filter, workbench::FilteredFilesModel& model)
{
    QObject::connect(&filter, &workbench::RowFilter::begun, &model,
                     &workbench::FilteredFilesModel::clear);
    QObject::connect(&filter, &workbench::RowFilter::found, &model,
                     &workbench::FilteredFilesModel::append);
}

/// Has the workbench's own types of documents registered for the test functions of a program.
class FilesPanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        workbench::installTranslations();
        workbench::addOwnDocumentTypes();
    }
};

} // namespace zvtest
