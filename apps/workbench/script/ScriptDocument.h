#pragma once

#include "script/EditorDocument.h"

#include <HostSupport/ScriptSession.h>

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QLabel;
class QSplitter;
class ZvProcessingIndicator;

namespace workbench {

class OutputView;

/// A script: its text, Run and Stop, and what it prints. Files are UTF-8.
class ScriptDocument : public EditorDocument
{
    Q_OBJECT

public:
    ScriptDocument(const QString& title, QWidget* parent);
    ~ScriptDocument() override;

    /// Runs the text as shown, saved or not. Does nothing while the script is running.
    void run();
    void stop();
    bool isRunning() const;

Q_SIGNALS:
    void runningChanged(bool running);

protected:
    void read(const zvutil::ZvFilePath& file) override;
    QPlainTextEdit& focusedText() override;

private:
    void makeActions();
    QWidget* makeTextArea();
    void finish(const host::ScriptOutcome& outcome);
    void unfoldOutput();
    void showState(const QString& text, bool isRunning);

    QSplitter* m_splitter; // owned as a child, like the next five
    OutputView* m_output;
    ZvProcessingIndicator* m_spinner;
    QLabel* m_state;
    QAction* m_run;
    QAction* m_stop;
    std::unique_ptr<host::ScriptSession> m_session;
    QElapsedTimer m_sinceStart;
    bool m_isRunning = false;
};

/// Returns the type of scripts, for `addDocumentType`.
const DocumentType& scriptType();

} // namespace workbench
