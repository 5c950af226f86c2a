#pragma once

#include <DockFramework/ContentWidget.h>

#include "support/WindowResponder.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

namespace zvtest {

/// A document with a field to work in.
class Document : public ContentWidget
{
public:
    explicit Document(const QString& name, QWidget* parent = nullptr)
        : ContentWidget(name, parent, true)
        , edit(new QLineEdit(this))
    {
        (new QVBoxLayout(this))->addWidget(edit);
        setFocusProxy(edit);
    }

    QString getFilename() const override { return filename; }
    bool canReloadFile() const override { return true; }
    void reloadFile() override { calls << "reload"; }
    void notifyHighlighted() override { calls << "notify"; }
    void notifyTitleBarPressed() override { calls << "pressed"; }
    void widgetHighlightedEvent() override { calls << "highlighted"; }
    void widgetUnhighlightedEvent() override { calls << "unhighlighted"; }
    void windowChanged() override { calls << "window"; }
    void notifyLocationChanged(Qt::DockWidgetArea area) override
    {
        calls << QString("area %1").arg(int(area));
    }
    DockLocationPreference getPreferredDockLocation() const override { return location; }
    QSize getPreferredNewWindowSize() const override { return QSize(321, 123); }

    QLineEdit* edit;
    QString filename;
    QStringList calls;
    DockLocationPreference location = DockLocationPreference::Documents;

protected:
    using DockableWidgetContents::closeEvent;
    void closeEvent(QCloseEvent* event) override
    {
        DockableWidgetContents::closeEvent(event, QString("details"), QString("question"));
    }
    void callOnCloseScript() override { calls << "script"; }
    void onClosing() override { calls << "closing"; }
};

template <typename Child>
Child* child(const QObject& parent, const char* name)
{
    return parent.findChild<Child*>(QString::fromLatin1(name));
}

/// Gives the test functions of a program a folder.
class DockFrameworkTest : public QObject
{
    Q_OBJECT

protected:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
};

} // namespace zvtest
