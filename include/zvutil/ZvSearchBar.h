#pragma once

#include <zvutil/zvutil_export.h>

#include <QLineEdit>
#include <QString>

/// A line edit for a text to search for, with a spinner at its trailing end while a search runs.
///
/// The bar doesn't search: its owner calls `searchStarted` and `searchStopped`. Searches aren't
/// counted, one stop hides the spinner. GUI thread only.
///
/// @code{.cpp}
/// #include <zvutil/ZvAbstractIterativeProcess.h>
///
/// /// Has each change of the text start \p search again, and the bar show that it runs.
/// void connectSearch(ZvSearchBar* bar, ZvAbstractIterativeProcess* search)
/// {
///     QObject::connect(bar, &QLineEdit::textChanged, search, &ZvAbstractIterativeProcess::restart);
///     QObject::connect(search, &ZvAbstractIterativeProcess::started, bar,
///                      &ZvSearchBar::searchStarted);
///     QObject::connect(search, &ZvAbstractIterativeProcess::finished, bar,
///                      &ZvSearchBar::searchStopped);
/// }
/// @endcode
/// @since 0.1 @ingroup widgets
class ZVUTIL_EXPORT ZvSearchBar : public QLineEdit
{
    Q_OBJECT

public:
    /// An empty bar with the placeholder "Search" and a hidden spinner.
    /// @param parent owns the widget; may be null
    explicit ZvSearchBar(QWidget* parent = nullptr);
    /// The same with a text.
    /// @param text shown at first
    /// @param parent owns the bar; may be null
    ZvSearchBar(const QString& text, QWidget* parent);
    /// Deletes the spinner with the bar.
    ~ZvSearchBar() override;

    /// Shows the spinner. No slot of the meta-object: connect to it by its address.
    void searchStarted();
    /// Hides the spinner, as it is at first. No slot of the meta-object: connect to it by its
    /// address.
    void searchStopped();
};

static_assert(sizeof(ZvSearchBar) == sizeof(QLineEdit));
