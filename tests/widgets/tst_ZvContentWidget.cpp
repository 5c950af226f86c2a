// Documents that write real files, in windows of the docking frame's base classes.

#include "ContentDocument.h"

#include <zvutil/ZvContentWidget.h>

#include "support/Files.h"
#include "support/WindowResponder.h"

#include <QAbstractButton>
#include <QFile>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

using zvtest::Document;
using zvtest::pathOf;
using zvtest::writeTo;
using zvutil::ZvFilePath;

namespace {

/// Answers the message box that opens next, and keeps what it said.
struct BoxAnswer
{
    explicit BoxAnswer(QMessageBox::StandardButton button)
        : answer([this, button](QMessageBox& box) {
            text = box.text();
            details = box.informativeText();
            box.button(button)->click();
        })
    {
    }

    QString text;
    QString details;
    zvtest::WindowResponder<QMessageBox> answer;
};

#if defined(__GNUC__)
/// The place of a virtual operation among those of its class.
template <typename Member>
std::uintptr_t slot(Member member)
{
    // A pointer to a virtual member is its offset, plus one.
    std::uintptr_t words[2] = {};
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    return words[0];
}

/// Names what the public can't.
class Slots : public ZvContentWidget
{
public:
    using Close = void (DockableWidgetContents::*)(QCloseEvent*, const QString&, const QString&);

    static std::vector<std::uintptr_t> ofTheFrame()
    {
        using Frame = DockableWidgetContents;
        return {slot(&Frame::getViewContextName),
                slot(&Frame::getMenuTitle),
                slot(&Frame::getShortName),
                slot(&Frame::getRightClickMenuTitle),
                slot(&Frame::getToolBarContext),
                slot(&Frame::updateEnabledMenusOnKeyPress),
                slot(&Frame::getRestoreCommand),
                slot(&Frame::getFilename),
                slot(&Frame::disableContextMenuOnce),
                slot(&Frame::getPreferredDockLocation),
                slot(&Frame::getPreferredNewWindowSize),
                slot(&Frame::getRestoreWidgetInfo),
                slot(&Frame::getIcon),
                slot(&Frame::notifyHighlighted),
                slot(&Frame::notifyTitleBarPressed),
                slot(&Frame::isContentWidget),
                slot(&Frame::isSystemWidget),
                slot(&Frame::reloadFile),
                slot(&Frame::canReloadFile),
                slot(&Frame::requireDefaultMenu),
                slot(&Frame::windowChanged),
                slot(close()),
                slot(&FrameSlots::callOnCloseScript),
                slot(&FrameSlots::onClosing),
                slot(&Frame::notifyLocationChanged),
                slot(&ContentWidget::saveSessionBackup),
                slot(&ContentWidget::widgetHighlightedEvent),
                slot(&ContentWidget::widgetUnhighlightedEvent)};
    }

    static std::vector<std::uintptr_t> added()
    {
        return {slot(&Slots::fileType),       slot(&Slots::menuName),
                slot(&Slots::closeEventText), slot(&Slots::documentTypeName),
                slot(&Slots::writeFile),      slot(&Slots::requestSavePath)};
    }

    static Close close() { return FrameSlots::close(); }

private:
    class FrameSlots : public DockableWidgetContents
    {
    public:
        static Close close() { return static_cast<Close>(&FrameSlots::closeEvent); }
        using DockableWidgetContents::callOnCloseScript;
        using DockableWidgetContents::onClosing;
    };
};
#endif

template <typename Expected, typename Found>
constexpr bool same(Found /*found*/)
{
    return std::is_same_v<Expected, Found>;
}

/// Whose operation it is that a document has, by the class in which its name is found.
class Origins : public ZvContentWidget
{
    using Text = QString;
    template <typename Owner>
    using TextOperation = Text (Owner::*)() const;
    template <typename Owner>
    using Question = bool (Owner::*)() const;
    template <typename Owner>
    using Notice = void (Owner::*)();
    using Frame = DockableWidgetContents;
    using This = ZvContentWidget;

    static_assert(same<TextOperation<This>>(&This::getViewContextName));
    static_assert(same<TextOperation<This>>(&This::getMenuTitle));
    static_assert(same<TextOperation<ContentWidget>>(&This::getShortName));
    static_assert(same<TextOperation<Frame>>(&This::getRightClickMenuTitle));
    static_assert(same<TextOperation<Frame>>(&This::getToolBarContext));
    static_assert(same<Question<Frame>>(&This::updateEnabledMenusOnKeyPress));
    static_assert(same<TextOperation<Frame>>(&This::getRestoreCommand));
    static_assert(same<TextOperation<This>>(&This::getFilename));
    static_assert(same<Notice<Frame>>(&This::disableContextMenuOnce));
    static_assert(same<DockLocationPreference (Frame::*)() const>(&This::getPreferredDockLocation));
    static_assert(same<QSize (Frame::*)() const>(&This::getPreferredNewWindowSize));
    static_assert(same<RestoreWidgetInfo (Frame::*)() const>(&This::getRestoreWidgetInfo));
    static_assert(same<QIcon (Frame::*)() const>(&This::getIcon));
    static_assert(same<Notice<Frame>>(&This::notifyHighlighted));
    static_assert(same<Notice<Frame>>(&This::notifyTitleBarPressed));
    static_assert(same<Question<ContentWidget>>(&This::isContentWidget));
    static_assert(same<Question<ContentWidget>>(&This::isSystemWidget));
    static_assert(same<Notice<Frame>>(&This::reloadFile));
    static_assert(same<Question<Frame>>(&This::canReloadFile));
    static_assert(same<Question<Frame>>(&This::requireDefaultMenu));
    static_assert(same<Notice<Frame>>(&This::windowChanged));
    static_assert(same<void (Frame::*)(Qt::DockWidgetArea)>(&This::notifyLocationChanged));
    static_assert(
        same<void (ContentWidget::*)(const QString&, const QString&)>(&This::saveSessionBackup));
    static_assert(same<Notice<ContentWidget>>(&This::widgetHighlightedEvent));
    static_assert(same<Notice<ContentWidget>>(&This::widgetUnhighlightedEvent));
    static_assert(same<bool (ContentWidget::*)(QEvent*)>(&Origins::event));
    static_assert(same<void (Frame::*)(QContextMenuEvent*)>(&Origins::contextMenuEvent));
    static_assert(same<void (Frame::*)(QDragEnterEvent*)>(&Origins::dragEnterEvent));
    static_assert(same<void (Frame::*)(QDropEvent*)>(&Origins::dropEvent));
};

/// Reaches the operation with three arguments as the frame does.
class Frame : public DockableWidgetContents
{
public:
    static void close(DockableWidgetContents& contents, QCloseEvent& event)
    {
        using Close =
            void (DockableWidgetContents::*)(QCloseEvent*, const QString&, const QString&);
        (contents.*static_cast<Close>(&Frame::closeEvent))(&event, QString(), QString());
    }
};

} // namespace

class tst_ZvContentWidget : public zvtest::ContentWidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        static_assert(std::is_base_of_v<ContentWidget, ZvContentWidget>);
        static_assert(std::is_base_of_v<DockableWidgetContents, ContentWidget>);
        static_assert(std::is_abstract_v<ZvContentWidget>);
        const QMetaObject& meta = ZvContentWidget::staticMetaObject;
        QCOMPARE(meta.className(), "ZvContentWidget");
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 3);
        const char* const names[] = {"beginSave", "endSave", "saved"};
        for (int i = 0; i < 3; ++i) {
            const QMetaMethod method = meta.method(meta.methodOffset() + i);
            QCOMPARE(method.methodType(), QMetaMethod::Signal);
            QCOMPARE(method.name(), QByteArray(names[i]));
        }
    }

    void virtualOperationsStandInTheirOrder()
    {
#if defined(__GNUC__)
        std::vector<std::uintptr_t> slots = Slots::ofTheFrame();
        QCOMPARE(slots.size(), std::size_t(28));
        const std::vector<std::uintptr_t> added = Slots::added();
        slots.insert(slots.end(), added.begin(), added.end());
        for (std::size_t i = 1; i < slots.size(); ++i)
            QCOMPARE(slots[i], slots[i - 1] + sizeof(void*));
#else
        QSKIP("what a pointer to a member holds is this compiler's own affair");
#endif
    }

    void newDocument()
    {
        QWidget parent;
        auto* const document = new Document(1, &parent);
        QCOMPARE(document->parentWidget(), &parent);
        QCOMPARE(document->objectName(), QString("document"));
        QVERIFY(document->filename().isEmpty());
        QCOMPARE(document->getFilename(), QString());
        QVERIFY(!document->isModified());
        QVERIFY(document->takeNotes().isEmpty());
    }

    void documentIsDeletedWhenItCloses()
    {
        class Plain : public ZvContentWidget
        {
        public:
            using ZvContentWidget::ZvContentWidget;
            int fileType() const override { return 0; }
            QString closeEventText(int /*index*/) const override { return QString(); }
            QString documentTypeName() const override { return QString(); }
            void writeFile(const ZvFilePath& /*path*/) const override { }
        };
        const QPointer<QWidget> plain = new Plain(QString(), nullptr);
        QVERIFY(plain->close());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(plain.isNull());
    }

    void largerImplementation()
    {
        class Large : public ZvContentWidget
        {
        public:
            class LargeImpl : public Impl
            {
            public:
                explicit LargeImpl(bool& isGone)
                    : m_isGone(isGone)
                {
                }
                ~LargeImpl() override { m_isGone = true; }

            private:
                bool& m_isGone;
            };

            explicit Large(bool& isGone)
                : ZvContentWidget(new LargeImpl(isGone), QString("large"), nullptr)
            {
            }
            int fileType() const override { return 0; }
            QString closeEventText(int /*index*/) const override { return QString(); }
            QString documentTypeName() const override { return QString(); }
            void writeFile(const ZvFilePath& path) const override
            {
                Q_EMIT endSave(true, path, QProtectedSignal());
            }
        };
        bool isGone = false;
        {
            Large large(isGone);
            large.saveAs(pathOf("/a/b.txt"));
            QCOMPARE(large.getFilename(), QString("/a/b.txt"));
            QVERIFY(!isGone);
        }
        QVERIFY(isGone);
    }

    void nameWithAByteOrderMarkIsToldWithoutIt()
    {
        Document document;
        document.setFilename(pathOf(QStringLiteral("\uFEFFa.zvsch")));
        QCOMPARE(document.filename(), pathOf(QStringLiteral("\uFEFFa.zvsch")));
        QCOMPARE(document.getFilename(), QString("a.zvsch"));
        document.takeNotes();
    }

    void newNameShowsInTheTitles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("shortTitle");
        QTest::newRow("slashes") << "/a/b/plan.zvsch"
                                 << "plan.zvsch";
        QTest::newRow("backslashes") << "C:\\a\\plan.zvsch"
                                     << "plan.zvsch";
        QTest::newRow("no folder") << "plan"
                                   << "plan";
        QTest::newRow("folder only") << "/a/b/" << QString();
        QTest::newRow("beyond ASCII") << "/\u00E4/\u65E5\u672C.zvsch"
                                      << "\u65E5\u672C.zvsch";
    }

    void newNameShowsInTheTitles()
    {
        QFETCH(QString, path);
        QFETCH(QString, shortTitle);
        Document document;
        connect(&document, &DockableWidgetContents::titlesChanged, &document, [&document] {
            document.note(QString("titles %1|%2").arg(document.longTitle(), document.shortTitle()));
        });
        document.setFilename(pathOf(path));
        QCOMPARE(document.filename(), pathOf(path));
        QCOMPARE(document.getFilename(), path);
        QCOMPARE(document.longTitle(), path);
        QCOMPARE(document.shortTitle(), shortTitle);
        QCOMPARE(document.takeNotes(),
                 (QStringList{QString("titles %1|document").arg(path),
                              QString("titles %1|%2").arg(path, shortTitle), "not watched"}));
        // Nor is anything made, or looked for.
        QVERIFY(!QFile::exists(path));
    }

    void sameNameChangesNothing()
    {
        Document document;
        document.setFilename(pathOf("/a/plan.zvsch"));
        document.setLongTitle("long");
        document.setShortTitle("short");
        document.takeNotes();
        document.setFilename(pathOf("/a/plan.zvsch"));
        QVERIFY(document.takeNotes().isEmpty());
        QCOMPARE(document.longTitle(), QString("long"));
        QCOMPARE(document.shortTitle(), QString("short"));
        document.setFilename(ZvFilePath());
        QCOMPARE(document.takeNotes(), QStringList{"not watched"});
        QCOMPARE(document.longTitle(), QString());
        document.setFilename(ZvFilePath());
        QVERIFY(document.takeNotes().isEmpty());
    }

    void emptyNameOfANewDocumentChangesNothing()
    {
        Document document;
        document.setFilename(ZvFilePath());
        QVERIFY(document.takeNotes().isEmpty());
        QCOMPARE(document.longTitle(), QString("document"));
    }

    void names()
    {
        Document document;
        document.typeName = "  Test \t\n plan ";
        QCOMPARE(document.menuName(), QString("Test plan"));
        QCOMPARE(document.getMenuTitle(), QString("Test plan"));
        QCOMPARE(document.getViewContextName(), document.typeName);
        class Renamed : public Document
        {
        public:
            QString menuName() const override { return "other"; }
        };
        const Renamed renamed;
        QCOMPARE(renamed.getMenuTitle(), QString("other"));
        QCOMPARE(renamed.getViewContextName(), QString("Schematic"));
    }

    void closeAsksWithBothTexts_data()
    {
        QTest::addColumn<bool>("discards");
        QTest::newRow("discard") << true;
        QTest::newRow("cancel") << false;
    }

    void closeAsksWithBothTexts()
    {
        QFETCH(bool, discards);
        Document document;
        document.show();
        document.setModified(true);
        document.takeNotes();
        const BoxAnswer answer(discards ? QMessageBox::Discard : QMessageBox::Cancel);
        QCOMPARE(document.close(), discards);
        QCOMPARE(answer.answer.count, 1);
        QCOMPARE(answer.text, QString("text of index 0"));
        QCOMPARE(answer.details, QString("text of index 1"));
        QCOMPARE(document.isVisible(), !discards);
        QCOMPARE(document.takeNotes().mid(0, 2), (QStringList{"text 0", "text 1"}));
    }

    void closeOfWhatIsSavedAsksNothing()
    {
        Document document;
        document.show();
        const BoxAnswer answer(QMessageBox::Cancel);
        QVERIFY(document.close());
        QCOMPARE(answer.answer.count, 0);
        // The texts are asked for all the same.
        QCOMPARE(document.takeNotes().mid(0, 2), (QStringList{"text 0", "text 1"}));
    }

    void closeThroughTheFrameDoesNothing()
    {
        Document document;
        document.setModified(true);
        document.takeNotes();
        QCloseEvent event;
        event.setAccepted(false);
        Frame::close(document, event);
        QVERIFY(!event.isAccepted());
        event.setAccepted(true);
        Frame::close(document, event);
        QVERIFY(event.isAccepted());
        QVERIFY(document.takeNotes().isEmpty());
    }

    void outsideChangeIsReportedButNotTheOwn()
    {
        Document document;
        const QString file = m_dir.filePath("watched.zvsch");
        document.saveAs(pathOf(file));
        document.enableFileWatcher(true);
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        for (int i = 0; i < 3; ++i) {
            document.text += " and more";
            document.save();
            QTest::qWait(300);
        }
        QCOMPARE(changes.count(), 0);
        QVERIFY(writeTo(file, "somebody else's"));
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(changes.constFirst().constFirst().toBool(), true);
        document.reloadFile();
        QCOMPARE(document.text, QByteArray("somebody else's"));
        document.text = "own again";
        document.save();
        QTest::qWait(300);
        QCOMPARE(changes.count(), 1);
        QVERIFY(QFile::remove(file));
        QTRY_COMPARE(changes.count(), 2);
        QCOMPARE(changes.at(1).constFirst().toBool(), false);
    }

    void newNameEndsTheWatch()
    {
        Document document;
        const QString file = m_dir.filePath("old name.zvsch");
        document.saveAs(pathOf(file));
        document.enableFileWatcher(true);
        const QSignalSpy changes(&document, &DockableWidgetContents::fileChangedOutside);
        document.saveAs(pathOf(m_dir.filePath("new name.zvsch")));
        QVERIFY(!document.isFileWatcherEnabled());
        QVERIFY(writeTo(file, "x"));
        QVERIFY(writeTo(document.getFilename(), "x"));
        QTest::qWait(300);
        QCOMPARE(changes.count(), 0);
    }
};

QTEST_MAIN(tst_ZvContentWidget)

#include "tst_ZvContentWidget.moc"
