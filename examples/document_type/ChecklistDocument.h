#pragma once

#include "Checklist.h"

#include <zvworkbench/Document.h>

class QListWidget;

/// A checklist in its window.
class ChecklistDocument : public workbench::Document
{
    Q_OBJECT

public:
    ChecklistDocument(const QString& title, QWidget* parent);

    Checklist checklist() const;
    void setChecklist(const Checklist& checklist);

    /// Ticks all points.
    void tickAll();

protected:
    void read(const zvutil::ZvFilePath& file) override;
    void write(const zvutil::ZvFilePath& file) const override;

private:
    void addPoint(const ChecklistPoint& point);

    QListWidget* m_list; // owned as a child
};

/// Returns the type of checklists.
const workbench::DocumentType& checklistType();
