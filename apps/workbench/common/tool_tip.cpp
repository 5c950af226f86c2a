#include "common/tool_tip.h"

#include <QTextDocument>

namespace workbench {

QString toolTipOf(const QString& text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace workbench
