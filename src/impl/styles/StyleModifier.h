#pragma once

#include <QWidget>

class QPlainTextEdit;
class QPushButton;

namespace libzvutil {

/// The window in which a user edits the additions to the style sheet.
class StyleModifier : public QWidget
{
public:
    explicit StyleModifier(QWidget* parent);
    ~StyleModifier() override;

protected:
    /// If there are edits, asks whether to apply them; the window closes in any case.
    void closeEvent(QCloseEvent* event) override;

private:
    void previewModifications();
    void applyModifications();

    QPushButton* m_applyButton;
    QPlainTextEdit* m_textEditor;
};

} // namespace libzvutil
