#pragma once

#include <zvworkbench/Document.h>

#include <HostSupport/ScriptSession.h>

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QLabel;
class ZvProcessingIndicator;

namespace workbench {

class CodeEditor;
class OutputView;

/// A script: its text, Run and Stop, and what it prints.
///
/// Files are UTF-8. A file whose lines all end in CR LF is saved with CR LF again, any other file
/// with LF.
class ScriptDocument : public Document
{
    Q_OBJECT

public:
    ScriptDocument(const QString& title, QWidget* parent);
    ~ScriptDocument() override;

    CodeEditor& editor();

    /// Runs the text as shown, saved or not. Does nothing while the script is running.
    void run();
    void stop();
    bool isRunning() const;

    QList<QAction*> toolBarActions() const override;
    QList<QAction*> windowActions() const override;

Q_SIGNALS:
    void runningChanged(bool running);

protected:
    void read(const zvutil::ZvFilePath& file) override;
    void write(const zvutil::ZvFilePath& file) const override;

private:
    void makeActions();
    QWidget* makeOutput();
    void finish(const host::ScriptOutcome& outcome);
    void showState(const QString& text, bool isRunning);

    CodeEditor* m_editor; // owned as a child, like the next five
    OutputView* m_output;
    ZvProcessingIndicator* m_spinner;
    QLabel* m_state;
    QAction* m_run;
    QAction* m_stop;
    std::unique_ptr<host::ScriptSession> m_session;
    QElapsedTimer m_sinceStart;
    bool m_isRunning = false;
    bool m_hasWindowsLines = false;
};

/// Returns the type of scripts, for `addDocumentType`.
const DocumentType& scriptType();

} // namespace workbench
