// The text of numbers in a table's text, which is made without Qt and has to equal Qt's.

#include "impl/tables/number_text.h"

#include <QString>
#include <QTest>
#include <QVariant>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

/// Returns an empty text for a value that isn't written as a number.
QString written(const QVariant& value)
{
    char text[zvutil::impl::max_number_text];
    const char* const end = zvutil::impl::write_number(text, value);
    return end ? QString::fromLatin1(text, int(end - text)) : QString();
}

/// Returns whether \p value is written as Qt writes it.
bool isSame(const QVariant& value)
{
    const QString text = written(value);
    if (text == value.toString())
        return true;
    qWarning("%s is written as %s", qPrintable(value.toString()), qPrintable(text));
    return false;
}

double numberOf(quint64 bits)
{
    double number = 0;
    static_assert(sizeof number == sizeof bits);
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

template <typename Integer>
bool areEdgesSame()
{
    using Limits = std::numeric_limits<Integer>;
    for (const Integer edge : {Limits::min(), Limits::max(), Integer(0), Integer(1), Integer(-1)}) {
        for (const Integer number :
             {edge, Integer(quint64(edge) + 1), Integer(quint64(edge) - 1)}) {
            if (!isSame(QVariant::fromValue(number)))
                return false;
        }
    }
    return true;
}

} // namespace

class tst_number_text : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void integersOfAllSizes()
    {
        QVERIFY(areEdgesSame<int>());
        QVERIFY(areEdgesSame<uint>());
        QVERIFY(areEdgesSame<qlonglong>());
        QVERIFY(areEdgesSame<qulonglong>());
        for (quint64 power = 1, last = 0; power > last; last = power, power *= 10) {
            for (const quint64 number : {power - 1, power, power + 1}) {
                QVERIFY(isSame(QVariant(qulonglong(number))));
                QVERIFY(isSame(QVariant(-qlonglong(number))));
                QVERIFY(isSame(QVariant(int(number))));
                QVERIFY(isSame(QVariant(uint(number))));
            }
        }
    }

    void doublesOfEachExponent()
    {
        constexpr quint64 mantissas = quint64(1) << 52;
        std::mt19937_64 random(1); // the same numbers each time
        for (quint64 exponent = 0; exponent < 4096; ++exponent) { // with both signs
            const quint64 begin = exponent * mantissas;
            for (const quint64 edge : {quint64(0), quint64(1), mantissas / 2, mantissas - 1})
                QVERIFY(isSame(numberOf(begin + edge)));
            for (int i = 0; i < 50; ++i)
                QVERIFY(isSame(numberOf(begin + random() % mantissas)));
        }
    }

    void doublesOfFewDigits()
    {
        for (int exponent = -25; exponent <= 25; ++exponent) {
            for (int digits = 1; digits < 2000; ++digits) {
                const double number = digits * std::pow(10.0, exponent);
                QVERIFY(isSame(number));
                QVERIFY(isSame(-number));
            }
        }
    }

    void otherTypesAreLeft()
    {
        for (const QVariant& value : {QVariant(), QVariant("1"), QVariant(true), QVariant(1.5F),
                                      QVariant::fromValue(short(1)), QVariant(QChar('1'))})
            QCOMPARE(written(value), QString());
    }
};

QTEST_GUILESS_MAIN(tst_number_text)

#include "tst_number_text.moc"
