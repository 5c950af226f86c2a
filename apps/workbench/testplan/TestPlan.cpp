#include "testplan/TestPlan.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>

namespace workbench {

namespace {

constexpr int freshRows = 25;
constexpr int maxNumberLength = 400;

/// A decimal number without needless zeros at either end.
struct Decimal
{
    QString digits;
    int exponent; ///< power of ten of the last digit
};

Decimal decimalOf(const QString& number)
{
    const int e = number.indexOf(QLatin1Char('e'), 0, Qt::CaseInsensitive);
    QString digits = number.left(e);
    int exponent = e < 0 ? 0 : number.midRef(e + 1).toInt();
    digits.remove(QLatin1Char('-'));
    const int point = digits.indexOf(QLatin1Char('.'));
    if (point >= 0) {
        exponent -= digits.size() - point - 1;
        digits.remove(point, 1);
    }
    while (digits.startsWith(QLatin1Char('0')))
        digits.remove(0, 1);
    while (digits.endsWith(QLatin1Char('0'))) {
        digits.chop(1);
        ++exponent;
    }
    return {digits, digits.isEmpty() ? 0 : exponent};
}

bool isSameValue(const Decimal& a, const Decimal& b)
{
    return a.digits == b.digits && a.exponent == b.exponent;
}

bool looksLikeNumber(const QString& text)
{
    static const QRegularExpression number(
        QStringLiteral("\\A-?(?:0|[1-9][0-9]*)(?:\\.[0-9]+)?(?:[eE][+-]?[0-9]+)?\\z"));
    const QChar first = text.at(0);
    const bool mayBe =
        first == QLatin1Char('-') || (first >= QLatin1Char('0') && first <= QLatin1Char('9'));
    return mayBe && text.size() <= maxNumberLength && number.match(text).hasMatch();
}

QString numberText(double number)
{
    const double size = std::abs(number);
    if (size == 0) // Qt would drop the sign of -0.
        return std::signbit(number) ? QStringLiteral("-0") : QStringLiteral("0");
    const bool isPlain = size >= 1e-5 && size < 1e15;
    return QString::number(number, isPlain ? 'f' : 'e', QLocale::FloatingPointShortest);
}

} // namespace

TestPlan TestPlan::fresh()
{
    TestPlan plan;
    plan.headings = QStringList{tr("Step"),     tr("Instruction"), tr("Input"),  tr("Expected"),
                                tr("Measured"), tr("Verdict"),     tr("Comment")};
    plan.rows.resize(freshRows);
    return plan;
}

CellValue cellValue(QString text)
{
    text.remove(QChar());
    if (text.isEmpty())
        return {};
    if (!looksLikeNumber(text))
        return text;
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return text;
    return isSameValue(decimalOf(text), decimalOf(numberText(number))) ? CellValue(number)
                                                                       : CellValue(text);
}

QString cellText(const CellValue& value)
{
    return value.userType() == QMetaType::Double ? numberText(value.toDouble()) : value.toString();
}

QString cellName(int row, int column)
{
    QString letters;
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / 26)
        letters.prepend(QLatin1Char(static_cast<char>('A' + (rest - 1) % 26)));
    return letters + QString::number(row + 1);
}

} // namespace workbench
