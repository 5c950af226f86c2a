#pragma once

#include <zvutil/ZvProgressLineEdit.h>

/// The progress line edit on a form in Qt Designer, with a meta-object that has the name of its class.
///
/// `ZvProgressLineEdit` has none of its own, so Designer would take it for a `QLineEdit` and write it
/// into the form as one.
class FormLineEdit : public ZvProgressLineEdit
{
public:
    using ZvProgressLineEdit::ZvProgressLineEdit;

    const QMetaObject* metaObject() const override;
};
