#pragma once

#include <QWidgetAction>

/// An action that shows a spinner in a line edit.
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
