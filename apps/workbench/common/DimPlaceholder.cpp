#include "common/DimPlaceholder.h"

#include "common/style_options.h"

#include <QEvent>
#include <QLineEdit>
#include <QPalette>

namespace workbench {

DimPlaceholder::DimPlaceholder(QLineEdit* edit)
    : QObject(edit)
    , m_edit(*edit)
{
    edit->installEventFilter(this);
    dim();
}

bool DimPlaceholder::eventFilter(QObject* watched, QEvent* event)
{
    // The style sheet overwrites the palette before either of these events, so set the colour
    // again.
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::Show)
        dim();
    return QObject::eventFilter(watched, event);
}

void DimPlaceholder::dim() const
{
    QPalette palette = m_edit.palette();
    palette.setColor(QPalette::PlaceholderText,
                     pageTextColour(styleColour(libzvutil::ZvStyleBrush::TextDisabled)));
    m_edit.setPalette(palette);
}

} // namespace workbench
