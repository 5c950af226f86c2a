#include "ChecklistDocument.h"

#include "checklist_file.h"

#include <QListWidget>
#include <QVBoxLayout>

const workbench::DocumentType& checklistType()
{
    static const workbench::DocumentType type = {
        "checklist", "Checklist", "Checklists", ".checklist",
        [](const QString& title, QWidget* parent) -> workbench::Document* {
            return new ChecklistDocument(title, parent);
        }};
    return type;
}

ChecklistDocument::ChecklistDocument(const QString& title, QWidget* parent)
    : Document(checklistType(), title, parent)
    , m_list(new QListWidget(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    setFocusProxy(m_list);
    connect(m_list, &QListWidget::itemChanged, this, [this] { setModified(true); });

    QAction* const add = addEditAction("&Add Point", QKeySequence("Ins"));
    connect(add, &QAction::triggered, this, [this] {
        addPoint({"New point", false});
        m_list->editItem(m_list->item(m_list->count() - 1));
        setModified(true);
    });
    QAction* const remove = addEditAction("&Remove Point", QKeySequence("Del"));
    connect(remove, &QAction::triggered, this, [this] {
        if (m_list->currentRow() >= 0) {
            delete m_list->takeItem(m_list->currentRow());
            setModified(true);
        }
    });
}

Checklist ChecklistDocument::checklist() const
{
    Checklist checklist;
    for (int row = 0; row < m_list->count(); ++row) {
        const QListWidgetItem* const item = m_list->item(row);
        checklist.append({item->text(), item->checkState() == Qt::Checked});
    }
    return checklist;
}

void ChecklistDocument::setChecklist(const Checklist& checklist)
{
    m_list->clear();
    for (const ChecklistPoint& point : checklist)
        addPoint(point);
    setModified(true);
}

void ChecklistDocument::tickAll()
{
    for (int row = 0; row < m_list->count(); ++row)
        m_list->item(row)->setCheckState(Qt::Checked);
}

void ChecklistDocument::read(const zvutil::ZvFilePath& file)
{
    // What isn't a checklist throws before anything is changed.
    setChecklist(readChecklist(file));
}

void ChecklistDocument::write(const zvutil::ZvFilePath& file) const
{
    saveChecklist(checklist(), file);
}

void ChecklistDocument::addPoint(const ChecklistPoint& point)
{
    auto* const item = new QListWidgetItem(point.text, m_list);
    item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    item->setCheckState(point.isDone ? Qt::Checked : Qt::Unchecked);
}
