#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QTest>

#include <string>
#include <vector>

Q_DECLARE_METATYPE(std::string)

namespace QTest {

/// Standard strings show in failures, with what can't be printed as %XX.
template <>
inline char* toString(const std::string& text)
{
    return qstrdup(QByteArray::fromStdString(text)
                       .toPercentEncoding(" !\"#$&'()*+,/:;<=>?@[\\]^`{|}")
                       .constData());
}

template <>
inline char* toString(const std::vector<std::string>& texts)
{
    QByteArray list;
    for (const std::string& text : texts)
        list += (list.isEmpty() ? "\"" : ", \"") + QByteArray::fromStdString(text) + '"';
    return qstrdup(list.constData());
}

} // namespace QTest
