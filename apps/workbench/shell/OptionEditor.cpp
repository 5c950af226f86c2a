#include "shell/OptionEditor.h"

#include "common/DimPlaceholder.h"
#include "shell/accents.h"

#include <zvutil/ZvStyleManager.h>

#include <QColorDialog>
#include <QComboBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QPixmap>
#include <QToolButton>

namespace workbench {

namespace {

/// Lays \p first and \p second, which may be null, side by side.
void fill(QWidget& editor, QWidget* first, QWidget* second)
{
    auto* const layout = new QHBoxLayout(&editor);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(first, 1);
    if (second)
        layout->addWidget(second);
    editor.setFocusProxy(first);
}

class TextEditor : public OptionEditor
{
public:
    TextEditor()
        : m_text(new QLineEdit)
    {
        fill(*this, m_text, nullptr);
        connect(m_text, &QLineEdit::textChanged, this, &OptionEditor::changed);
    }

    QString value() const override { return m_text->text(); }
    void setValue(const QString& value) override { m_text->setText(value); }

private:
    QLineEdit* m_text;
};

/// Edits the name of a style by a choice among the available ones.
class StyleNameEditor : public OptionEditor
{
public:
    StyleNameEditor()
        : m_names(new QComboBox)
    {
        fill(*this, m_names, nullptr);
        m_names->addItems(libzvutil::ZvStyleManager::AvailableStyleNames());
        connect(m_names, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &OptionEditor::changed);
    }

    QString value() const override { return m_names->currentText(); }

    /// Selects a style. A style that no longer exists is added, so that it stays until the user
    /// chooses another.
    void setValue(const QString& value) override
    {
        if (m_names->findText(value, Qt::MatchFixedString) < 0)
            m_names->addItem(value);
        m_names->setCurrentIndex(m_names->findText(value, Qt::MatchFixedString));
    }

private:
    QComboBox* m_names;
};

/// Edits a colour as text, or by a dialog.
class ColourEditor final : public OptionEditor
{
public:
    ColourEditor()
        : m_text(new QLineEdit)
        , m_button(new QToolButton)
    {
        fill(*this, m_text, m_button);
        m_text->setPlaceholderText(QStringLiteral("#rrggbb"));
        new DimPlaceholder(m_text);
        m_button->setObjectName(QStringLiteral("colour"));
        m_button->setToolTip(tr("Choose a colour"));
        m_button->setAccessibleName(tr("Choose a colour"));
        m_button->setIconSize({24, 16});
        connect(m_text, &QLineEdit::textChanged, this, [this] {
            showColour();
            Q_EMIT changed();
        });
        connect(m_button, &QToolButton::clicked, this, [this] { choose(); });
        showColour();
    }

    QString value() const override { return m_text->text().trimmed(); }
    void setValue(const QString& value) override { m_text->setText(value); }

    QString problem() const override
    {
        return QColor::isValidColor(value())
            ? QString()
            : tr("“%1” is not a colour. Type one such as “#2d7d9a”.").arg(value());
    }

private:
    void showColour()
    {
        QPixmap swatch(m_button->iconSize());
        swatch.fill(QColor::isValidColor(value()) ? QColor(value()) : QColor(Qt::transparent));
        m_button->setIcon(QIcon(swatch));
    }

    void choose()
    {
        auto* const dialog = new QColorDialog(QColor(value()), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QColorDialog::colorSelected, this,
                [this](const QColor& colour) { setValue(accentText(colour)); });
        dialog->open();
    }

    QLineEdit* m_text;
    QToolButton* m_button;
};

} // namespace

OptionEditor::OptionEditor() = default;

OptionEditor* OptionEditor::make(const QString& option, const QString& value)
{
    OptionEditor* editor = nullptr;
    if (option == QLatin1String("ZvStyle"))
        editor = new StyleNameEditor;
    else if (option == QLatin1String("ZvStyleAccent"))
        editor = new ColourEditor;
    else
        editor = new TextEditor;
    editor->setValue(value);
    return editor;
}

QString OptionEditor::problem() const
{
    return {};
}

} // namespace workbench
