#pragma once

#include <QList>
#include <QString>

/// A point of a checklist.
struct ChecklistPoint
{
    QString text;
    bool isDone = false;
};

using Checklist = QList<ChecklistPoint>;
