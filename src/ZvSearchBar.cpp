#include <zvutil/ZvSearchBar.h>

#include "impl/ZvSearchBarProcessingAction.h"

namespace {

void setUp(ZvSearchBar& bar)
{
    // By contract: the placeholder isn't translated; it is the same in every language.
    bar.setPlaceholderText(QStringLiteral("Search"));
    auto* const action = new ZvSearchBarProcessingAction(&bar);
    bar.addAction(action, QLineEdit::TrailingPosition);
    Q_EMIT action->searchStopped();
}

} // namespace

ZvSearchBar::ZvSearchBar(QWidget* parent)
    : QLineEdit(parent)
{
    setUp(*this);
}

ZvSearchBar::ZvSearchBar(const QString& text, QWidget* parent)
    : QLineEdit(text, parent)
{
    setUp(*this);
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
