#pragma once

#include <QMenu>
#include <QPointer>

class DockFrame;

namespace workbench {

class Document;

/// The menu "Window": the documents that are open.
class WindowMenu : public QMenu
{
    Q_OBJECT

public:
    /// Creates the menu as a child of \p frame, which has the documents' windows.
    explicit WindowMenu(DockFrame& frame);

    /// Marks the window of \p document as the current one, or none if it is nullptr.
    void setDocument(Document* document);

private:
    void fill();
    void activateNeighbour(int step);

    DockFrame& m_frame;
    QPointer<const Document> m_document;
    QAction* m_next;
    QAction* m_previous;
};

} // namespace workbench
