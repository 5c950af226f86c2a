#include "script/ConsolePanel.h"

#include "common/DimPlaceholder.h"
#include "common/page_style.h"
#include "script/OutputView.h"

#include <zvutil/ZvProcessingIndicator.h>

#include <HostSupport/host.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench {

namespace {

constexpr int maxLines = 200;

QString historyKey()
{
    return QStringLiteral("Console/history");
}

} // namespace

ConsolePanel::ConsolePanel(QWidget* parent)
    : DockableWidgetContents(QStringLiteral("Console"), parent)
    , m_output(new OutputView(this))
    , m_input(new QLineEdit(this))
    , m_spinner(new ZvProcessingIndicator(this))
    , m_stop(new QToolButton(this))
{
    m_output->setObjectName(QStringLiteral("consoleOutput"));
    m_output->setAccessibleName(tr("Console output"));
    m_output->setFocusPolicy(Qt::ClickFocus);
    m_input->setObjectName(QStringLiteral("consoleInput"));
    m_input->setAccessibleName(tr("Console input"));
    m_input->setPlaceholderText(tr("Script, for example PathToURI(\"C:\\\\plans\")"));
    new DimPlaceholder(m_input);
    m_input->installEventFilter(this);
    setFixedPitch(*m_input);
    m_spinner->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_stop->setText(tr("Stop"));
    m_stop->setToolTip(tr("Stop the running script (Esc)"));
    setFocusProxy(m_input);

    auto* const line = new QHBoxLayout;
    line->setContentsMargins(8, 4, 4, 4);
    line->addWidget(new QLabel(QStringLiteral(">"), this));
    line->addWidget(m_input, 1);
    line->addWidget(m_spinner);
    line->addWidget(m_stop);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_output, 1);
    layout->addLayout(line);
    setRunning(false);

    connect(m_input, &QLineEdit::returnPressed, this, [this] { run(m_input->text()); });
    connect(m_stop, &QToolButton::clicked, this, &ConsolePanel::stop);
}

ConsolePanel::~ConsolePanel() = default;

void ConsolePanel::run(const QString& line)
{
    if (m_isRunning || line.trimmed().isEmpty())
        return;
    remember(line);
    m_input->clear();
    m_output->append(QStringLiteral("> ") + line, OutputView::Kind::Input);
    try {
        if (!m_session)
            m_session = host::makeScriptSession(
                {[this](const std::string& lines) {
                     m_output->append(QString::fromStdString(lines));
                 },
                 [this](const host::ScriptOutcome& outcome) { finish(outcome); }});
    } catch (const host::CallError& error) {
        m_output->append(QString::fromUtf8(error.what()), OutputView::Kind::Error);
        return;
    }
    setRunning(true);
    m_session->evaluate(line.toStdString());
}

void ConsolePanel::stop()
{
    if (m_session)
        m_session->stop();
}

void ConsolePanel::saveState(QSettings& settings) const
{
    settings.setValue(historyKey(), m_history);
}

void ConsolePanel::restoreState(const QSettings& settings)
{
    // Somebody may have edited the file, or a newer program with another limit written it.
    m_history = settings.value(historyKey()).toStringList();
    m_history = m_history.mid(std::max(0, m_history.size() - maxLines));
    m_recalled = m_history.size();
}

DockLocationPreference ConsolePanel::getPreferredDockLocation() const
{
    return DockLocationPreference::Bottom;
}

QSize ConsolePanel::getPreferredNewWindowSize() const
{
    return {600, 180};
}

bool ConsolePanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_input && event->type() == QEvent::KeyPress) {
        switch (static_cast<const QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
            recall(-1);
            return true;
        case Qt::Key_Down:
            recall(1);
            return true;
        case Qt::Key_Escape:
            stop();
            return true;
        default:
            break;
        }
    }
    return DockableWidgetContents::eventFilter(watched, event);
}

void ConsolePanel::remember(const QString& line)
{
    m_history.removeAll(line);
    m_history.append(line);
    if (m_history.size() > maxLines)
        m_history.removeFirst();
    m_recalled = m_history.size();
    m_typed.clear();
    Q_EMIT historyChanged();
}

void ConsolePanel::recall(int step)
{
    const int wanted = m_recalled + step;
    if (wanted < 0 || wanted > m_history.size())
        return;
    if (m_recalled == m_history.size())
        m_typed = m_input->text();
    m_recalled = wanted;
    m_input->setText(wanted == m_history.size() ? m_typed : m_history.at(wanted));
}

void ConsolePanel::finish(const host::ScriptOutcome& outcome)
{
    if (outcome.isStopped)
        m_output->append(tr("Stopped."), OutputView::Kind::Remark);
    else if (!outcome.error.empty())
        m_output->append(QString::fromStdString(outcome.error), OutputView::Kind::Error);
    else if (!outcome.value.empty())
        m_output->append(QString::fromStdString(outcome.value));
    setRunning(false);
}

void ConsolePanel::setRunning(bool running)
{
    m_isRunning = running;
    m_spinner->setVisible(running);
    m_stop->setVisible(running);
}

} // namespace workbench
