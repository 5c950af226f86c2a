#include <zvutil/ZvContentWidget.h>

#include <QFileDialog>
#include <QMetaType>
#include <QScopeGuard>
#include <QString>

#include <array>
#include <cstddef>
#include <vector>

namespace {

// By contract: the media types of the application's documents are kept here, although nothing in
// the library uses them.
[[maybe_unused]] constexpr char schematicMediaType[] = "application/Corvane-Schematic";
[[maybe_unused]] constexpr char symbolMediaType[] = "application/Corvane-Symbol";
[[maybe_unused]] constexpr char scriptMediaType[] = "application/Corvane-Script";

/// The extensions of a type of file; none for documents without a file.
const std::vector<QString>& extensions(int fileType)
{
    static const std::array<std::vector<QString>, 3> table{
        {{}, {QStringLiteral(".zvsch")}, {QStringLiteral(".testplan")}}};
    return table.at(static_cast<std::size_t>(fileType));
}

QString dialogFilter(const QString& documentTypeName, int fileType)
{
    QString patterns;
    for (const QString& extension : extensions(fileType))
        patterns += QLatin1Char('*') + extension + QLatin1Char(',');
    patterns.chop(1);
    // By contract: the filter appends an s to any type name. The host's documents have names for
    // which that is the plural.
    return documentTypeName + QStringLiteral("s (") + patterns + QLatin1Char(')');
}

} // namespace

ZvContentWidget::Impl::Impl() = default;

ZvContentWidget::Impl::~Impl() = default;

ZvContentWidget::ZvContentWidget(const QString& name, QWidget* parent)
    : ZvContentWidget(new Impl, name, parent)
{
}

ZvContentWidget::ZvContentWidget(Impl* impl, const QString& name, QWidget* parent)
    : ContentWidget(name, parent, true)
    , d(impl)
{
    // Register the arguments under the names that the meta-object uses, or queued signals from
    // other threads would be dropped.
    [[maybe_unused]] static const int registered[] = {
        qRegisterMetaType<zvutil::ZvFilePath>("zvutil::ZvFilePath"),
        qRegisterMetaType<QProtectedSignal>("QProtectedSignal"),
    };
    connect(this, &ZvContentWidget::saved, this, [this](const zvutil::ZvFilePath& path) {
        setFilename(path);
        setModified(false);
    });
    connect(this, &ZvContentWidget::beginSave, this, [this] { fileWatcherIgnoreChanges(true); });
    connect(this, &ZvContentWidget::endSave, this,
            [this](bool success, const zvutil::ZvFilePath& path) {
                fileWatcherIgnoreChanges(false);
                if (success)
                    Q_EMIT saved(path, QProtectedSignal());
            });
}

ZvContentWidget::~ZvContentWidget()
{
    delete d;
}

zvutil::ZvFilePath ZvContentWidget::filename() const
{
    return d_impl()->filename;
}

void ZvContentWidget::setFilename(const zvutil::ZvFilePath& path)
{
    if (d_impl()->filename == path)
        return;
    d_impl()->filename = path;
    setLongTitle(path.toQString());
    setShortTitle(path.filename().toQString());
    // By contract: setFilename() leaves the file watcher off, since it watched the file of the old
    // name. The subclass switches it on again when it is ready.
    enableFileWatcher(false);
}

zvutil::ZvFilePath ZvContentWidget::save() const
{
    zvutil::ZvFilePath path = d_impl()->filename.isEmpty() ? requestSavePath() : d_impl()->filename;
    if (!path.isEmpty())
        saveAs(path);
    return path;
}

zvutil::ZvFilePath ZvContentWidget::saveAs() const
{
    zvutil::ZvFilePath path = requestSavePath();
    if (!path.isEmpty())
        saveAs(path);
    return path;
}

void ZvContentWidget::saveAs(const zvutil::ZvFilePath& path) const
{
    if (path.isEmpty())
        return;
    // Casting is safe: widgets are never const objects, and the frame's operations aren't const.
    auto* const self = const_cast<ZvContentWidget*>(this);
    self->fileWatcherIgnoreChanges(true);
    const auto watchAgain = qScopeGuard([self] { self->fileWatcherIgnoreChanges(false); });
    writeFile(path);
}

QString ZvContentWidget::getFilename() const
{
    return QString::fromWCharArray(d_impl()->filename.c_str());
}

QString ZvContentWidget::getMenuTitle() const
{
    return menuName();
}

QString ZvContentWidget::getViewContextName() const
{
    return documentTypeName();
}

QString ZvContentWidget::menuName() const
{
    return documentTypeName().simplified();
}

zvutil::ZvFilePath ZvContentWidget::requestSavePath() const
{
    if (fileType() == 0)
        return {};
    const QString title = QStringLiteral("Save ") + documentTypeName() + QStringLiteral(" as...");
    const QString chosen = QFileDialog::getSaveFileName(
        nullptr, title, QString(), dialogFilter(documentTypeName(), fileType()));
    if (chosen.isNull())
        return {};
    return chosen.toStdWString().c_str();
}

void ZvContentWidget::closeEvent(QCloseEvent* event)
{
    const QString first = closeEventText(0);
    const QString second = closeEventText(1);
    // By contract: closeEvent() calls the frame's implementation, not the override below, and
    // passes the second text first. The frame takes the details before the question.
    DockableWidgetContents::closeEvent(event, second, first);
}

void ZvContentWidget::closeEvent(QCloseEvent* /*event*/, const QString& /*details*/,
                                 const QString& /*question*/)
{
    // By contract: calls through the frame's base class do nothing, so that a document isn't closed
    // twice.
}

void ZvContentWidget::callOnCloseScript()
{
}

void ZvContentWidget::onClosing()
{
}

ZvContentWidget::Impl* ZvContentWidget::d_impl()
{
    return d;
}

const ZvContentWidget::Impl* ZvContentWidget::d_impl() const
{
    return d;
}
