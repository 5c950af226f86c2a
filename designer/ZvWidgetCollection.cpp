#include "ZvWidgetCollection.h"

#include "FormLineEdit.h"

#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvResponsiveImage.h>
#include <zvutil/ZvSearchBar.h>

#include <QIcon>
#include <QPixmap>
#include <QString>

#include <utility>

namespace {

/// The description of one widget for Qt Designer.
class Widget : public QDesignerCustomWidgetInterface
{
public:
    using Factory = QWidget* (*)(QWidget* parent);

    Widget(const char* name, QString description, Factory factory)
        : m_name(QString::fromLatin1(name))
        , m_description(std::move(description))
        , m_factory(factory)
    {
    }

    QString name() const override { return m_name; }
    QString group() const override { return QStringLiteral("zvutil"); }
    QString toolTip() const override { return m_description; }
    QString whatsThis() const override { return m_description; }
    QString includeFile() const override { return QStringLiteral("zvutil/%1.h").arg(m_name); }
    QIcon icon() const override
    {
        // Designer's widget box takes an icon that names no sizes, as one of an SVG file doesn't, for none.
        const QIcon drawing(QStringLiteral(":/zvutil_designer/icons/%1.svg").arg(m_name));
        QIcon icon;
        for (const int size : {22, 44})
            icon.addPixmap(drawing.pixmap(size));
        return icon;
    }
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override { return m_factory(parent); }

private:
    QString m_name;
    QString m_description;
    Factory m_factory;
};

template <typename Made>
QWidget* make(QWidget* parent)
{
    return new Made(parent);
}

template <>
QWidget* make<ZvResponsiveImage>(QWidget* parent)
{
    // Designer starts with a picture, since an empty widget couldn't be found again on the form.
    return new ZvResponsiveImage(":/zvutil_designer/icons/ZvResponsiveImage.svg", parent);
}

template <typename Made>
std::unique_ptr<QDesignerCustomWidgetInterface> widget(const char* name, const QString& description)
{
    return std::make_unique<Widget>(name, description, &make<Made>);
}

} // namespace

ZvWidgetCollection::ZvWidgetCollection()
{
    m_widgets.push_back(widget<ZvProcessingIndicator>(
        "ZvProcessingIndicator", tr("A spinner that turns as long as it is visible")));
    m_widgets.push_back(widget<FormLineEdit>(
        "ZvProgressLineEdit", tr("A line edit whose background shows how far some work is")));
    m_widgets.push_back(widget<ZvResponsiveImage>(
        "ZvResponsiveImage",
        tr("A picture that fits itself into its room. Its constructor wants a picture: load the "
           "form at run time, or set one up in code of your own")));
    m_widgets.push_back(widget<ZvSearchBar>(
        "ZvSearchBar", tr("A line edit for a text to search for, with a spinner while it runs")));
}

ZvWidgetCollection::~ZvWidgetCollection() = default;

QList<QDesignerCustomWidgetInterface*> ZvWidgetCollection::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface*> widgets;
    for (const std::unique_ptr<QDesignerCustomWidgetInterface>& widget : m_widgets)
        widgets.append(widget.get());
    return widgets;
}
