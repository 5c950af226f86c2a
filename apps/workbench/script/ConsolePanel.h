#pragma once

#include <DockFramework/DockableWidgetContents.h>

#include <HostSupport/ScriptSession.h>

#include <QString>
#include <QStringList>

#include <memory>

class QLineEdit;
class QSettings;
class QToolButton;
class ZvProcessingIndicator;

namespace workbench {

class OutputView;

/// A script console: runs a line on Return, and recalls earlier lines on the arrow keys. All lines
/// run in one session, so a line can use what an earlier one has defined.
class ConsolePanel : public DockableWidgetContents
{
    Q_OBJECT

public:
    explicit ConsolePanel(QWidget* parent = nullptr);
    ~ConsolePanel() override;

    /// Runs a line as if the user had typed it. Does nothing while a line is running.
    void run(const QString& line);
    void stop();

    /// Saves the last 200 lines.
    void saveState(QSettings& settings) const;
    void restoreState(const QSettings& settings);

    DockLocationPreference getPreferredDockLocation() const override;
    QSize getPreferredNewWindowSize() const override;

Q_SIGNALS:
    /// Emitted when a line has been added to those that `saveState` saves.
    void historyChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void remember(const QString& line);
    void recall(int step);
    void finish(const host::ScriptOutcome& outcome);
    void setRunning(bool running);

    OutputView* m_output; // owned as a child, like the next three
    QLineEdit* m_input;
    ZvProcessingIndicator* m_spinner;
    QToolButton* m_stop;
    QStringList m_history;
    int m_recalled = 0; ///< index in m_history, or its size for the line that is being typed
    QString m_typed;
    std::unique_ptr<host::ScriptSession> m_session;
    bool m_isRunning = false;
};

} // namespace workbench
