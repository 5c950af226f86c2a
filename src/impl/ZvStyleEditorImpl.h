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

    /// What a user works with, owned by the window.
    struct Controls
    {
        QComboBox* combo;
        QPushButton* duplicateButton;
        QTreeView* tree;
        ZvStyleModel* model;
        QWidget* panel; ///< which alone shows the style
        QPushButton* applyButton;
    };

    /// With a copy of the manager's library.
    Impl();
    ~Impl() override;

    /// Those of the process. A deque, since callers hold references to the factories.
    static PreviewFactories& previewFactories();

    void connectControls(ZvStyleEditor& editor, const Controls& controls);

    void addPreviewTab(const QString& name, QWidget* widget);

    /// Puts a style into the library and tells the new list of names.
    void replaceStyle(const ZvStyle& style);

    /// A copy by a name that is free.
    ZvStyle makeUserCopy(const ZvStyle& style) const;

    /// Lets the user choose another colour for a row that has one.
    void activateItem(ZvStyleEditor& editor, const Controls& controls, const QModelIndex& index);

    ZvStyleLibrary library;

Q_SIGNALS:
    void addTab(QWidget* widget, QString name);
    void styleListChanged(QStringList styleNames);
};

} // namespace libzvutil
