#pragma once

#include <QString>
#include <QWidget>

namespace workbench {

/// Edits the value of one option.
class OptionEditor : public QWidget
{
    Q_OBJECT

public:
    /// Creates the editor that suits the option \p option, showing \p value. The caller owns it.
    static OptionEditor* make(const QString& option, const QString& value);

    virtual QString value() const = 0;
    virtual void setValue(const QString& value) = 0;
    /// Returns why the value can't be used, or an empty text.
    virtual QString problem() const;

Q_SIGNALS:
    void changed();

protected:
    OptionEditor();
};

} // namespace workbench
