#include "shell/ViewMenu.h"

#include "common/style_options.h"
#include "shell/AccentSwatches.h"

#include <DockFramework/DockableWidget.h>

#include <HostSupport/host.h>

#include <zvutil/ZvStyleManager.h>

#include <QActionGroup>
#include <QWidgetAction>

#include <array>
#include <exception>

namespace workbench {

namespace {

struct Command
{
    const char* name;
    const char* text;
};

constexpr std::array commands = {
    Command{"_s1", QT_TRANSLATE_NOOP("workbench::ViewMenu", "&Dark Look for Now")},
    Command{"_s2", QT_TRANSLATE_NOOP("workbench::ViewMenu", "&Light Look for Now")},
    Command{"_se", QT_TRANSLATE_NOOP("workbench::ViewMenu", "Style &Editor")},
    Command{"_modifystyle", QT_TRANSLATE_NOOP("workbench::ViewMenu", "Style Sheet &Additions")},
    Command{"_s3", QT_TRANSLATE_NOOP("workbench::ViewMenu", "Style as a &Tree")},
};

} // namespace

ViewMenu::ViewMenu(const QList<DockableWidget*>& panels, QWidget* parent)
    : QMenu(tr("&View"), parent)
{
    for (const DockableWidget* const panel : panels)
        addAction(panel->toggleViewAction());
    addSeparator();
    m_styles = addMenu(tr("&Style"));
    m_styles->setObjectName(QStringLiteral("styles"));
    connect(m_styles, &QMenu::aboutToShow, this, &ViewMenu::fillStyles);
    fillStyles();
    addAccents();
    addSeparator();
    addCommands();
    addSeparator();
    QAction* const options = addAction(tr("&Options…"));
    options->setObjectName(QStringLiteral("options"));
    connect(options, &QAction::triggered, this, &ViewMenu::optionsRequested);
}

ViewMenu::~ViewMenu() = default;

void ViewMenu::fillStyles()
{
    const QString current = currentStyleName();
    // The previous group destroys its actions along with itself.
    m_styleChoice = std::make_unique<QActionGroup>(m_styles);
    for (const QString& name : libzvutil::ZvStyleManager::AvailableStyleNames()) {
        QAction* const action =
            m_styleChoice->addAction(QString(name).replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setObjectName(QStringLiteral("style:") + name);
        action->setCheckable(true);
        action->setChecked(name.compare(current, Qt::CaseInsensitive) == 0);
        connect(action, &QAction::triggered, this,
                [this, name] { keep([name] { chooseStyle(name); }); });
    }
    m_styles->addActions(m_styleChoice->actions());
}

void ViewMenu::addAccents()
{
    QMenu* const menu = addMenu(tr("&Accent"));
    menu->setObjectName(QStringLiteral("accents"));
    auto* const swatches = new AccentSwatches(menu);
    auto* const action = new QWidgetAction(menu);
    action->setDefaultWidget(swatches);
    menu->addAction(action);
    connect(menu, &QMenu::aboutToShow, swatches,
            [swatches] { swatches->setCurrent(chosenAccent()); });
    connect(swatches, &AccentSwatches::chosen, this, [this, menu](const QColor& colour) {
        menu->close();
        close();
        keep([colour] { chooseAccent(colour); });
    });
}

void ViewMenu::addCommands()
{
    for (const Command& command : commands) {
        QAction* const action = addAction(tr(command.text));
        action->setObjectName(QLatin1String(command.name));
        connect(action, &QAction::triggered, this, [this, name = command.name] { call(name); });
    }
}

void ViewMenu::call(const char* command)
{
    try {
        host::callCommand(command, {}, {}, {"Workbench", 0});
    } catch (const std::exception& error) {
        Q_EMIT failed({tr("The command “%1” failed.").arg(QLatin1String(command)),
                       QString::fromUtf8(error.what()), tr("Try again, or restart the program.")});
    }
}

void ViewMenu::keep(const std::function<void()>& choice)
{
    try {
        choice();
    } catch (const std::exception& error) {
        Q_EMIT failed({tr("Your choice won't be remembered at the next start."),
                       QString::fromUtf8(error.what()),
                       tr("Check that “%1” can be written.")
                           .arg(QString::fromStdString(host::optionsFile()))});
    }
}

} // namespace workbench
