#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

/// A bar above a document whose file has changed on disk, with buttons to reload or to ignore that.
class ReloadBar : public QFrame
{
    Q_OBJECT

public:
    explicit ReloadBar(QWidget* parent);

    /// Shows the bar. \p losesChanges adds a warning.
    void offer(bool exists, bool canReload, bool losesChanges);

Q_SIGNALS:
    void reloadRequested();

private:
    QLabel* m_label;
    QPushButton* m_reloadButton;
};
