#pragma once

#include <zvutil/zvutil_export.h>

#include <QLineEdit>
#include <QString>

/// A line edit for a text to search for, with a spinner at its trailing end while a search runs.
///
/// It searches nothing itself: whoever does tells when a search starts and stops. Searches aren't
/// counted, one stop ends the spinner. GUI thread only.
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
class ZVUTIL_EXPORT ZvSearchBar : public QLineEdit
{
    Q_OBJECT

public:
    explicit ZvSearchBar(QWidget* parent = nullptr);
    ZvSearchBar(const QString& text, QWidget* parent);
    ~ZvSearchBar() override;

    /// Shows the spinner. No slot of the meta-object: connect to it by its address.
    void searchStarted();
    /// Hides the spinner, as it is at first. No slot of the meta-object: connect to it by its address.
    void searchStopped();
};

static_assert(sizeof(ZvSearchBar) == sizeof(QLineEdit));
