// A module of the workbench: a type of documents, a panel and a menu entry.

#include "ChecklistDocument.h"

#include <zvworkbench/MenuEntry.h>
#include <zvworkbench/Panel.h>
#include <zvworkbench/WorkbenchWindow.h>

#include <DockFramework/DockableWidgetContents.h>

#include <QListWidget>
#include <QVBoxLayout>

namespace {

/// The panel: a double click on a template opens a new checklist with its points.
class TemplatesPanel : public DockableWidgetContents
{
public:
    TemplatesPanel(workbench::WorkbenchWindow& window, QWidget* parent)
        : DockableWidgetContents("Checklist Templates", parent)
    {
        auto* const list = new QListWidget(this);
        list->addItems({"Before power-on", "After repair"});
        auto* const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(list);
        connect(list, &QListWidget::itemActivated, this,
                [&window](const QListWidgetItem* item) { openTemplate(window, item->text()); });
    }

    DockLocationPreference getPreferredDockLocation() const override
    {
        return DockLocationPreference::Left;
    }

private:
    static void openTemplate(workbench::WorkbenchWindow& window, const QString& name)
    {
        auto* const document =
            qobject_cast<ChecklistDocument*>(window.newDocument(checklistType()));
        if (!document)
            return;
        if (name == "Before power-on")
            document->setChecklist({{"Supply is off"}, {"Polarity is right"}, {"Fuse is in"}});
        else
            document->setChecklist({{"Case is closed"}, {"Safety test is passed"}});
    }
};

const workbench::Panel templatesPanel = {
    "checklistTemplates",
    [](workbench::WorkbenchWindow& window, QWidget* parent) -> DockableWidgetContents* {
        return new TemplatesPanel(window, parent);
    }};

const workbench::MenuEntry tickAllEntry = {
    "tickAll", "&Tick All Points", QKeySequence("Ctrl+Alt+T"),
    [](workbench::WorkbenchWindow& window) {
        if (auto* const document = qobject_cast<ChecklistDocument*>(window.currentDocument()))
            document->tickAll();
        else
            window.showMessage("The current document is not a checklist.");
    }};

// The workbench asks for all of this when its window is made, after the modules were loaded.
[[maybe_unused]] const bool areAdded = workbench::addDocumentType(checklistType())
    && workbench::addPanel(templatesPanel) && workbench::addMenuEntry(tickAllEntry);

} // namespace
