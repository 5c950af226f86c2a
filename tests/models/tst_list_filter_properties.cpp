#include "support/FilterResult.h"
#include "support/rapidcheck.h"

#include "impl/models/TextBackgroundListFilter.h"

#include <QCoreApplication>
#include <QRegExp>
#include <QStringListModel>
#include <QTest>

#include <string>
#include <utility>
#include <vector>

namespace {

using zvtest::FilterResult;

QString textOf(const std::string& text)
{
    return QString::fromStdString(text);
}

/// Over few characters, so that much is found, among them all that have a meaning.
rc::Gen<std::string> text()
{
    return rc::gen::container<std::string>(rc::gen::weightedElement<char>({{4, 'a'},
                                                                           {4, 'b'},
                                                                           {2, '*'},
                                                                           {2, '?'},
                                                                           {1, '['},
                                                                           {1, ']'},
                                                                           {2, '\\'},
                                                                           {1, '^'},
                                                                           {1, '-'}}));
}

rc::Gen<std::string> rowText()
{
    return rc::gen::container<std::string>(rc::gen::weightedElement<char>(
        {{6, 'a'}, {6, 'b'}, {2, '\\'}, {1, '*'}, {1, ']'}, {1, '-'}}));
}

QList<int> expectedRows(const QStringListModel& source, const QString& text)
{
    const QRegExp pattern(u'*' + text + u'*', Qt::CaseSensitive, QRegExp::Wildcard);
    const QStringList rows = source.stringList();
    QList<int> expected;
    for (int row = 0; row < rows.size(); ++row) {
        if (pattern.exactMatch(rows[row]))
            expected.append(row);
    }
    return expected;
}

/// A filter over a list, and all that may happen to both.
class Scene
{
public:
    Scene() { m_filter.setSourceModel(&m_source); }

    void apply(int command, const std::string& argument)
    {
        const QString text = textOf(argument);
        const int rows = m_source.rowCount();
        const int row = rows > 0 ? static_cast<int>(argument.size()) % rows : 0;
        switch (command) {
        case 0:
            m_filter.setSearchString(text);
            m_text = text;
            break;
        case 1:
            m_source.insertRows(row, 3);
            m_source.setData(m_source.index(row, 0), text);
            break;
        case 2:
            m_source.removeRows(row, 1);
            break;
        case 3:
            if (rows > 0)
                m_source.setData(m_source.index(row, 0), text);
            break;
        case 4:
            m_source.moveRow({}, row, {}, 0);
            break;
        case 5:
            m_source.setStringList({text, text, "ab"});
            break;
        case 6:
            m_filter.setPaused(argument.size() % 2 == 0);
            break;
        case 7:
            m_filter.setSourceModel(argument.size() % 4 == 0 ? nullptr : &m_source);
            break;
        default:
            QCoreApplication::processEvents();
            break;
        }
    }

    /// Has a command run when events are next handled, so within a pass if there is one.
    void post(int command, const std::string& argument)
    {
        QMetaObject::invokeMethod(
            &m_filter, [this, command, argument] { apply(command, argument); },
            Qt::QueuedConnection);
    }

    bool endsWithWhatMatches()
    {
        QCoreApplication::processEvents();
        m_filter.setSourceModel(&m_source);
        m_filter.setPaused(false);
        // What was cut off is begun again only for a reason.
        m_filter.setSearchString(m_text);
        return m_result.settles() && m_result.rows == expectedRows(m_source, m_text)
            && !m_filter.isSourceDirty();
    }

private:
    QStringListModel m_source{{"aa", "ab", "b\\"}};
    TextBackgroundListFilter m_filter{1, nullptr};
    FilterResult m_result{m_filter};
    QString m_text;
};

} // namespace

class tst_list_filter_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }

    void cleanupTestCase() { qInstallMessageHandler(nullptr); }

    void acceptsWhatThePatternMatches()
    {
        QVERIFY(rc::check("the rows are those of the pattern", [] {
            const auto search = *text();
            const auto rows = *rc::gen::container<std::vector<std::string>>(rowText());
            QStringList list;
            for (const std::string& row : rows)
                list.append(textOf(row));
            QStringListModel source(list);
            TextBackgroundListFilter filter(1, nullptr);
            const FilterResult result(filter);
            filter.setSourceModel(&source);
            filter.setSearchString(textOf(search));
            QList<int> accepted;
            for (int row = 0; row < source.rowCount(); ++row) {
                if (filter.acceptsRow(row))
                    accepted.append(row);
            }
            RC_ASSERT(accepted == expectedRows(source, textOf(search)));
        }));
    }

    void anythingAtAnyMomentEndsWithWhatMatches()
    {
        using Command = std::tuple<bool, int, std::string>;
        QVERIFY(rc::check("all that matches the last text", [] {
            const auto commands = *rc::gen::container<std::vector<Command>>(
                rc::gen::tuple(rc::gen::arbitrary<bool>(), rc::gen::inRange(0, 9), rowText()));
            Scene scene;
            for (const auto& [isPosted, command, argument] : commands) {
                if (isPosted)
                    scene.post(command, argument);
                else
                    scene.apply(command, argument);
            }
            RC_ASSERT(scene.endsWithWhatMatches());
        }));
    }
};

QTEST_GUILESS_MAIN(tst_list_filter_properties)
#include "tst_list_filter_properties.moc"
