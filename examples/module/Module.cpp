// A module of the host: a script function, a command, an option and a tab of the style editor.

#include "preferred_values.h"

#include <zvutil/ZvStyleEditor.h>

#include <HostSupport/ComConstruct.h>
#include <HostSupport/FuncConstruct.h>
#include <HostSupport/MakeOption.h>
#include <HostSupport/Options.h>
#include <HostSupport/YString.h>

#include <QHeaderView>
#include <QString>
#include <QTableWidget>

#include <cmath>
#include <string>
#include <vector>

namespace {

// The option: what users set in the options dialog, or scripts with SetOption.
const MakeOption seriesOption(__FILE__, __LINE__, "ResistorSeries", "E24", OPTION_DEFAULT_CACHING,
                              false);

std::string chosenSeries()
{
    YString series;
    sp_ReadOptionsInfo("ResistorSeries", &series, "E24");
    return series.c_str();
}

void report(const YRef<MessageHandler>& messages, const std::string& text)
{
    if (messages)
        messages->message(text.c_str());
}

// The function: NearestResistor(ohms, "E12") returns the text of the nearest preferred value.
FUNC_ERROR nearestResistor(const FuncArgsMinimal& args, FuncResultMinimal* result,
                           YRef<MessageHandler> messages)
{
    const double ohms = *static_cast<const double*>(args.value(0));
    const std::string series = *static_cast<const char* const*>(args.value(1));
    const std::vector<double> values = preferredValues(series);
    if (values.empty() || !std::isfinite(ohms) || ohms <= 0) {
        report(messages,
               values.empty() ? "There is no series " + series : "The resistance must be positive");
        return FUNC_FAILED;
    }
    YString text;
    text = QString::number(nearestValue(ohms, values)).toUtf8().constData();
    // The host owns the buffer from here on.
    *result->allotStrings(1) = text.detach();
    return FUNC_OK;
}

constexpr argType arguments[] = {ARG_NUMBER, ARG_STRING};
const FuncConstruct nearestResistorFunction("NearestResistor", arguments, 2, 1, &nearestResistor);

// The command: resistors() prints the values of the series that the option names, resistors("E6") those
// of E6.
COMERROR printSeries(int wordCount, char** words, YRef<MessageHandler> messages,
                     const ScpParseContext& /*context*/)
{
    const std::string series = wordCount > 1 ? words[1] : chosenSeries();
    std::string text = series + ':';
    for (const double value : preferredValues(series))
        text += ' ' + QString::number(value, 'f', 1).toStdString();
    const bool isKnown = text.back() != ':';
    report(messages, isKnown ? text : "There is no series " + series);
    return isKnown ? COM_OK : COM_FAILED;
}

const ComConstruct resistorsCommand("resistors", &printSeries, 0);

// The tab: a control of the module, which the style editor shows in the style that is being edited.
QWidget* makePreview(const libzvutil::ZvStyleEditor* /*editor*/)
{
    const std::vector<double> values = preferredValues("E6");
    auto* const table = new QTableWidget(static_cast<int>(values.size()), 1);
    table->setHorizontalHeaderLabels({QStringLiteral("E6")});
    table->horizontalHeader()->setStretchLastSection(true);
    int row = 0;
    for (const double value : values)
        table->setItem(row++, 0, new QTableWidgetItem(QString::number(value, 'f', 1)));
    return table;
}

// The reference stays valid for good, but this module has no use for it.
[[maybe_unused]] const auto& previewFactory =
    libzvutil::ZvStyleEditor::RegisterPreviewWidget("Resistors", &makePreview);

} // namespace
