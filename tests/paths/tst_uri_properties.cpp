#include "support/UriOracle.h"
#include "support/rapidcheck.h"

#include <QTest>

#include <numeric>
#include <string>
#include <utility>
#include <vector>

using namespace std::string_literals;

namespace {

/// Texts that are rich in what the split looks at.
rc::Gen<std::string> uriText()
{
    const auto start =
        rc::gen::element("", "file:", "http://", "https://", "http:\\\\", "file:///");
    const auto piece = rc::gen::element("file:"s, "http:"s, "https:"s, "FILE:"s, "file"s, "srv"s,
                                        "//"s, "\\\\"s, "/"s, ":"s, "@"s, "?"s, "#"s, "\\"s, " "s,
                                        "%"s, "%20"s, "0"s, "9"s, "42"s, "a"s, "Z"s, "."s, "\0"s,
                                        "\x80"s, "\xFF"s, "\xC3\xA4"s, "\xC3"s, "\n"s, "\t"s);
    return rc::gen::map(rc::gen::pair(start, rc::gen::container<std::vector<std::string>>(piece)),
                        [](const std::pair<const char*, std::vector<std::string>>& parts) {
                            return std::accumulate(parts.second.begin(), parts.second.end(),
                                                   std::string(parts.first));
                        });
}

} // namespace

class tst_uri_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsTheExpression()
    {
        // 100 runs of 1,000 texts each.
        QVERIFY(rc::check("the split is that of the expression", [] {
            const auto texts = *rc::gen::container<std::vector<std::string>>(1'000, uriText());
            for (const std::string& text : texts)
                RC_ASSERT(zvtest::disagreement(text) == QByteArray());
        }));
    }

    void secondParseChangesNothing()
    {
        QVERIFY(rc::check("parsing the text again gives the same", [] {
            const zvutil::uri once(*uriText());
            RC_ASSERT(zvtest::splitOf(zvutil::uri(once.text())) == zvtest::splitOf(once));
        }));
    }
};

QTEST_APPLESS_MAIN(tst_uri_properties)
#include "tst_uri_properties.moc"
