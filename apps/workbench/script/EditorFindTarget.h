#pragma once

#include "search/FindTarget.h"

class QPlainTextEdit;

namespace workbench {

/// Lets a find bar search the lines of an editor.
class EditorFindTarget : public FindTarget
{
public:
    /// Creates the target. \p editor must outlive it.
    explicit EditorFindTarget(QPlainTextEdit& editor);

    int rowCount() const override;
    int columnCount(int row) const override;
    QString text(int row, int column) const override;
    bool selectsWholeTexts() const override;
    TextPlace selectionStart() const override;
    TextPlace selectionEnd() const override;
    QString selectedText() const override;
    void select(const FoundText& found) override;
    bool isReadOnly() const override;
    void change(const QString& step, const std::vector<TextChange>& changes) override;

private:
    TextPlace placeOf(int position) const;
    int positionOf(const TextPlace& place) const;

    QPlainTextEdit& m_editor;
};

} // namespace workbench
