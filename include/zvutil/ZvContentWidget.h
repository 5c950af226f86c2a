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
/// @since 0.1 @ingroup widgets
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
    /// A document without a file. The widget is deleted when it has been closed.
    /// @param name tells the window from the frame's others
    /// @param parent owns the widget; may be null
    ZvContentWidget(const QString& name, QWidget* parent);
    /// Deletes the implementation.
    ~ZvContentWidget() override;

    /// @return the path of the document's file; empty for a document that has never been saved or
    /// loaded.
    zvutil::ZvFilePath filename() const;

    /// Sets the path of the document's file and shows it: the whole path as the long title, its
    /// last component as the short one. Reads and writes nothing. The file watcher is off
    /// afterwards, unless \p path was the path already.
    /// @param path the file's path, or an empty one for a document without a file
    void setFilename(const zvutil::ZvFilePath& path);

    /// Writes the document to its file, or, where there is none, to one that the user chooses.
    /// Throws what `writeFile` throws.
    /// @return the path that was tried, or an empty one if the user has cancelled; whether the
    /// document has been saved is reported by the signals alone
    zvutil::ZvFilePath save() const;

    /// Saves as `save` does, but always asks for a path.
    /// @return as for `save`
    zvutil::ZvFilePath saveAs() const;

    /// Writes the document to a file. Throws what `writeFile` throws.
    /// @param path the file to write; with an empty one nothing happens
    void saveAs(const zvutil::ZvFilePath& path) const;

    /// @return the text of `filename`, for the frame: up to its first NUL and without a byte order
    /// mark at its start.
    QString getFilename() const override;
    /// @return `menuName`, for the frame.
    QString getMenuTitle() const override;
    /// @return `documentTypeName`, for the frame.
    QString getViewContextName() const override;

    /// @return which file name extension the documents have: 0 for documents without a file, which
    /// are never asked for a path; 1 for ".zvsch", 2 for ".testplan". No other value is allowed.
    virtual int fileType() const = 0;

    /// @return the name of the documents in menus: by default `documentTypeName` with single
    /// blanks.
    virtual QString menuName() const;

    /// @return one of the two texts of the question about unsaved changes, fetched on every close.
    /// Both are fetched in the order of their indexes and passed to the frame in the other.
    /// @param index 0 for the question, 1 for the details
    virtual QString closeEventText(int index) const = 0;

    /// @return the name of one such document, in the singular; the dialog adds an s for the plural.
    virtual QString documentTypeName() const = 0;

    /// Writes the document to \p path, and emits `beginSave` before it starts and `endSave` when it
    /// is done: the new file name, the modified mark and the signal `saved` follow from those.
    ///
    /// A failure is reported by `endSave` with false, or thrown, with or without `endSave`. Work on
    /// another thread emits both signals there: if this function emitted `beginSave` itself, the
    /// file watcher would look again as soon as it returns, and report the writing as a foreign
    /// change.
    /// @param path the file to write
    virtual void writeFile(const zvutil::ZvFilePath& path) const = 0;

Q_SIGNALS:
    /// The document is about to be written.
    /// @param path the file to write
    void beginSave(const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The writing has ended.
    /// @param success whether the document is in the file
    /// @param path the file
    void endSave(bool success, const zvutil::ZvFilePath& path, QProtectedSignal) const;
    /// The document has been written. The widget's own slot runs first: it sets the file name and
    /// clears the modified mark.
    /// @param path the file
    void saved(const zvutil::ZvFilePath& path, QProtectedSignal) const;

protected:
    /// The same, with data of the subclass.
    /// @param impl what the widget holds, owned from now on; must not be null
    /// @param name tells the window from the frame's others
    /// @param parent owns the widget; may be null
    ZvContentWidget(Impl* impl, const QString& name, QWidget* parent);

    /// Asks the user for a path, in a modal dialog. No extension is added and the path isn't
    /// checked.
    /// @return the path; empty if `fileType` is 0 or the user has cancelled
    virtual zvutil::ZvFilePath requestSavePath() const;

    /// Has the frame ask about unsaved changes, with the texts of `closeEventText`.
    /// @param event ignored if the window stays open
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
