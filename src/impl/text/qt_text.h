#pragma once

#include <QStringRef>

#include <string>

namespace zvutil::impl {

/// The same as `QString::toStdString`, without the texts between that this makes.
std::string utf8_text(const QStringRef& text);

} // namespace zvutil::impl
