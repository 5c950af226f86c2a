#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

/// A line above a document whose file has changed on disk, with what can be done about it.
class ReloadBar : public QFrame
{
    Q_OBJECT

public:
    explicit ReloadBar(QWidget* parent);

    /// Shows itself. \p losesChanges adds a warning.
    void offer(bool exists, bool canReload, bool losesChanges);

Q_SIGNALS:
    void reloadRequested();

private:
    QLabel* m_label;
    QPushButton* m_reloadButton;
};
