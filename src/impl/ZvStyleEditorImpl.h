#pragma once

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleLibrary.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <utility>

class QComboBox;
class QModelIndex;
class QPushButton;
class QTabWidget;
class QTreeView;

namespace libzvutil {

class ZvStyleModel;

class ZVUTIL_NO_EXPORT ZvStyleEditor::Impl : public QObject
{
    Q_OBJECT

public:
    using PreviewFactories = std::deque<std::pair<QString, PreviewFactory>>;

    /// The controls that the user works with, owned by the window.
    struct Controls
    {
        QComboBox* combo;
        QPushButton* duplicateButton;
        QTreeView* tree;
        ZvStyleModel* model;
        QWidget* panel; ///< the only widget that shows the style
        QPushButton* applyButton;
    };

    /// Copies the manager's library.
    Impl();
    ~Impl() override;

    /// The factories of the process. A deque, since callers hold references to its elements.
    static PreviewFactories& previewFactories();

    void connectControls(ZvStyleEditor& editor, const Controls& controls);

    void addPreviewTab(const QString& name, QWidget* widget);

    /// Replaces or adds \p style in the library and emits the new list of names.
    void replaceStyle(const ZvStyle& style);

    /// A copy of \p style under a name that the library doesn't have.
    ZvStyle makeUserCopy(const ZvStyle& style) const;

    /// Asks the user for another colour, if the row has one.
    void activateItem(ZvStyleEditor& editor, const Controls& controls, const QModelIndex& index);

    ZvStyleLibrary library;

Q_SIGNALS:
    void addTab(QWidget* widget, QString name);
    void styleListChanged(QStringList styleNames);
};

} // namespace libzvutil
