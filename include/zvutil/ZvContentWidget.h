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
/// A subclass defines the type of document and writes it. A new document has no file name, so the
/// first `save` asks for one.
///
/// While the document is written, the frame's file watcher ignores changes of its file. Each change
/// of the file name switches the watcher off; only the subclass switches it on again
/// (`enableFileWatcher`).
///
/// GUI thread only, except for the signals, which may be emitted on any thread.
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
///         const QByteArray bytes = text.toUtf8();
///         QSaveFile file(path.toQString());
///         // A full disk shows in the count of bytes, or else in flush(), but not in commit().
///         const bool isSaved = file.open(QIODevice::WriteOnly)
///             && file.write(bytes) == bytes.size() && file.flush() && file.commit();
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
    /// The last argument of the signals, which only subclasses can make; so only they emit.
    using QProtectedSignal = QPrivateSignal;

    /// The data of a widget. A subclass may derive its own from this class.
    class ZVUTIL_EXPORT Impl : public QObject
    {
    public:
        /// Data with an empty file name.
        Impl();
        /// Called by the widget's destructor.
        ~Impl() override;

    private:
        friend class ZvContentWidget;

        zvutil::ZvFilePath filename;
    };

public:
    /// A document without a file. \p name tells the window from the frame's others; \p parent,
    /// which may be null, owns it. The widget is deleted when it has been closed.
    ZvContentWidget(const QString& name, QWidget* parent);
    /// Deletes the implementation.
    ~ZvContentWidget() override;

    /// The path of the document's file; empty for a document that has never been saved or loaded.
    zvutil::ZvFilePath filename() const;

    /// Sets the path of the document's file and shows it: the whole path as the long title, its last
    /// component as the short one. Reads and writes nothing. The file watcher is off afterwards,
    /// unless \p path was the path already.
    void setFilename(const zvutil::ZvFilePath& path);

    /// Writes the document to its file, or, where there is none, to one that the user chooses.
    ///
    /// Returns the path that was tried, or an empty one if the user has cancelled. Whether the
    /// document has been saved is reported by the signals alone. Throws what `writeFile` throws.
    zvutil::ZvFilePath save() const;

    /// Saves as `save` does, but always asks for a path.
    zvutil::ZvFilePath saveAs() const;

    /// Writes the document to \p path, or does nothing if that is empty. Throws what `writeFile`
    /// throws.
    void saveAs(const zvutil::ZvFilePath& path) const;

    /// The text of `filename`, for the frame: up to its first NUL and without a byte order mark at
    /// its start.
    QString getFilename() const override;
    /// `menuName`, for the frame.
    QString getMenuTitle() const override;
    /// `documentTypeName`, for the frame.
    QString getViewContextName() const override;

    /// Which file name extension the documents have: 0 for documents without a file, which are never
    /// asked for a path; 1 for ".zvsch", 2 for ".testplan". No other value is allowed.
    virtual int fileType() const = 0;

    /// The name of the documents in menus: by default `documentTypeName` with single blanks.
    virtual QString menuName() const;

    /// The texts of the question about unsaved changes, fetched on every close: index 0 is the
    /// question, index 1 the details. Both are fetched in this order and passed to the frame in the
    /// other.
    virtual QString closeEventText(int index) const = 0;

    /// The name of one such document, in the singular; the dialog adds an s for the plural.
    virtual QString documentTypeName() const = 0;

    /// Writes the document to \p path, and emits `beginSave` before it starts and `endSave` when it
    /// is done: the new file name, the modified mark and the signal `saved` follow from those.
    ///
    /// A failure is reported by `endSave` with false, or thrown, with or without `endSave`. Work on
    /// another thread emits both signals there: if this function emitted `beginSave` itself, the file
    /// watcher would look again as soon as it returns, and report the writing as a foreign change.
    virtual void writeFile(const zvutil::ZvFilePath& path) const = 0;

Q_SIGNALS:
    /// The document is about to be written to \p path.
    void beginSave(const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The writing to \p path has ended; \p success says whether the document is there.
    void endSave(bool success, const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The document has been written to \p path. The widget's own slot runs first: it sets the file
    /// name and clears the modified mark.
    void saved(const zvutil::ZvFilePath& path, QProtectedSignal) const;

protected:
    /// The same, with \p impl for what the widget holds; it must not be null and is owned from now
    /// on.
    ZvContentWidget(Impl* impl, const QString& name, QWidget* parent);

    /// Asks the user for a path, in a modal dialog. Returns an empty path if `fileType` is 0 or the
    /// user has cancelled. No extension is added and the path isn't checked.
    virtual zvutil::ZvFilePath requestSavePath() const;

    /// Has the frame ask about unsaved changes, with the texts of `closeEventText`.
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
