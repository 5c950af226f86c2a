#pragma once

#include <QList>
#include <QMenu>
#include <QPointer>

namespace workbench {

class Document;

/// The menu "Edit": the actions of the current document, and the search in files.
class EditMenu : public QMenu
{
    Q_OBJECT

public:
    /// Creates the menu as a child of \p window, which gets the actions whose shortcuts work at any
    /// time.
    explicit EditMenu(QWidget& window);

    /// Offers the actions of \p document from now on, or none if it is nullptr. The shortcuts of its window's
    /// actions work in the whole window until then.
    void setDocument(Document* document);

Q_SIGNALS:
    void findInFilesRequested();

private:
    void fill();

    QWidget& m_window;
    QPointer<const Document> m_document;
    QList<QPointer<QAction>> m_windowActions; // of the document
    QAction* m_find;
};

} // namespace workbench
