#pragma once

#include <QObject>

class QLineEdit;

namespace workbench {

/// Shows the placeholder of a line edit in the style's colour for disabled text, whatever the style.
/// The styles' sheets would have it look like a text that was typed.
class DimPlaceholder : public QObject
{
    Q_OBJECT

public:
    /// Belongs to \p edit.
    explicit DimPlaceholder(QLineEdit* edit);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void dim() const;

    QLineEdit& m_edit;
};

} // namespace workbench
