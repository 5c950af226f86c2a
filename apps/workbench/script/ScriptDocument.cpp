#include "script/ScriptDocument.h"

#include "common/edit_icons.h"
#include "documents/UndoDocument.h"
#include "script/CodeEditor.h"
#include "script/OutputView.h"

#include <zvworkbench/FileError.h>

#include <zvutil/ZvProcessingIndicator.h>

#include <HostSupport/host.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

#include <exception>

namespace workbench {

const DocumentType& scriptType()
{
    static const DocumentType type = {QStringLiteral("script"), ScriptDocument::tr("Script"),
                                      ScriptDocument::tr("Scripts"), QStringLiteral(".zvscr"),
                                      [](const QString& title, QWidget* parent) -> Document* {
                                          return new ScriptDocument(title, parent);
                                      }};
    return type;
}

ScriptDocument::ScriptDocument(const QString& title, QWidget* parent)
    : EditorDocument(scriptType(), title, parent, *new CodeEditor)
    , m_splitter(new QSplitter(Qt::Vertical, this))
    , m_output(new OutputView(this))
    , m_spinner(new ZvProcessingIndicator(this))
    , m_state(new QLabel(this))
{
    editor().setObjectName(QStringLiteral("scriptText"));
    editor().setAccessibleName(tr("Script text"));
    m_output->setObjectName(QStringLiteral("scriptOutput"));
    m_output->setAccessibleName(tr("Script output"));
    makeActions();
    m_splitter->addWidget(makeTextArea());
    m_splitter->addWidget(m_output);
    m_splitter->setChildrenCollapsible(false);
    // Until the script runs there is nothing to show, and the text gets the room.
    m_output->hide();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
    showState(tr("Not run yet"), false);
}

ScriptDocument::~ScriptDocument() = default;

void ScriptDocument::makeActions()
{
    addEditActions();
    connect(m_output, &QPlainTextEdit::copyAvailable, this, &ScriptDocument::enableActions);
    addNamedAction(QStringLiteral("comment"), tr("Co&mment Lines"), keys({"Ctrl+/"}),
                   [this] { editor().toggleComment(); });
    addSeparatorAction();
    m_run = addEditAction(tr("Ru&n"), QKeySequence(Qt::Key_F5));
    m_run->setIcon(runIcon());
    m_run->setToolTip(tr("Run the script as shown, saved or not (F5)"));
    connect(m_run, &QAction::triggered, this, &ScriptDocument::run);
    m_stop = addEditAction(tr("St&op"), QKeySequence(QStringLiteral("Shift+F5")));
    m_stop->setIcon(stopIcon());
    m_stop->setToolTip(tr("Stop the script (Shift+F5)"));
    connect(m_stop, &QAction::triggered, this, &ScriptDocument::stop);
    addToToolBar({addSeparatorAction(), m_run, m_stop});
    addWindowActions({m_run, m_stop});
}

/// Returns the text with what is said about its run below it.
QWidget* ScriptDocument::makeTextArea()
{
    auto* const area = new QWidget(this);
    auto* const line = new QHBoxLayout;
    line->setContentsMargins(8, 4, 4, 4);
    line->addWidget(m_state, 1);
    line->addWidget(m_spinner);
    for (QAction* const action : {m_run, m_stop}) {
        auto* const button = new QToolButton(area);
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        line->addWidget(button);
    }
    auto* const layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(&page(), 1);
    layout->addLayout(line);
    m_spinner->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return area;
}

void ScriptDocument::unfoldOutput()
{
    if (!m_output->isHidden())
        return;
    m_output->show();
    m_splitter->setSizes({3'000, 1'000});
}

void ScriptDocument::run()
{
    if (m_isRunning)
        return;
    m_output->clear();
    editor().markError(0);
    try {
        m_session = host::makeScriptSession(
            {[this](const std::string& lines) { m_output->append(QString::fromStdString(lines)); },
             [this](const host::ScriptOutcome& outcome) { finish(outcome); }});
    } catch (const host::CallError&) {
        Q_EMIT failed({tr("“%1” can't be run.").arg(shortTitle()),
                       tr("This program has no script interpreter."),
                       tr("Open the script in zvhost.")});
        return;
    } catch (const std::exception& exception) {
        Q_EMIT failed({tr("“%1” can't be run.").arg(shortTitle()),
                       QString::fromUtf8(exception.what()),
                       tr("Close what you don't need, and try again.")});
        return;
    }
    unfoldOutput();
    m_sinceStart.start();
    m_session->run(textOf(*editor().document()).toStdString(), shortTitle().toStdString());
    showState(tr("Running…"), true);
}

void ScriptDocument::stop()
{
    if (!m_isRunning)
        return;
    m_session->stop();
    m_state->setText(tr("Stopping…"));
}

bool ScriptDocument::isRunning() const
{
    return m_isRunning;
}

QPlainTextEdit& ScriptDocument::focusedText()
{
    return m_output->hasFocus() ? static_cast<QPlainTextEdit&>(*m_output) : editor();
}

void ScriptDocument::read(const zvutil::ZvFilePath& file)
{
    const TextContent content = contentOfFile(file);
    // An interpreter reads UTF-8, and would read something else than what is shown.
    if (content.isLatin1)
        throw FileError(tr("The file is not UTF-8 text."));
    if (!content.isEditable)
        throw FileError(tr("The file contains characters that can't be edited here."));
    setContent(content);
}

void ScriptDocument::finish(const host::ScriptOutcome& outcome)
{
    const double seconds = static_cast<double>(m_sinceStart.elapsed()) / 1000;
    const QString time = tr("after %1 s").arg(seconds, 0, 'f', 1);
    if (outcome.isStopped) {
        m_output->append(tr("Stopped."), OutputView::Kind::Remark);
        showState(tr("Stopped %1").arg(time), false);
    } else if (outcome.error.empty()) {
        showState(tr("Finished %1").arg(time), false);
    } else {
        const QString error = QString::fromStdString(outcome.error);
        const QString prefix = outcome.line > 0 ? tr("Line %1: ").arg(outcome.line) : QString();
        m_output->append(prefix + error, OutputView::Kind::Error);
        if (!outcome.stack.empty())
            m_output->append(QString::fromStdString(outcome.stack), OutputView::Kind::Remark);
        editor().markError(outcome.line);
        showState(tr("Failed %1").arg(time), false);
    }
}

void ScriptDocument::showState(const QString& text, bool isRunning)
{
    m_isRunning = isRunning;
    m_state->setText(text);
    m_spinner->setVisible(isRunning);
    m_run->setEnabled(!isRunning);
    m_stop->setEnabled(isRunning);
    Q_EMIT runningChanged(isRunning);
}

} // namespace workbench
