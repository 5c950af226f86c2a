// The style system against the bare work behind it: generating a sheet against the 32 replacements, loading
// the built-in library against walking its XML, and a refresh of a window of 500 widgets against setting the
// same text.

#include "impl/styles/variable_substitution.h"
#include "support/StyleVariables.h"

#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include <HostSupport/host.h>

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using libzvutil::impl::variable;

namespace {

/// An application with a user of its own and a window of 500 widgets.
class Desktop
{
public:
    static Desktop& instance()
    {
        static Desktop desktop;
        return desktop;
    }

    QWidget& window() { return m_window; }

private:
    Desktop()
        : m_application(m_argc, m_argv)
    {
        host::setPathSymbol("ZVAPPDATAPATH", m_dir.path().toStdString());
        host::setOptionsFile(m_dir.filePath(QStringLiteral("options.ini")).toStdString());
        auto* const grid = new QGridLayout(&m_window);
        for (int i = 0; i < 500; ++i) {
            QWidget* widget = nullptr;
            if (i % 3 == 0)
                widget = new QPushButton(QStringLiteral("Label"));
            else if (i % 3 == 1)
                widget = new QLineEdit(QStringLiteral("Label"));
            else
                widget = new QCheckBox(QStringLiteral("Label"));
            grid->addWidget(widget, i / 20, i % 20);
        }
        m_window.show();
    }

    int m_argc = 1;
    char m_name[6] = "bench";
    char* m_argv[2] = {m_name, nullptr};
    QTemporaryDir m_dir;
    QApplication m_application;
    QWidget m_window;
};

QString templateText()
{
    QFile file(ZvStyle::TemplateResourcePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The variables with values like those of a style.
std::vector<variable> variables()
{
    std::vector<variable> result;
    for (const char* name : zvtest::styleVariables) {
        const bool isIcon = zvtest::isIconVariable(name);
        result.push_back({QLatin1String(name),
                          isIcon ? QStringLiteral(":/libzvutil/style/tick-black.svg")
                                 : QStringLiteral("#ff2d7d9a")});
    }
    return result;
}

template <typename Work>
void contend(const char* name, Work work)
{
    benchmark::RegisterBenchmark(name, [work](benchmark::State& state) {
        Desktop::instance();
        for (auto _ : state) {
            auto result = work();
            benchmark::DoNotOptimize(result);
        }
    });
}

void registerGenerate()
{
    contend("generate the sheet/32 replacements", [list = variables()] {
        static const QString text = templateText();
        QString sheet = text;
        for (const variable& v : list)
            sheet.replace(v.name, v.value, Qt::CaseSensitive);
        return sheet;
    });
    contend("generate the sheet/floor", [] {
        static const QString text = templateText();
        return QString(text.constData(), text.size());
    });
    contend("generate the sheet/library", [list = variables()] {
        static const QString text = templateText();
        return libzvutil::impl::substitute_variables(text, list);
    });
}

void registerLoad()
{
    contend("load the library/floor", [] {
        QFile file(QStringLiteral(":/libzvutil/style/library.xml"));
        std::size_t bytes = 0;
        if (!file.open(QIODevice::ReadOnly))
            return bytes;
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement)
                continue;
            bytes += reader.name().toUtf8().toStdString().size();
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                bytes += attribute.name().toUtf8().toStdString().size()
                    + attribute.value().toUtf8().toStdString().size();
        }
        return bytes;
    });
    contend("load the library/library", [] { return ZvStyleLibrary().names().size(); });
    contend("load the library/two options read",
            [] { return ZvStyle("a").name().size() + ZvStyle("b").name().size(); });
}

void registerRefresh()
{
    contend("refresh 500 widgets/floor", [] {
        qApp->setStyleSheet(qApp->styleSheet());
        return true;
    });
    contend("refresh 500 widgets/library", [] {
        ZvStyleManager::Refresh();
        return true;
    });
}

const bool registered = [] {
    registerGenerate();
    registerLoad();
    registerRefresh();
    return true;
}();

} // namespace
