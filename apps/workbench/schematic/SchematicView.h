#pragma once

#include <QGraphicsView>

namespace workbench {

class SchematicScene;

/// Shows a schematic, at the size that the user chooses.
class SchematicView : public QGraphicsView
{
    Q_OBJECT

public:
    /// Creates the view. \p scene must outlive it.
    SchematicView(SchematicScene& scene, QWidget* parent);

    SchematicScene& schematicScene();

    void zoomIn();
    void zoomOut();
    /// Fits the whole schematic into the view, now or once the view is shown.
    void fit();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void zoom(double factor);
    void fitNow();
    void makeRoom(const QPointF& middle, double zoom);

    SchematicScene& m_scene;
    bool m_isFitted = true; ///< fit at each resize, until the user zooms or draws
    bool m_hasEndedTool = false; ///< the right button has ended a tool, so it opens no menu
};

} // namespace workbench
