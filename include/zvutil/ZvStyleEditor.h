#pragma once

#include <zvutil/zvutil_export.h>

#include <QWidget>

class QString;

namespace libzvutil {

class ZvStyle;

/// The window in which a user browses styles, changes their colours and sees the result on sample
/// controls, while the rest of the application keeps its look.
///
/// It works on a copy of the manager's library, made when the editor is. A built-in style is never
/// changed: the first new colour on one makes a user's copy, to which the editor moves on. Only
/// `apply`, which is also the button "Apply", hands the library to the manager; saving it is up to
/// others. Closing asks nothing, and edits that haven't been applied are lost.
///
/// GUI thread only, `RegisterPreviewWidget` included.
class ZVUTIL_EXPORT ZvStyleEditor : public QWidget
{
    Q_OBJECT

    using PreviewFactory = QWidget* (*)(const ZvStyleEditor*);

public:
    /// Shows the current style. Without `Qt::WA_DeleteOnClose`.
    ZvStyleEditor(QWidget* parent = nullptr);
    ~ZvStyleEditor() override;

    /// `ZvStyleManager::SetLibrary` with the editor's library.
    void apply();

    /// Adds a tab with \p widget to this editor, which takes ownership. The widget gets the sheet of
    /// the style that is shown, also a sheet of its own at the next change.
    void addPreviewWidget(const QString& name, QWidget* widget);

    /// Adds a tab to all editors that are made afterwards: each calls \p factory with itself and
    /// takes ownership of the result; what it throws leaves the editor's constructor. \p name is in
    /// UTF-8. There is no way to take an entry back; but what is returned stays for good, and a
    /// null pointer put there ends the tab.
    static PreviewFactory& RegisterPreviewWidget(const char* name, PreviewFactory&& factory);

Q_SIGNALS:
    /// The style that is shown has changed, or is another one. Valid until it changes; `ZvStyle` is no
    /// meta-type, so listeners connect directly.
    void previewStyleChanged(const ZvStyle& style, QPrivateSignal);

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvStyleEditor) == sizeof(QWidget) + sizeof(void*));

} // namespace libzvutil
