#pragma once

#include <QObject>

class QLineEdit;

namespace workbench {

/// Shows the placeholder of a line edit in the current style's colour for disabled text.
///
/// The styles' sheets would show it in the colour of other text, so that users would take it for
/// text that was typed.
class DimPlaceholder : public QObject
{
    Q_OBJECT

public:
    /// Creates the object as a child of \p edit, whose events it filters.
    explicit DimPlaceholder(QLineEdit* edit);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void dim() const;

    QLineEdit& m_edit;
};

} // namespace workbench
