#include "shell/AboutDialog.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QLibraryInfo>
#include <QSysInfo>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int iconSize = 64;

/// Returns what a user is asked for who reports a defect.
QString versions()
{
    return AboutDialog::tr("Workbench %1\nQt %2 (built with %3)\n%4, %5")
        .arg(QStringLiteral(WORKBENCH_VERSION), QLatin1String(qVersion()),
             QStringLiteral(QT_VERSION_STR), QSysInfo::prettyProductName(),
             QSysInfo::currentCpuArchitecture());
}

QString licences()
{
    return AboutDialog::tr(
        "The workbench and its library: copyright 2026 the developers of libzvutil; all rights "
        "reserved.\n\n"
        "They use:\n"
        "Qt – GNU Lesser General Public License 3\n"
        "spdlog and fmt – MIT License\n"
        "The run-time libraries of the compiler – GNU General Public License 3 with the GCC "
        "Runtime Library Exception\n\n"
        "The texts of these licences are installed with the program.");
}

} // namespace

AboutDialog::AboutDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("About Workbench"));
    auto* const picture = new QLabel(this);
    picture->setPixmap(windowIcon().pixmap(iconSize));
    auto* const version = new QLabel(versions(), this);
    version->setObjectName(QStringLiteral("versions"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* const text = new QTextBrowser(this);
    text->setObjectName(QStringLiteral("licences"));
    text->setAccessibleName(tr("Licences"));
    text->setPlainText(licences());
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(picture);
    top->addWidget(version, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(text, 1);
    layout->addWidget(buttons);
    resize(460, 380);
}

} // namespace workbench
