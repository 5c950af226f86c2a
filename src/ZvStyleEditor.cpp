#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>

#include "impl/ZvStyleEditorImpl.h"
#include "impl/styles/ZvBasicUIPreviewWidget.h"
#include "impl/styles/command_window.h"

#include <HostSupport/ComConstruct.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSplitter>
#include <QString>
#include <QTabWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>

namespace libzvutil {

namespace {

COMERROR editStyles(int /*wordCount*/, char** /*words*/, YRef<MessageHandler> /*messages*/,
                    const ScpParseContext& /*context*/)
{
    impl::show_command_window(new ZvStyleEditor(nullptr),
                              QCoreApplication::translate("libzvutil", "Style Editor"));
    return COM_OK;
}

const ComConstruct editCommand("_se", &editStyles, 0);

/// Places \p button after all widgets of \p page in the tab order.
void putBehind(const QWidget& page, QWidget& button)
{
    QWidget* last = page.nextInFocusChain();
    while (page.isAncestorOf(last->nextInFocusChain()))
        last = last->nextInFocusChain();
    QWidget::setTabOrder(last, &button);
}

} // namespace

// The order of the steps matters: a step before the connection of its signal causes no reaction.
ZvStyleEditor::ZvStyleEditor(QWidget* parent)
    : QWidget(parent)
{
    // Keep the implementation in a smart pointer: if a preview's factory throws, the destructor
    // doesn't run.
    auto implementation = std::make_unique<Impl>();
    m_implementation = implementation.get();

    auto* const layout = new QVBoxLayout(this);
    auto* const splitter = new QSplitter(this);

    auto* const combo = new QComboBox;
    combo->setAccessibleName(QStringLiteral("Style"));
    // By default a combo box keeps the width of the names that it is first shown with.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    combo->insertItems(0, d_impl()->library.names());
    combo->setCurrentText(ZvStyleManager::CurrentStyle().name().toQString());
    auto* const duplicateButton = new QPushButton(QStringLiteral("Duplicate"));
    auto* const topRow = new QHBoxLayout;
    topRow->addWidget(combo);
    topRow->addStretch();
    topRow->addWidget(duplicateButton);
    layout->addLayout(topRow);

    auto* const tree = new QTreeView(splitter);
    tree->setAccessibleName(QStringLiteral("Colours and icons"));
    auto* const model = new ZvStyleModel(tree);
    tree->setModel(model);
    tree->setHeaderHidden(true);

    auto* const panel = new QWidget(splitter);
    auto* const tabs = new QTabWidget(panel);
    tabs->setAccessibleName(QStringLiteral("Preview"));
    (new QVBoxLayout(panel))->addWidget(tabs);

    splitter->addWidget(tree);
    splitter->addWidget(panel);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter);

    auto* const applyButton = new QPushButton(QStringLiteral("Apply"));
    auto* const bottomRow = new QHBoxLayout;
    bottomRow->addStretch();
    bottomRow->addWidget(applyButton);
    layout->addLayout(bottomRow);

    connect(d_impl(), &Impl::addTab, tabs,
            qOverload<QWidget*, const QString&>(&QTabWidget::addTab));
    connect(d_impl(), &Impl::addTab, applyButton,
            [applyButton](const QWidget* page) { putBehind(*page, *applyButton); });
    d_impl()->addPreviewTab(QStringLiteral("Basic UI"), new ZvBasicUIPreviewWidget(panel));
    d_impl()->connectControls(*this, {combo, duplicateButton, tree, model, panel, applyButton});

    // Iterate over a copy, since a factory may register another one.
    for (const auto& [name, factory] : Impl::PreviewFactories(Impl::previewFactories())) {
        if (factory)
            d_impl()->addPreviewTab(name, factory(this));
    }
    model->setStyle(ZvStyleManager::CurrentStyle());
    m_implementation = implementation.release();
}

ZvStyleEditor::~ZvStyleEditor()
{
    std::default_delete<Impl>()(m_implementation);
}

void ZvStyleEditor::apply()
{
    ZvStyleManager::SetLibrary(d_impl()->library);
}

void ZvStyleEditor::addPreviewWidget(const QString& name, QWidget* widget)
{
    d_impl()->addPreviewTab(name, widget);
}

ZvStyleEditor::PreviewFactory& ZvStyleEditor::RegisterPreviewWidget(const char* name,
                                                                    PreviewFactory&& factory)
{
    return Impl::previewFactories().emplace_back(QString::fromUtf8(name), factory).second;
}

ZvStyleEditor::Impl* ZvStyleEditor::d_impl()
{
    return m_implementation;
}

const ZvStyleEditor::Impl* ZvStyleEditor::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
