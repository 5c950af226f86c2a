#pragma once

#include <QString>
#include <QWidget>

namespace workbench {

/// Where a user changes the value of one option.
class OptionEditor : public QWidget
{
    Q_OBJECT

public:
    /// The one that suits the option of this name, showing \p value.
    static OptionEditor* make(const QString& option, const QString& value);

    virtual QString value() const = 0;
    virtual void setValue(const QString& value) = 0;
    /// Why the value can't be taken, or nothing.
    virtual QString problem() const;

Q_SIGNALS:
    void changed();

protected:
    OptionEditor();
};

} // namespace workbench
