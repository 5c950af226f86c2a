#include "schematic/SchematicView.h"

#include "schematic/SchematicAccessible.h"
#include "schematic/SchematicScene.h"

#include <zvutil/ZvStyleManager.h>

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr double zoomStep = 1.25;
constexpr double smallestZoom = 0.1;
constexpr double largestZoom = 8;
constexpr double largestFit = 1.6;
constexpr double fitMargin = 40;
constexpr int wheelNotch = 120;

QPoint stepOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

SchematicView::SchematicView(SchematicScene& scene, QWidget* parent)
    : QGraphicsView(&scene, parent)
    , m_scene(scene)
{
    // Qt keeps what it finds for a widget when the first event tells of it, as the name below does.
    installSchematicAccessibility();
    setObjectName(QStringLiteral("schematicView"));
    setAccessibleName(tr("Schematic"));
    setFrameShape(NoFrame);
    setRenderHint(QPainter::Antialiasing);
    setMouseTracking(true);
    setDragMode(RubberBandDrag);
    setTransformationAnchor(AnchorUnderMouse);
    setViewportUpdateMode(FullViewportUpdate);
    const auto useTool = [this] {
        const bool isSelecting = m_scene.tool() == SchematicScene::Tool::Select;
        setDragMode(isSelecting ? RubberBandDrag : NoDrag);
        viewport()->setCursor(isSelecting ? Qt::ArrowCursor : Qt::CrossCursor);
    };
    connect(&scene, &SchematicScene::toolChanged, this, useTool);
    useTool();
    connect(&scene, &QGraphicsScene::selectionChanged, this, [this] { tellOfSelection(*this); });
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            [this] { viewport()->update(); });
}

SchematicScene& SchematicView::schematicScene()
{
    return m_scene;
}

void SchematicView::zoomIn()
{
    zoom(zoomStep);
}

void SchematicView::zoomOut()
{
    zoom(1 / zoomStep);
}

void SchematicView::fit()
{
    m_isFitted = true;
    if (isVisible())
        fitNow();
}

bool SchematicView::event(QEvent* event)
{
    // Esc ends a wire that is being drawn; a tool's shortcut would take the key away.
    if (event->type() == QEvent::ShortcutOverride && m_scene.isDrawing()
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QGraphicsView::event(event);
}

void SchematicView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        m_scene.escape();
        return;
    }
    const QPoint step = stepOf(event->key());
    if (step.isNull() || m_scene.selectedItems().isEmpty())
        QGraphicsView::keyPressEvent(event);
    else
        m_scene.moveSelected(step);
}

void SchematicView::mousePressEvent(QMouseEvent* event)
{
    // The user decides from now on what is visible, so stop fitting.
    m_isFitted = false;
    m_hasEndedTool =
        event->button() == Qt::RightButton && m_scene.tool() != SchematicScene::Tool::Select;
    QGraphicsView::mousePressEvent(event);
}

void SchematicView::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        zoom(std::pow(zoomStep, double(event->angleDelta().y()) / wheelNotch));
        event->accept();
    } else {
        QGraphicsView::wheelEvent(event);
    }
}

void SchematicView::showEvent(QShowEvent* event)
{
    QGraphicsView::showEvent(event);
    if (m_isFitted)
        fitNow();
}

void SchematicView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (m_isFitted && isVisible())
        fitNow();
    else
        makeRoom(mapToScene(viewport()->rect().center()), transform().m11());
}

void SchematicView::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_scene.tool() == SchematicScene::Tool::Select && !m_hasEndedTool)
        QMenu::exec(actions(), event->globalPos(), nullptr, this);
    event->accept();
}

void SchematicView::zoom(double factor)
{
    m_isFitted = false;
    const double now = transform().m11();
    const double wanted = std::clamp(now * factor, smallestZoom, largestZoom);
    makeRoom(mapToScene(viewport()->rect().center()), std::min(now, wanted));
    scale(wanted / now, wanted / now);
}

void SchematicView::fitNow()
{
    QRectF all = m_scene.contents();
    if (all.isEmpty())
        all = QRectF(viewport()->rect().translated(-viewport()->rect().center()));
    all.adjust(-fitMargin, -fitMargin, fitMargin, fitMargin);
    const double factor =
        std::min(viewport()->width() / all.width(), viewport()->height() / all.height());
    const double wanted = std::clamp(factor, smallestZoom, largestFit);
    makeRoom(all.center(), wanted);
    setTransform(QTransform::fromScale(wanted, wanted));
    centerOn(all.center());
}

/// Lets the sheet reach beyond all edges of the view at a zoom. The view would centre a smaller sheet, and
/// what is drawn would jump when the sheet grows.
void SchematicView::makeRoom(const QPointF& middle, double zoom)
{
    const QSizeF size = QSizeF(viewport()->size()) / zoom;
    m_scene.makeRoom({middle - QPointF(size.width(), size.height()), 2 * size});
}

} // namespace workbench
