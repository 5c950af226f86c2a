#include "impl/ZvSearchBarProcessingAction.h"

#include <zvutil/ZvProcessingIndicator.h>

QWidget* ZvSearchBarProcessingAction::createWidget(QWidget* parent)
{
    auto* const indicator = new ZvProcessingIndicator(parent);
    connect(this, &ZvSearchBarProcessingAction::searchStarted, indicator, &QWidget::show);
    connect(this, &ZvSearchBarProcessingAction::searchStopped, indicator, &QWidget::hide);
    return indicator;
}
