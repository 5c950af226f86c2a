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

/// A script console: a line that is run on Return, with the history of lines behind the arrow keys.
/// What one line defines is there for the next.
class ConsolePanel : public DockableWidgetContents
{
    Q_OBJECT

public:
    explicit ConsolePanel(QWidget* parent = nullptr);
    ~ConsolePanel() override;

    /// Runs a line as if the user had typed it; nothing while one runs.
    void run(const QString& line);
    void stop();

    /// Keeps the last 200 lines.
    void saveState(QSettings& settings) const;
    void restoreState(const QSettings& settings);

    DockLocationPreference getPreferredDockLocation() const override;
    QSize getPreferredNewWindowSize() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void remember(const QString& line);
    void recall(int step);
    void finish(const host::ScriptOutcome& outcome);
    void setRunning(bool running);

    OutputView* m_output; // this and the next are children
    QLineEdit* m_input;
    ZvProcessingIndicator* m_spinner;
    QToolButton* m_stop;
    QStringList m_history;
    int m_recalled = 0; ///< behind the last line for the one that is being typed
    QString m_typed;
    std::unique_ptr<host::ScriptSession> m_session;
    bool m_isRunning = false;
};

} // namespace workbench
