#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace workbench {

/// Shows what scripts print, in a fixed pitch, to be read and copied. Keeps the last 10,000 lines,
/// and scrolls to the end unless the user has scrolled up.
class OutputView : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// The kind of a text, which is shown by its colour.
    enum class Kind { Input, Output, Remark, Error };

    explicit OutputView(QWidget* parent = nullptr);

    /// Appends one or more lines.
    void append(const QString& lines, Kind kind = Kind::Output);
};

} // namespace workbench
