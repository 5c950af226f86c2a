#pragma once

#include <QWidgetAction>

/// Brings a spinner into a line edit, which takes actions.
class ZvSearchBarProcessingAction : public QWidgetAction
{
    Q_OBJECT

public:
    using QWidgetAction::QWidgetAction;

Q_SIGNALS:
    void searchStarted();
    void searchStopped();

protected:
    QWidget* createWidget(QWidget* parent) override;
};
