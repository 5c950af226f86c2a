#include <zvutil/ZvSearchBar.h>

#include "impl/ZvSearchBarProcessingAction.h"

ZvSearchBar::ZvSearchBar(QWidget* parent)
    : QLineEdit(parent)
{
    setUp();
}

ZvSearchBar::ZvSearchBar(const QString& text, QWidget* parent)
    : QLineEdit(text, parent)
{
    setUp();
}

ZvSearchBar::~ZvSearchBar() = default;

void ZvSearchBar::searchStarted()
{
    Q_EMIT findChild<ZvSearchBarProcessingAction*>()->searchStarted();
}

void ZvSearchBar::searchStopped()
{
    Q_EMIT findChild<ZvSearchBarProcessingAction*>()->searchStopped();
}

void ZvSearchBar::setUp()
{
    // Wanted: not translated.
    setPlaceholderText(QStringLiteral("Search"));
    auto* const action = new ZvSearchBarProcessingAction(this);
    addAction(action, QLineEdit::TrailingPosition);
    Q_EMIT action->searchStopped();
}
