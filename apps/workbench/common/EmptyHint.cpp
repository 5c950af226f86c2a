#include "common/EmptyHint.h"

#include "common/style_options.h"

#include <zvutil/ZvStyleManager.h>

#include <QAbstractItemView>
#include <QEvent>

namespace workbench {

namespace {

constexpr int hintMargin = 12;

} // namespace

EmptyHint::EmptyHint(const QString& text, QAbstractItemView* view)
    : QLabel(view->viewport())
    , m_view(*view)
{
    setObjectName(QStringLiteral("emptyHint"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(hintMargin);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    say(text);
    view->viewport()->installEventFilter(this);
    const QAbstractItemModel* const model = view->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyHint::update);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyHint::update);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyHint::update);
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            &EmptyHint::paint);
    paint();
    update();
}

void EmptyHint::say(const QString& text)
{
    setText(text);
    // A screen reader reads the description of the list that has the focus, and never comes to a label.
    m_view.setAccessibleDescription(text);
}

bool EmptyHint::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(m_view.viewport()->rect());
    return QLabel::eventFilter(watched, event);
}

void EmptyHint::update()
{
    setVisible(m_view.model()->rowCount() == 0);
}

void EmptyHint::paint()
{
    setStyleSheet(
        QStringLiteral("background: transparent; color: %1;")
            .arg(pageTextColour(styleColour(libzvutil::ZvStyleBrush::TextDisabled)).name()));
}

} // namespace workbench
