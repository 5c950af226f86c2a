#pragma once

#include <QMenu>
#include <QPointer>

namespace workbench {

class Document;

/// The menu "Edit": what can be done with the current document, and the search in files.
class EditMenu : public QMenu
{
    Q_OBJECT

public:
    /// \p window, the parent, gets the actions whose shortcuts work at any time.
    explicit EditMenu(QWidget& window);

    /// Offers the actions of \p document, which may be nullptr, from now on.
    void setDocument(Document* document);

Q_SIGNALS:
    void findInFilesRequested();

private:
    void fill();

    QPointer<const Document> m_document;
    QAction* m_find;
};

} // namespace workbench
