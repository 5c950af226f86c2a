// What the style editor leaves behind when it is used for long. The leak sanitizer is the judge.

#include <zvutil/ZvStyleEditor.h>

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/LiveBlocks.h"
#include "support/StyleHost.h"

#include <QColor>
#include <QComboBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <stdexcept>

using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;

namespace {

#if defined(ZV_SANITIZED)
constexpr int rounds = 300;
#else
// Only the sanitizer sees a leak.
constexpr int rounds = 100;
#endif

} // namespace

/// The editors aren't shown, so that Qt needn't paint them, too.
class tst_ZvStyleEditor_leaks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        ZvStyleLibrary library;
        library.update(library.light().duplicate("Mine"));
        ZvStyleManager::SetLibrary(library);
    }

    void editsSwitchesAndCopies()
    {
        ZvStyleEditor editor;
        // Most of the time would go to restyling the samples.
        delete editor.findChild<QTabWidget*>()->widget(0);
        auto* const combo = editor.findChild<QComboBox*>();
        QAbstractItemModel* const model = editor.findChild<QTreeView*>()->model();
        for (int i = 0; i < rounds; ++i) {
            combo->setCurrentIndex(i % 3);
            const QColor colour(i % 256, 0, 0);
            const QModelIndex brushes = model->index(0, 0);
            const QModelIndex testplan = model->index(0, 0, model->index(2, 0));
            const QModelIndex index =
                i % 2 == 0 ? model->index(i % 27, 0, brushes) : model->index(i % 8, 0, testplan);
            QVERIFY(model->setData(index, colour, Qt::DecorationRole));
            QCOMPARE(index.data(Qt::DecorationRole).value<QColor>(), colour);
            if (i % 100 == 0)
                editor.findChild<QPushButton*>()->click();
        }
        QCOMPARE(combo->count(), 3 + rounds / 100);
    }

    void editors()
    {
        for (int i = 0; i < rounds; ++i) {
            const ZvStyleEditor editor;
            QCOMPARE(editor.findChild<QTabWidget*>()->count(), 1);
        }
    }

    void factoryThatThrows()
    {
        if (!zvtest::countsBlocksOf([] { return ZvStyleLibrary(); }))
            QSKIP("An operator new that is replaced in a program doesn't reach its DLLs");
        auto& entry = ZvStyleEditor::RegisterPreviewWidget(
            "Thrower", [](const ZvStyleEditor*) -> QWidget* { throw std::runtime_error("no"); });
        const auto end = qScopeGuard([&entry] { entry = nullptr; });
        const auto fail = [] { ZvStyleEditor editor; };
        // The first ones fill what Qt keeps.
        for (int i = 0; i < 3; ++i)
            QVERIFY_EXCEPTION_THROWN(fail(), std::runtime_error);
        const int before = zvtest::liveBlocks;
        for (int i = 0; i < 10; ++i)
            QVERIFY_EXCEPTION_THROWN(fail(), std::runtime_error);
        QCOMPARE(zvtest::liveBlocks.load(), before);
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_ZvStyleEditor_leaks)
#include "tst_ZvStyleEditor_leaks.moc"
