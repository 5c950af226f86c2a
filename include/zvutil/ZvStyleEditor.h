#pragma once

#include <zvutil/zvutil_export.h>

#include <QWidget>

class QString;

namespace libzvutil {

class ZvStyle;

/// The window in which a user browses styles, changes their colours and sees the result on sample
/// controls, while the rest of the application keeps its look.
///
/// The editor works on a copy of the manager's library that its constructor makes. A built-in style
/// is never changed: the first new colour on one makes a user's copy, which the editor shows from
/// then on. Only `apply`, which the button "Apply" calls, hands the library to the manager; the
/// caller saves it. Closing asks nothing, and edits that haven't been applied are lost.
///
/// GUI thread only, `RegisterPreviewWidget` included.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvStyleEditor : public QWidget
{
    Q_OBJECT

    /// Makes the widget of a preview tab for an editor; must not return null.
    using PreviewFactory = QWidget* (*)(const ZvStyleEditor*);

public:
    /// Shows the current style. `Qt::WA_DeleteOnClose` isn't set.
    /// @param parent owns the editor; may be null
    ZvStyleEditor(QWidget* parent = nullptr);
    /// Deletes the tabs; edits that haven't been applied are lost.
    ~ZvStyleEditor() override;

    /// Hands a copy of the editor's library to `ZvStyleManager::SetLibrary`.
    void apply();

    /// Adds a tab to this editor. The style sheet of the style that is shown is set on the widget,
    /// and replaced at each change.
    /// @param name the tab's title
    /// @param widget owned from now on; must not be null
    void addPreviewWidget(const QString& name, QWidget* widget);

    /// Adds a tab to all editors that are made afterwards.
    /// @param name the tab's title, in UTF-8
    /// @param factory called by each editor with itself; the editor owns the result, and an
    /// exception leaves the editor's constructor
    /// @return the entry, valid for good: an entry can't be removed, but once a null pointer is
    /// assigned to it later editors have no such tab
    static PreviewFactory& RegisterPreviewWidget(const char* name, PreviewFactory&& factory);

Q_SIGNALS:
    /// The style that is shown has changed or was replaced. `ZvStyle` is no meta-type, so listeners
    /// connect directly.
    /// @param style valid until the next change
    void previewStyleChanged(const ZvStyle& style, QPrivateSignal);

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvStyleEditor) == sizeof(QWidget) + sizeof(void*));

} // namespace libzvutil
