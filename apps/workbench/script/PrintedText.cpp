#include "script/PrintedText.h"

#include "common/page_style.h"

namespace workbench {

namespace {

constexpr int tabWidth = 4;

QString withoutTabs(const QString& line)
{
    QString result;
    for (const QChar c : line) {
        if (c == QLatin1Char('\t'))
            result += QString(tabWidth - result.size() % tabWidth, QLatin1Char(' '));
        else
            result += c;
    }
    return result;
}

} // namespace

PrintedText::PrintedText(const QString& text)
    : m_lines(text.split(QLatin1Char('\n')))
{
}

int PrintedText::rowCount() const
{
    return m_lines.size();
}

int PrintedText::columnCount() const
{
    return 1;
}

QString PrintedText::text(int row, int /*column*/) const
{
    return withoutTabs(m_lines.at(row));
}

PrintedTable::Look PrintedText::look(int /*row*/, int /*column*/) const
{
    return Look::Plain;
}

bool PrintedText::isNumber(int /*row*/, int /*column*/) const
{
    return false;
}

bool PrintedText::isOneCell(int /*row*/) const
{
    return false;
}

QString PrintedText::heading(int /*column*/) const
{
    return {};
}

bool PrintedText::hasHeadings() const
{
    return false;
}

QFont PrintedText::font() const
{
    return QFont(fixedPitchFamily());
}

} // namespace workbench
