#pragma once

#include <QStringRef>

#include <string>

namespace zvutil::impl {

/// Equals `QString::toStdString`, without its intermediate texts.
std::string utf8_text(const QStringRef& text);

} // namespace zvutil::impl
