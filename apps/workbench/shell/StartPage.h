#pragma once

#include <zvworkbench/DocumentType.h>

#include <DockFramework/ContentWidget.h>

#include <QStringList>

class QVBoxLayout;

namespace workbench {

/// The page in the place of documents while there are none: it offers new documents and those that
/// were open last.
class StartPage : public ContentWidget
{
    Q_OBJECT

public:
    explicit StartPage(QWidget* parent = nullptr);

    void showRecentFiles(const QStringList& files);

Q_SIGNALS:
    void newRequested(const workbench::DocumentType& type);
    void openRequested();
    void fileRequested(const QString& file);

private:
    QVBoxLayout* m_recentFiles; // owned by a child
};

} // namespace workbench
