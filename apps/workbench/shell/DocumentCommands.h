#pragma once

#include <QObject>

namespace workbench {

class Document;
class DocumentTransfer;
class Workbench;

/// What the user asks a window to do with its documents. Commands for the current document do nothing if there is none.
class DocumentCommands : public QObject
{
    Q_OBJECT

public:
    /// Exports by \p transfer, which must outlive the object.
    DocumentCommands(Workbench& window, DocumentTransfer& transfer);

    void save();
    void saveAs();
    void saveAll();
    void rename();
    void exportFile();
    void copyAsUri();
    void close();

private:
    bool hasFile(const Document& document);

    Workbench& m_window;
    DocumentTransfer& m_transfer;
};

} // namespace workbench
