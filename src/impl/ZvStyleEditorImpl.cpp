#include "impl/ZvStyleEditorImpl.h"

#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include <QColor>
#include <QColorDialog>
#include <QComboBox>
#include <QPersistentModelIndex>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyle>
#include <QTreeView>
#include <QVariant>

namespace libzvutil {

namespace {

/// A scroll area whose size hint has room for the whole widget and a scroll bar; that of Qt is
/// limited to 36 by 24 lines.
class PreviewArea : public QScrollArea
{
public:
    QSize sizeHint() const override
    {
        // Polish first: a style sheet may change the frame.
        ensurePolished();
        const int frame = 2 * frameWidth();
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
        const QSize whole = widget() ? widget()->sizeHint() : QSize(0, 0);
        return whole + QSize(frame + bar, frame);
    }
};

void setStyleNames(QComboBox& combo, const QStringList& names)
{
    const QString shown = combo.currentText();
    combo.clear();
    combo.insertItems(0, names);
    combo.setCurrentText(shown);
}

void showStyle(ZvStyleModel& model, const ZvStyleLibrary& library, const QString& name)
{
    try {
        model.setStyle(library.style(name.toUtf8().constData()));
    } catch (...) {
        // By contract: showStyle() ignores a name that the library doesn't have, such as that of an
        // empty list.
    }
}

void preview(const ZvStyle& style, QWidget& panel)
{
    // By contract: the panel keeps its look if the template can't be read.
    style.apply(&panel);
    const QString sheet = panel.styleSheet();
    for (QWidget* const widget : panel.findChildren<QWidget*>())
        widget->setStyleSheet(sheet);
}

} // namespace

ZvStyleEditor::Impl::Impl()
    : library(ZvStyleManager::Library())
{
}

ZvStyleEditor::Impl::~Impl() = default;

ZvStyleEditor::Impl::PreviewFactories& ZvStyleEditor::Impl::previewFactories()
{
    static PreviewFactories factories;
    return factories;
}

// The order of the connections is the order in which the reactions to one signal run.
void ZvStyleEditor::Impl::connectControls(ZvStyleEditor& editor, const Controls& controls)
{
    const auto tellPreview = [&editor, model = controls.model] {
        Q_EMIT editor.previewStyleChanged(model->style(), ZvStyleEditor::QPrivateSignal());
    };
    connect(controls.model, &QAbstractItemModel::dataChanged, this,
            [this, tellPreview, model = controls.model] {
                library.update(model->style());
                tellPreview();
            });
    connect(this, &Impl::styleListChanged, this,
            [combo = controls.combo](const QStringList& names) { setStyleNames(*combo, names); });
    connect(controls.model, &QAbstractItemModel::modelReset, this, tellPreview);
    connect(controls.tree, &QAbstractItemView::activated, this,
            [this, &editor, controls](const QModelIndex& index) {
                activateItem(editor, controls, index);
            });
    connect(controls.duplicateButton, &QPushButton::clicked, this, [this, controls] {
        const ZvStyle copy = makeUserCopy(controls.model->style());
        replaceStyle(copy);
        controls.combo->setCurrentText(copy.name().toQString());
    });
    connect(
        controls.combo, &QComboBox::currentTextChanged, this,
        [this, model = controls.model](const QString& name) { showStyle(*model, library, name); });
    connect(controls.applyButton, &QPushButton::clicked, &editor, &ZvStyleEditor::apply);
    connect(&editor, &ZvStyleEditor::previewStyleChanged, this,
            [panel = controls.panel](const ZvStyle& style) { preview(style, *panel); });
}

void ZvStyleEditor::Impl::addPreviewTab(const QString& name, QWidget* widget)
{
    auto* const scrollArea = new PreviewArea;
    scrollArea->setAccessibleName(name);
    scrollArea->setWidget(widget);
    scrollArea->setWidgetResizable(true);
    Q_EMIT addTab(scrollArea, name);
}

void ZvStyleEditor::Impl::replaceStyle(const ZvStyle& style)
{
    library.update(style);
    Q_EMIT styleListChanged(library.names());
}

ZvStyle ZvStyleEditor::Impl::makeUserCopy(const ZvStyle& style) const
{
    const QString own = style.name().toQString();
    const QString base = style.isDefaultStyle() ? QStringLiteral("User ") + own : own;
    const QStringList names = library.names();
    QString candidate = base;
    // By contract: makeUserCopy() compares names with case, unlike the library, so a copy may
    // replace a style whose name differs only in case.
    for (int i = 1; i < 10000 && names.contains(candidate, Qt::CaseSensitive); ++i)
        candidate = base + QLatin1Char(' ') + QString::number(i);
    return style.duplicate(candidate.toUtf8().constData());
}

void ZvStyleEditor::Impl::activateItem(ZvStyleEditor& editor, const Controls& controls,
                                       const QModelIndex& index)
{
    const QVariant shown = index.data(Qt::DecorationRole);
    if (shown.userType() != QMetaType::QColor)
        return;
    // Keep a persistent index: the dialog runs an event loop, in which the model may be reset.
    const QPersistentModelIndex item(index);
    const QColor chosen = QColorDialog::getColor(shown.value<QColor>(), &editor, QString(), {});
    if (!chosen.isValid() || !item.isValid())
        return;
    ZvStyleModel& model = *controls.model;
    if (!model.style().isDefaultStyle()) {
        model.setData(item, chosen, Qt::DecorationRole);
        return;
    }
    QString name;
    {
        // Block the model's signals: the list of names changes and selects another style meanwhile.
        const QSignalBlocker blocker(model);
        model.setData(item, chosen, Qt::DecorationRole);
        const ZvStyle copy = makeUserCopy(model.style());
        replaceStyle(copy);
        name = copy.name().toQString();
    }
    controls.combo->setCurrentText(name);
}

} // namespace libzvutil
