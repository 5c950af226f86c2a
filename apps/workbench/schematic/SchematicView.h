#pragma once

#include <QGraphicsView>

namespace workbench {

class SchematicScene;

/// Shows a schematic, at the size that the user wants.
class SchematicView : public QGraphicsView
{
    Q_OBJECT

public:
    /// The scene has to stay for as long as the view.
    SchematicView(SchematicScene& scene, QWidget* parent);

    void zoomIn();
    void zoomOut();
    /// All of it, once the view is shown.
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

    SchematicScene& m_scene;
    bool m_isFitted = true; ///< until the user zooms or draws
    bool m_hasEndedTool = false; ///< by the button that else opens the menu
};

} // namespace workbench
