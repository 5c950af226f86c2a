#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace workbench {

/// What scripts print: text in a fixed pitch that can be read and copied. It keeps the last 10,000
/// lines, and follows its end unless the user has scrolled up.
class OutputView : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// What a text is, which is told by its colour.
    enum class Kind { Input, Output, Remark, Error };

    explicit OutputView(QWidget* parent = nullptr);

    /// Appends one or more lines.
    void append(const QString& lines, Kind kind = Kind::Output);
};

} // namespace workbench
