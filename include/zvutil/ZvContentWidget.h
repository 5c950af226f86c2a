#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/zvutil_export.h>

#include <DockFramework/ContentWidget.h>

#include <QObject>
#include <QString>

class QCloseEvent;

/// A document window of the application's docking frame: its file name, the way of saving it, and the
/// titles that follow from the name.
///
/// A subclass tells what kind of document it is and writes it. A new document has no file name, so
/// the first `save` asks for one.
///
/// While the document is written, the frame's file watcher ignores changes of its file. Each change
/// of the file name switches the watcher off, and nothing here switches it on again: that is up to
/// the subclass (`enableFileWatcher`).
///
/// GUI thread only, but for the signals, which may be emitted on any thread.
///
/// @code{.cpp}
/// #include <QSaveFile>
///
/// class TestPlanWindow : public ZvContentWidget
/// {
/// public:
///     using ZvContentWidget::ZvContentWidget;
///
///     int fileType() const override { return 2; } // ".testplan"
///     QString documentTypeName() const override { return QStringLiteral("Test Plan"); }
///     QString closeEventText(int index) const override
///     {
///         return index == 0 ? QStringLiteral("Save the test plan?")
///                           : QStringLiteral("Otherwise its changes are lost.");
///     }
///     void writeFile(const zvutil::ZvFilePath& path) const override
///     {
///         Q_EMIT beginSave(path, QProtectedSignal());
///         QSaveFile file(path.toQString());
///         const bool isSaved = file.open(QIODevice::WriteOnly)
///             && file.write(text.toUtf8()) >= 0 && file.commit();
///         Q_EMIT endSave(isSaved, path, QProtectedSignal()); // `saved` follows if it is true
///     }
///
///     QString text;
/// };
/// @endcode
class ZVUTIL_EXPORT ZvContentWidget : public ContentWidget
{
    Q_OBJECT

protected:
    /// Lets subclasses emit the signals, and nobody else.
    using QProtectedSignal = QPrivateSignal;

    /// What a widget holds. A subclass may hold more, in a class derived from this one.
    class ZVUTIL_EXPORT Impl : public QObject
    {
    public:
        Impl();
        ~Impl() override;

    private:
        friend class ZvContentWidget;

        zvutil::ZvFilePath filename;
    };

public:
    /// \p name tells the window from the frame's others. It is deleted when it has been closed.
    ZvContentWidget(const QString& name, QWidget* parent);
    ~ZvContentWidget() override;

    /// Empty for a document that has never been saved or loaded.
    zvutil::ZvFilePath filename() const;

    /// Takes the name and shows it: the whole path as the long title, its last component as the
    /// short one. Reads and writes nothing. The file watcher is off afterwards, unless \p path was
    /// the name already.
    void setFilename(const zvutil::ZvFilePath& path);

    /// Writes the document to its file, or, where there is none, to one that the user chooses.
    ///
    /// Returns the path that was tried, or an empty one if the user has cancelled. Whether the
    /// document has been saved is told by the signals alone. Throws what `writeFile` throws.
    zvutil::ZvFilePath save() const;

    /// As `save`, but asks for a path in any case.
    zvutil::ZvFilePath saveAs() const;

    /// Writes the document to \p path, or does nothing if that is empty. Throws what `writeFile`
    /// throws.
    void saveAs(const zvutil::ZvFilePath& path) const;

    /// `filename`, as the frame asks for it, up to its first NUL and without a byte order mark in
    /// front.
    QString getFilename() const override;
    /// `menuName`.
    QString getMenuTitle() const override;
    /// `documentTypeName`.
    QString getViewContextName() const override;

    /// Which file name extension the documents have: 0 for documents without a file, which are never
    /// asked for a path; 1 for ".zvsch", 2 for ".testplan". No other value is allowed.
    virtual int fileType() const = 0;

    /// What the documents are called in menus: their type's name without needless blanks.
    virtual QString menuName() const;

    /// The texts of the question about unsaved changes, asked for on every close: that of index 0 is
    /// handed to the frame behind that of index 1.
    virtual QString closeEventText(int index) const = 0;

    /// What one such document is called, in the singular. The dialog's plural adds an s.
    virtual QString documentTypeName() const = 0;

    /// Writes the document to \p path, and emits `beginSave` before it starts and `endSave` when it
    /// is done: on those the taking of the name, the modified mark and the signal `saved` depend.
    ///
    /// A failure is told by `endSave` with false, or thrown, with or without `endSave`. Work on
    /// another thread is to emit both signals there: with `beginSave` from here the file watcher
    /// would look again as soon as this returns, and take the writing for somebody else's.
    virtual void writeFile(const zvutil::ZvFilePath& path) const = 0;

Q_SIGNALS:
    /// The document is about to be written to \p path.
    void beginSave(const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The writing has ended, well or not.
    void endSave(bool success, const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The document is in \p path. Its name and modified mark follow as this is delivered, in the
    /// first of all slots.
    void saved(const zvutil::ZvFilePath& path, QProtectedSignal) const;

protected:
    /// As the other, with \p impl for its own, which it takes over.
    ZvContentWidget(Impl* impl, const QString& name, QWidget* parent);

    /// Asks the user for a path, in a dialog. Empty if there is no file for such documents, or the
    /// user has cancelled. No extension is added, nothing about the path is checked.
    virtual zvutil::ZvFilePath requestSavePath() const;

    /// Has the frame ask about unsaved changes.
    void closeEvent(QCloseEvent* event) override;

private:
    void closeEvent(QCloseEvent* event, const QString& details, const QString& question) override;
    void callOnCloseScript() override;
    void onClosing() override;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* d;
};

static_assert(sizeof(ZvContentWidget) == sizeof(ContentWidget) + sizeof(void*));
