#pragma once

#include <zvutil/ZvContentWidget.h>

#include "support/Files.h"
#include "support/WindowResponder.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

namespace zvtest {

inline zvutil::ZvFilePath pathOf(const QString& text)
{
    return zvutil::ZvFilePath(text.toStdWString());
}

inline QString textOf(const zvutil::ZvFilePath& path)
{
    return path.toQString();
}

/// A document whose text is written to its file, and which notes all that happens to it.
class Document : public ZvContentWidget
{
    Q_OBJECT

public:
    explicit Document(int type = 1, QWidget* parent = nullptr)
        : ZvContentWidget(QString("document"), parent)
        , m_type(type)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        record();
    }

    int fileType() const override { return m_type; }
    QString documentTypeName() const override { return typeName; }

    QString closeEventText(int index) const override
    {
        note(QString("text %1").arg(index));
        return QString("text of index %1").arg(index);
    }

    void writeFile(const zvutil::ZvFilePath& path) const override
    {
        note("write " + textOf(path));
        write(*this, path);
    }

    /// What `writeFile` does.
    std::function<void(const Document&, const zvutil::ZvFilePath&)> write = &Document::writeWell;

    void writeWell(const zvutil::ZvFilePath& path) const
    {
        Q_EMIT beginSave(path, QProtectedSignal());
        const bool isWritten = writeTo(textOf(path), text);
        note("written");
        Q_EMIT endSave(isWritten, path, QProtectedSignal());
    }

    void begin(const zvutil::ZvFilePath& path) const { Q_EMIT beginSave(path, QProtectedSignal()); }
    void end(bool success, const zvutil::ZvFilePath& path) const
    {
        Q_EMIT endSave(success, path, QProtectedSignal());
    }
    void tellSaved(const zvutil::ZvFilePath& path) const { Q_EMIT saved(path, QProtectedSignal()); }

    bool canReloadFile() const override { return true; }
    void reloadFile() override { text = contentOf(getFilename()); }

    using ZvContentWidget::requestSavePath;

    QStringList takeNotes() { return std::exchange(*m_notes, QStringList()); }
    void note(const QString& line) const { m_notes->append(line); }

    QByteArray text = "contents";
    QString typeName = "Schematic";

private:
    void record()
    {
        connect(this, &ZvContentWidget::beginSave, this,
                [this](const zvutil::ZvFilePath& path) { note("begin " + textOf(path)); });
        connect(this, &ZvContentWidget::endSave, this,
                [this](bool success, const zvutil::ZvFilePath& path) {
                    note(QString("ended %1 %2").arg(success ? "well" : "badly", textOf(path)));
                });
        connect(this, &ZvContentWidget::saved, this,
                [this](const zvutil::ZvFilePath& path) { note("saved " + textOf(path)); });
        connect(this, &DockableWidgetContents::fileWatcherIgnores, this, [this](bool ignores) {
            note(ignores ? "changes are ignored" : "changes are heeded");
        });
        connect(this, &DockableWidgetContents::fileWatcherEnabled, this,
                [this](bool enabled) { note(enabled ? "watched" : "not watched"); });
        connect(this, &DockableWidgetContents::modifiedChanged, this,
                [this](bool modified) { note(modified ? "modified" : "not modified"); });
    }

    int m_type;
    // For const operations, which is what all writing is.
    std::shared_ptr<QStringList> m_notes = std::make_shared<QStringList>();
};

/// Gives the test functions of a program a folder.
class ContentWidgetTest : public QObject
{
    Q_OBJECT

protected:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
};

} // namespace zvtest
