#include <zvutil/ZvFilenameValidator.h>

#include <QRegularExpression>
#include <QString>

ZvFilenameValidator::ZvFilenameValidator(QObject* parent)
    : ZvFilenameValidator(256, parent)
{
}

ZvFilenameValidator::ZvFilenameValidator(std::size_t maximumLength, QObject* parent)
    : QRegularExpressionValidator(
        QRegularExpression(QStringLiteral(R"re(^[^<>:"/\\|?*\x00-\x1f]+$)re")), parent)
    , m_maximumLength(maximumLength)
{
}

ZvFilenameValidator::~ZvFilenameValidator() = default;

QValidator::State ZvFilenameValidator::validate(QString& input, int& position) const
{
    // By contract: validate() rejects a name that is as long as the limit. The limit is the length
    // at which input turns invalid.
    if (static_cast<std::size_t>(input.size()) >= m_maximumLength)
        return Invalid;
    // Pass a copy: the base class moves the position to the end of an invalid text.
    int scratch = position;
    const State state = QRegularExpressionValidator::validate(input, scratch);
    // A `$` also matches before a final line break, and the base class reports that text as
    // unfinished.
    return state == Intermediate && !input.isEmpty() ? Invalid : state;
}
