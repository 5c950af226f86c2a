#include "documents/FileNameDialog.h"

#include <zvutil/ZvFilenameValidator.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace workbench {

namespace {

bool isDevice(const QString& name)
{
    // Windows ignores an extension or blanks after the name of a device.
    static const QRegularExpression devices(
        QStringLiteral("\\A(con|prn|aux|nul|conin\\$|conout\\$|(com|lpt)[1-9¹²³]) *(\\.|\\z)"),
        QRegularExpression::CaseInsensitiveOption);
    return devices.match(name).hasMatch();
}

bool isTaken(const QString& name, const QDir& folder, const QString& present)
{
    const QFileInfo file(folder, name);
    if (!file.exists() && !file.isSymLink())
        return false;
    // A disk that ignores case lets a file get its own name in another case.
    const bool isOtherCase = name != present && name.compare(present, Qt::CaseInsensitive) == 0;
    return !isOtherCase
        || folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System).contains(name);
}

bool isTooLongForDisk([[maybe_unused]] const QString& name)
{
#ifdef Q_OS_UNIX
    constexpr int maxBytes = 255;
    return QFile::encodeName(name).size() > maxBytes;
#else
    return false;
#endif
}

QString bannedCharacters()
{
    return FileNameDialog::tr("A name has at most 255 characters, and none of < > : \" / \\ | ? *");
}

} // namespace

FileNameDialog::FileNameDialog(QWidget* parent, const QString& title, const QString& folder,
                               const QString& proposal, const QString& extension)
    : QDialog(parent)
    , m_folder(folder)
    , m_proposal(proposal)
    , m_extension(extension)
    , m_name(new QLineEdit(proposal))
    , m_problem(new QLabel)
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* const label = new QLabel(tr("&Name in %1:").arg(QDir::toNativeSeparators(folder)));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setBuddy(m_name);
    m_name->setObjectName(QStringLiteral("name"));
    m_name->setValidator(new ZvFilenameValidator(m_name));
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    // Two lines are reserved, or the window would change its height with each message.
    m_problem->setMinimumHeight(2 * m_problem->fontMetrics().lineSpacing());
    m_problem->setAlignment(Qt::AlignLeading | Qt::AlignTop);

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_name);
    layout->addWidget(m_problem);
    layout->addStretch();
    layout->addWidget(m_buttons);
    setMinimumWidth(420);

    connect(m_name, &QLineEdit::textChanged, this, &FileNameDialog::judge);
    connect(m_name, &QLineEdit::inputRejected, this, [this] { tellProblem(bannedCharacters()); });
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    judge();
    const int stem = QFileInfo(proposal).completeBaseName().size();
    m_name->setSelection(0, stem > 0 ? stem : proposal.size());
    m_name->setFocus();
}

QString FileNameDialog::file() const
{
    return QDir(m_folder).filePath(m_name->text());
}

QString FileNameDialog::ask(QWidget* parent, const QString& title, const QString& folder,
                            const QString& proposal, const QString& extension)
{
    // The parent, and the dialog with it, may be destroyed while the user thinks.
    const QPointer<FileNameDialog> dialog(
        new FileNameDialog(parent, title, folder, proposal, extension));
    const bool isAccepted = dialog->exec() == QDialog::Accepted && dialog;
    QString file = isAccepted ? dialog->file() : QString();
    delete dialog;
    return file;
}

QString FileNameDialog::problemWithText(const QString& name)
{
    QString text = name;
    int position = 0;
    const QValidator::State state = ZvFilenameValidator().validate(text, position);
    if (state == QValidator::Intermediate)
        return tr("Type a name.");
    if (state == QValidator::Invalid)
        return bannedCharacters();
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        return tr("A name can't end with a dot or a space.");
    if (isDevice(name))
        return tr("“%1” is a reserved device name. Choose another name.").arg(name);
    if (isTooLongForDisk(name))
        return tr("The name is too long for this disk.");
    return {};
}

QString FileNameDialog::problemWith(const QString& name, const QString& folder,
                                    const QString& present)
{
    QString problem = problemWithText(name);
    if (!problem.isEmpty())
        return problem;
    if (isTaken(name, QDir(folder), present))
        return tr("“%1” already exists in this folder.").arg(name);
    return {};
}

void FileNameDialog::judge()
{
    QString problem = problemWith(m_name->text(), m_folder, m_proposal);
    if (problem.isEmpty() && !m_name->text().endsWith(m_extension, Qt::CaseInsensitive))
        problem = tr("The name must end with “%1”.").arg(m_extension);
    tellProblem(problem);
    const bool isGood = m_problem->text().isEmpty();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(isGood);
}

void FileNameDialog::tellProblem(const QString& problem)
{
    m_problem->setText(problem);
    m_name->setAccessibleDescription(problem);
}

} // namespace workbench
