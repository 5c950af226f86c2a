#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/zvutil_export.h>

#include <QObject>
#include <QStringList>

#include <string>

namespace libzvutil {

class ZvStyleLibrary;

/// Holds the application's style library and its current style, and calls listeners when they
/// change.
///
/// The one manager is constructed by the first call that isn't for a path, which must be on the GUI
/// thread: that thread is the manager's from then on. It loads the built-in library, makes the style
/// directory and adds the user's library to it, and starts with the style that the host option
/// "ZvStyle" names, or with "Light". A directory that can't be made and a user's library that can't
/// be loaded are ignored.
///
/// `SetStyle`, `SetLibrary` and `Refresh` may be called on any thread. They copy their argument and
/// do their work on the manager's thread: at once if called there, else from its event loop, in
/// the order of the calls, and no caller waits. Everything else that isn't a path belongs on the
/// manager's thread.
///
/// Only `Refresh` puts a style sheet on the application, only `Update` writes to disc. A host that
/// wants another style on the screen calls `SetStyle` and then `Refresh`.
///
/// @code{.cpp}
/// #include <zvutil/ZvStyleBrush.h>
///
/// #include <QPalette>
/// #include <QWidget>
///
/// /// Throws `zvutil::ZvException` if there is no such style.
/// void useStyle(const QString& name)
/// {
///     using libzvutil::ZvStyleManager;
///     ZvStyleManager::SetStyle(ZvStyleManager::Style(name)); // the listeners are called
///     ZvStyleManager::Refresh(); // the application's style sheet is set
/// }
///
/// /// Gives a plot, which style sheets don't reach, the colour of panels in each style to come.
/// void followStyle(QWidget* plot)
/// {
///     using namespace libzvutil;
///     QObject::connect(&styleManager(), &ZvStyleManager::currentStyleChanged, plot,
///                      [plot](const ZvStyle& style) {
///                          plot->setPalette(style.colour(ZvStyleBrush::Panel).qColour());
///                      });
/// }
/// @endcode
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvStyleManager : public QObject
{
    Q_OBJECT

public:
    /// Runs when the library is unloaded or the process ends.
    ~ZvStyleManager() override;

    /// @return the directory of the user's style files, without a separator at its end: "ui" in the
    /// host's directory for the user's data. This path and those of the two files in it are only
    /// computed, on any thread; nothing is created.
    static zvutil::ZvFilePath StyleDirectory();
    /// @return the user's style library, "styles.xml".
    static zvutil::ZvFilePath StyleConfigPath();
    /// @return the user's additions to the style sheet, "modifications.qss".
    static zvutil::ZvFilePath StyleModificationsPath();

    /// @return the current style, which may differ from the library's style of that name. Valid
    /// until the next change.
    static const ZvStyle& CurrentStyle();
    /// @return the library of styles, the built-in and the user's. Valid for good; its styles until
    /// the next change.
    static const ZvStyleLibrary& Library();
    /// @return the names of the library's styles in their order.
    static QStringList AvailableStyleNames();

    /// @return a copy of the library's style of that name. Throws `zvutil::ZvException` with "Style
    /// not found: " and \p name if there is none.
    /// @param name any case
    static ZvStyle Style(const QString& name);

    /// Makes a style the current one and calls the listeners. The application's style sheet stays
    /// as it is.
    /// @param style is copied; need not be in the library
    static void SetStyle(const ZvStyle& style);
    /// The same.
    /// @param style is copied all the same, and stays as it is
    static void SetStyle(ZvStyle&& style);
    /// A name is no style: it would make a new one, all black. Use `SetStyle(Style(name))`.
    /// @param name would be that of the new style
    static void SetStyle(const char* name) = delete;
    /// As above.
    /// @param name would be that of the new style
    static void SetStyle(const std::string& name) = delete;

    /// Replaces all styles of the library but the default ones, and the current style by the new
    /// one of its name, or by "Light" if there is none. Then calls the listeners. The application's
    /// style sheet stays as it is, and nothing is written to disc.
    /// @param library has the new styles; is copied
    static void SetLibrary(const ZvStyleLibrary& library);

    /// Applies the current style to the application and calls the listeners, even if the sheet
    /// couldn't be made.
    static void Refresh();

    /// Puts a style into the library, unless one of the default styles has its name, and saves the
    /// library in either case. Neither a failure nor the change is reported, and the current style
    /// stays as it is.
    /// @param style is copied
    static void Update(const ZvStyle& style);
    /// The same without a copy.
    /// @param style may then only be destroyed or assigned to
    static void Update(ZvStyle&& style);
    /// A name is no style: it would put a new one, all black, in place of the one of that name.
    /// @param name would be that of the new style
    static void Update(const char* name) = delete;
    /// As above.
    /// @param name would be that of the new style
    static void Update(const std::string& name) = delete;

Q_SIGNALS:
    /// Emitted on the manager's thread. `ZvStyle` is no meta-type, so listeners connect directly.
    /// @param style valid as long as no listener changes it
    void currentStyleChanged(const ZvStyle& style, QPrivateSignal);
    /// Emitted on the manager's thread after `SetLibrary`, before `currentStyleChanged`.
    void styleLibraryChanged(QPrivateSignal);

private:
    friend ZVUTIL_EXPORT ZvStyleManager& styleManager();
    class Impl;

    ZvStyleManager();

    static ZvStyleManager& _Get();

    void setStyle(const ZvStyle& style);
    void setStyle(ZvStyle&& style);
    void setLibrary(const ZvStyleLibrary& library);
    void refresh();

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

/// @return the one manager, for connections to its signals; valid until the library is unloaded.
/// Call it on the manager's thread.
/// @since 0.1 @ingroup styles
ZVUTIL_EXPORT ZvStyleManager& styleManager();

} // namespace libzvutil
