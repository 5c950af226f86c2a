#include "search/FindBar.h"

#include "common/DimPlaceholder.h"
#include "common/number_text.h"

#include <zvworkbench/Document.h>

#include <zvutil/ZvSearchBar.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QToolButton>

#include <algorithm>
#include <limits>
#include <new>

namespace workbench {

namespace {

/// The largest number of rows that are searched at each key that the user types into the bar.
constexpr int maxRowsWhileTyping = 20'000;

} // namespace

FindBar::FindBar(Document& document, FindTarget& target, QWidget& content)
    : QWidget(&document)
    , m_document(document)
    , m_target(target)
    , m_content(content)
    , m_text(new ZvSearchBar(this))
    , m_replacement(new QLineEdit(this))
    , m_replaceButtons(new QWidget(this))
    , m_case(new QCheckBox(tr("Match case"), this))
    , m_words(new QCheckBox(tr("Whole words"), this))
    , m_expression(new QCheckBox(tr("Regular expression"), this))
    , m_status(new QLabel(this))
{
    setObjectName(QStringLiteral("findBar"));
    makeActions();
    makeFields();
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    addSearchRow(*layout);
    addReplaceRow(*layout);
    addOptionRow(*layout);
    for (QWidget* const child : findChildren<QWidget*>())
        child->installEventFilter(this);
    hide();
}

QList<QAction*> FindBar::findActions() const
{
    return m_actions;
}

void FindBar::open(bool isReplacing)
{
    Q_EMIT aboutToSearch();
    const QString selected = m_target.selectedText();
    if (!selected.isEmpty() && !isAncestorOf(QApplication::focusWidget()))
        m_text->setText(selected);
    for (QWidget* const part : {static_cast<QWidget*>(m_replacement), m_replaceButtons})
        part->setVisible(isReplacing && !m_target.isReadOnly());
    say(QString());
    show();
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

void FindBar::findFirst(const QString& text, const TextPlace& from)
{
    for (QCheckBox* const option : {m_case, m_words, m_expression})
        option->setChecked(false);
    m_text->setText(text);
    find(true, from);
}

void FindBar::findNext()
{
    Q_EMIT aboutToSearch();
    find(true, m_target.selectionEnd());
}

void FindBar::findPrevious()
{
    Q_EMIT aboutToSearch();
    find(false, m_target.selectionStart());
}

void FindBar::replace()
{
    Q_EMIT aboutToSearch();
    const SearchPattern wanted = pattern();
    if (m_target.isReadOnly() || !isUsable(wanted))
        return;
    bool isReplaced = false;
    run([&](const Progress& /*progress*/) {
        const TextPlace start = m_target.selectionStart();
        const TextPlace end = m_target.selectionEnd();
        if (start.row >= m_target.rowCount() || start.column >= m_target.columnCount(start.row))
            return;
        const QString text = m_target.text(start.row, start.column);
        const std::optional<TextPart> part = wanted.next(text, start.position);
        qint64 count = 0;
        if (m_target.selectsWholeTexts()) {
            const QString replaced = wanted.replaced(text, m_replacement->text(), count);
            if (count > 0)
                m_target.change(tr("Replace"),
                                {{{start.row, start.column, 0}, text.size(), replaced}});
        } else if (part && part->position == start.position && start.row == end.row
                   && part->position + part->length == end.position) {
            m_target.change(
                tr("Replace"),
                {{start, part->length, wanted.replacement(text, *part, m_replacement->text())}});
        }
        isReplaced = true;
    });
    if (isReplaced)
        find(true, m_target.selectionEnd());
}

void FindBar::replaceAll()
{
    Q_EMIT aboutToSearch();
    const SearchPattern wanted = pattern();
    if (m_target.isReadOnly() || !isUsable(wanted))
        return;
    run([&](const Progress& progress) {
        const Replacements all = replacementsOf(m_target, wanted, m_replacement->text(), progress);
        if (all.isTooMuch) {
            say(tr("Nothing was replaced: the text would become too long."));
            return;
        }
        if (all.count == 0) {
            say(tr("No matches"));
            return;
        }
        m_target.change(tr("Replace All"), all.changes);
        say(tr("%1 matches replaced", nullptr,
               static_cast<int>(std::min<qint64>(all.count, std::numeric_limits<int>::max())))
                .arg(numberText(all.count)));
    });
}

void FindBar::end()
{
    hide();
    m_content.setFocus();
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    // The document's shortcuts work in all of its window. From here they would change what the user isn't looking
    // at: Ctrl+- would remove a row of a test plan.
    if (event->type() == QEvent::ShortcutOverride
        && isOthersShortcut(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        end();
    else if (isReturn && m_replacement->hasFocus())
        replace();
    else if (isReturn && (event->modifiers() & Qt::ShiftModifier))
        findPrevious();
    else if (isReturn)
        findNext();
}

void FindBar::makeActions()
{
    const auto add = [this](const char* name, const QString& text, const char* keys, auto work) {
        auto* const action = new QAction(text, this);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(QKeySequence(QLatin1String(keys)));
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, work);
        m_actions.append(action);
    };
    add("find", tr("&Find…"), "Ctrl+F", [this] { open(false); });
    add("replace", tr("R&eplace…"), "Ctrl+H", [this] { open(true); });
    add("findNext", tr("Find &Next"), "F3", [this] { findNext(); });
    add("findPrevious", tr("Find Pre&vious"), "Shift+F3", [this] { findPrevious(); });
}

void FindBar::makeFields()
{
    m_text->setObjectName(QStringLiteral("findText"));
    m_text->setAccessibleName(tr("Find"));
    m_text->setPlaceholderText(tr("Find"));
    new DimPlaceholder(m_text);
    m_replacement->setObjectName(QStringLiteral("replacement"));
    m_replacement->setAccessibleName(tr("Replace with"));
    m_replacement->setPlaceholderText(tr("Replace with"));
    new DimPlaceholder(m_replacement);
    m_status->setObjectName(QStringLiteral("findStatus"));
    // A long message must not widen the window.
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(m_text, &QLineEdit::textEdited, this, &FindBar::findWhileTyping);
}

void FindBar::addSearchRow(QGridLayout& layout)
{
    const auto button = [this](const QString& name, const QString& toolTip, auto work) {
        auto* const result = new QToolButton(this);
        result->setAccessibleName(name);
        result->setToolTip(toolTip);
        result->setFocusPolicy(Qt::TabFocus);
        connect(result, &QToolButton::clicked, this, work);
        return result;
    };
    auto* const steps = new QHBoxLayout;
    steps->setSpacing(4);
    QToolButton* const previous = button(
        tr("Find previous"), tr("Find the previous match (Shift+F3)"), [this] { findPrevious(); });
    previous->setArrowType(Qt::UpArrow);
    QToolButton* const next =
        button(tr("Find next"), tr("Find the next match (F3)"), [this] { findNext(); });
    next->setArrowType(Qt::DownArrow);
    steps->addWidget(previous);
    steps->addWidget(next);
    steps->addWidget(m_status, 1);
    QToolButton* const close = button(tr("Close"), tr("Close (Esc)"), [this] { end(); });
    close->setObjectName(QStringLiteral("closeFindBar"));
    close->setText(QStringLiteral("✕"));
    steps->addWidget(close);
    layout.addWidget(m_text, 0, 0);
    layout.addLayout(steps, 0, 1);
    layout.setColumnStretch(0, 1);
    layout.setColumnStretch(1, 1);
}

void FindBar::addReplaceRow(QGridLayout& layout)
{
    auto* const row = new QHBoxLayout(m_replaceButtons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const auto add = [&](const char* name, const QString& text, auto work) {
        auto* const button = new QPushButton(text, m_replaceButtons);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, work);
        row->addWidget(button);
    };
    add("replaceOne", tr("Replace"), [this] { replace(); });
    add("replaceAll", tr("Replace All"), [this] { replaceAll(); });
    row->addStretch();
    layout.addWidget(m_replacement, 1, 0);
    layout.addWidget(m_replaceButtons, 1, 1);
}

void FindBar::addOptionRow(QGridLayout& layout)
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(16);
    for (QCheckBox* const option : {m_case, m_words, m_expression}) {
        connect(option, &QCheckBox::toggled, this, &FindBar::findWhileTyping);
        row->addWidget(option);
    }
    row->addStretch();
    layout.addLayout(row, 2, 0, 1, 2);
}

SearchPattern FindBar::pattern() const
{
    return {m_text->text(), {m_case->isChecked(), m_words->isChecked(), m_expression->isChecked()}};
}

/// Returns whether there is something to search for. If not, says why.
bool FindBar::isUsable(const SearchPattern& pattern)
{
    if (pattern.isEmpty()) {
        if (isHidden())
            open(false);
        say(tr("Type the text to find."));
        return false;
    }
    say(pattern.fault());
    return pattern.fault().isEmpty();
}

void FindBar::findWhileTyping()
{
    say(QString());
    if (!m_text->text().isEmpty() && m_target.rowCount() <= maxRowsWhileTyping)
        find(true, m_target.selectionStart());
}

void FindBar::find(bool isForward, const TextPlace& from)
{
    const SearchPattern wanted = pattern();
    if (!isUsable(wanted))
        return;
    run([&](const Progress& progress) {
        showFound(isForward ? workbench::findNext(m_target, wanted, from, progress)
                            : workbench::findPrevious(m_target, wanted, from, progress),
                  isForward);
    });
}

void FindBar::showFound(const std::optional<FoundText>& found, bool isForward)
{
    if (!found) {
        say(tr("No matches"));
        return;
    }
    m_target.select(*found);
    if (!found->hasWrapped)
        say(QString());
    else
        say(isForward ? tr("Continued from the beginning") : tr("Continued from the end"));
}

/// Calls \p work with a spinner and a box for its progress, and says if it can't be finished.
void FindBar::run(const std::function<void(const Progress&)>& work)
{
    m_text->searchStarted();
    const auto stop = qScopeGuard([this] { m_text->searchStopped(); });
    ProgressBox box(tr("Searching…"), window());
    try {
        work(box.progress());
    } catch (const PatternTooSlow&) {
        say(tr("This expression takes too long here. Make it simpler."));
    } catch (const Stopped&) {
        say(tr("Stopped"));
    } catch (const std::bad_alloc&) {
        say(tr("There is not enough memory."));
    }
}

void FindBar::say(const QString& text)
{
    m_status->setText(text);
    m_status->setToolTip(text);
}

/// Returns whether a key press is a shortcut that works in the document's window alone.
bool FindBar::isOthersShortcut(const QKeyEvent& event) const
{
    const int modifiers = static_cast<int>(event.modifiers() & ~Qt::KeypadModifier);
    const QKeySequence pressed(event.key() | modifiers);
    const QKeySequence shiftless(event.key() | (modifiers & ~int(Qt::ShiftModifier)));
    const QList<QAction*> ofWindow = m_document.windowActions();
    const QList<QAction*> actions = m_document.actions();
    return std::any_of(actions.begin(), actions.end(), [&](QAction* action) {
        const QList<QKeySequence> keys = action->shortcuts();
        return !ofWindow.contains(action) && (keys.contains(pressed) || keys.contains(shiftless));
    });
}

} // namespace workbench
