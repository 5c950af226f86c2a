#pragma once

#include <QWidget>

namespace libzvutil {

/// Shows sample controls, each in the states that style sheets distinguish.
class ZvBasicUIPreviewWidget : public QWidget
{
public:
    explicit ZvBasicUIPreviewWidget(QWidget* parent);
    ~ZvBasicUIPreviewWidget() override;
};

} // namespace libzvutil
