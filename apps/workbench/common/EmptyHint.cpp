#include "common/EmptyHint.h"

#include "common/style_options.h"

#include <zvutil/ZvStyleManager.h>

#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>

#include <utility>

namespace workbench {

namespace {

constexpr int hintMargin = 12;

} // namespace

EmptyHint::EmptyHint(const QString& text, QAbstractItemView* view)
    : EmptyHint(text, view, [view] { return view->model()->rowCount() == 0; })
{
    m_hasGround = false;
    const QAbstractItemModel* const model = view->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyHint::update);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyHint::update);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyHint::update);
}

EmptyHint::EmptyHint(const QString& text, QAbstractScrollArea* view, std::function<bool()> isEmpty)
    : QLabel(view->viewport())
    , m_view(*view)
    , m_isEmpty(std::move(isEmpty))
{
    setObjectName(QStringLiteral("emptyHint"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(hintMargin);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setText(text);
    view->viewport()->installEventFilter(this);
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            &EmptyHint::setColour);
    setColour();
    update();
}

void EmptyHint::say(const QString& text)
{
    setText(text);
    update();
}

bool EmptyHint::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(m_view.viewport()->rect());
    return QLabel::eventFilter(watched, event);
}

void EmptyHint::update()
{
    const bool isEmpty = m_isEmpty();
    setVisible(isEmpty);
    // A screen reader reads the description of the view that has the focus, and never comes to a label.
    m_view.setAccessibleDescription(isEmpty ? text() : QString());
}

void EmptyHint::paintEvent(QPaintEvent* event)
{
    if (m_hasGround) {
        QPainter painter(this);
        painter.setPen(styleColour(libzvutil::ZvStyleBrush::BorderEditorEnabled));
        painter.setBrush(styleColour(libzvutil::ZvStyleBrush::EditorEnabled));
        const QRect text = fontMetrics().boundingRect(
            contentsRect(), int(Qt::AlignCenter) | Qt::TextWordWrap, this->text());
        painter.drawRect(text.adjusted(-hintMargin, -hintMargin, hintMargin, hintMargin));
    }
    QLabel::paintEvent(event);
}

void EmptyHint::setColour()
{
    setStyleSheet(
        QStringLiteral("background: transparent; color: %1;")
            .arg(pageTextColour(styleColour(libzvutil::ZvStyleBrush::TextDisabled)).name()));
}

} // namespace workbench
