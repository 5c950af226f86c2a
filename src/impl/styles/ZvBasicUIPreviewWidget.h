#pragma once

#include <QWidget>

namespace libzvutil {

/// Sample controls, each in the states that style sheets tell apart.
class ZvBasicUIPreviewWidget : public QWidget
{
public:
    explicit ZvBasicUIPreviewWidget(QWidget* parent);
    ~ZvBasicUIPreviewWidget() override;
};

} // namespace libzvutil
