#include "script/ScriptDocument.h"

#include "common/edit_icons.h"
#include "common/number_text.h"
#include "common/path_names.h"
#include "documents/file_in_use.h"
#include "script/CodeEditor.h"
#include "script/OutputView.h"

#include <zvworkbench/FileError.h>

#include <zvutil/ZvProcessingIndicator.h>

#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QTextCodec>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include <exception>
#include <stdexcept>

namespace workbench {

namespace {

/// The size of the largest script that can be opened, in bytes. The editor takes about a second to
/// show so much.
constexpr qint64 maxScriptSize = 5'000'000;

/// Returns \p bytes as text, or a null text if they aren't UTF-8.
QString decoded(const QByteArray& bytes)
{
    constexpr int utf8 = 106;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text =
        QTextCodec::codecForMib(utf8)->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return {};
    return text.isNull() ? QLatin1String("") : text;
}

bool hasOnlyWindowsLines(const QString& text)
{
    const int windowsLines = text.count(QLatin1String("\r\n"));
    return windowsLines > 0 && windowsLines == text.count(QLatin1Char('\n'));
}

/// Returns the document's text. `toPlainText` would replace non-breaking spaces.
QString textOf(const QTextDocument& document)
{
    return document.toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

} // namespace

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
    : Document(scriptType(), title, parent)
    , m_editor(new CodeEditor(this))
    , m_output(new OutputView(this))
    , m_spinner(new ZvProcessingIndicator(this))
    , m_state(new QLabel(this))
{
    m_editor->setObjectName(QStringLiteral("scriptText"));
    m_editor->setAccessibleName(tr("Script text"));
    m_output->setObjectName(QStringLiteral("scriptOutput"));
    m_output->setAccessibleName(tr("Script output"));
    makeActions();
    auto* const splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_editor);
    splitter->addWidget(makeOutput());
    splitter->setSizes({3'000, 1'000});
    splitter->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    setFocusProxy(m_editor);
    showState(tr("Not run yet"), false);

    connect(m_editor->document(), &QTextDocument::modificationChanged, this,
            [this](bool modified) { setModified(modified); });
    connect(this, &ZvContentWidget::saved, this,
            [this] { m_editor->document()->setModified(false); });
}

ScriptDocument::~ScriptDocument() = default;

CodeEditor& ScriptDocument::editor()
{
    return *m_editor;
}

void ScriptDocument::makeActions()
{
    m_run = addEditAction(tr("&Run"), QKeySequence(Qt::Key_F5));
    m_run->setIcon(runIcon());
    m_run->setToolTip(tr("Run the script as shown, saved or not (F5)"));
    connect(m_run, &QAction::triggered, this, &ScriptDocument::run);
    m_stop = addEditAction(tr("&Stop"), QKeySequence(QStringLiteral("Shift+F5")));
    m_stop->setIcon(stopIcon());
    m_stop->setToolTip(tr("Stop the script (Shift+F5)"));
    connect(m_stop, &QAction::triggered, this, &ScriptDocument::stop);
}

QWidget* ScriptDocument::makeOutput()
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
    layout->addLayout(line);
    layout->addWidget(m_output, 1);
    m_spinner->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return area;
}

void ScriptDocument::run()
{
    if (m_isRunning)
        return;
    m_output->clear();
    m_editor->markError(0);
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
    m_sinceStart.start();
    m_session->run(textOf(*m_editor->document()).toStdString(), shortTitle().toStdString());
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

QList<QAction*> ScriptDocument::toolBarActions() const
{
    return {m_run, m_stop};
}

QList<QAction*> ScriptDocument::windowActions() const
{
    return {m_run, m_stop};
}

void ScriptDocument::read(const zvutil::ZvFilePath& file)
{
    QFile source(qtFileName(file));
    if (!source.open(QIODevice::ReadOnly))
        throw FileError(source.errorString());
    if (source.size() > maxScriptSize)
        throw FileError(tr("The file has %1 bytes; a script can have at most %2.")
                            .arg(numberText(source.size()), numberText(maxScriptSize)));
    QString text = decoded(source.readAll());
    if (source.error() != QFileDevice::NoError)
        throw FileError(source.errorString());
    if (text.isNull())
        throw FileError(tr("The file is not UTF-8 text."));
    m_hasWindowsLines = hasOnlyWindowsLines(text);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    // The editor doesn't keep these characters: it takes a CR, for example, for the end of a line,
    // and saving would write it as one.
    if (text.contains(QChar::ParagraphSeparator) || text.contains(QLatin1Char('\r'))
        || text.contains(QChar::Null))
        throw FileError(tr("The file contains characters that can't be edited here."));
    m_editor->setPlainText(text);
    m_editor->document()->setModified(false);
}

void ScriptDocument::write(const zvutil::ZvFilePath& file) const
{
    QString text = textOf(*m_editor->document());
    if (m_hasWindowsLines)
        text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    try {
        host::saveFile(qtFileName(file).toStdString(), text.toStdString());
    } catch (const std::runtime_error& error) {
        throw FileError(isInUse(file) ? tr("The file is open in another program.")
                                      : QString::fromUtf8(error.what()));
    }
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
        m_editor->markError(outcome.line);
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
