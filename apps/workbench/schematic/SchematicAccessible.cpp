#include "schematic/SchematicAccessible.h"

#include "schematic/GridItem.h"
#include "schematic/SchematicScene.h"
#include "schematic/SchematicView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <memory>

namespace workbench {

namespace {

QString nameOf(const Symbol& symbol)
{
    const QString name = QStringLiteral("%1 %2").arg(kindName(symbol.kind), symbol.reference);
    return symbol.value.isEmpty() ? name : QStringLiteral("%1, %2").arg(name, symbol.value);
}

QString nameOf(const Wire& wire)
{
    const QPoint& first = wire.points.first();
    const QPoint& last = wire.points.last();
    return SchematicView::tr("Wire from (%1, %2) to (%3, %4)")
        .arg(first.x())
        .arg(first.y())
        .arg(last.x())
        .arg(last.y());
}

/// Returns the name of the symbol or wire \p id, or an empty text if it is no longer there.
QString nameOf(const Schematic& schematic, int id)
{
    const auto isWanted = [id](const auto& element) { return element.id == id; };
    const auto symbol =
        std::find_if(schematic.symbols.cbegin(), schematic.symbols.cend(), isWanted);
    if (symbol != schematic.symbols.cend())
        return nameOf(*symbol);
    const auto wire = std::find_if(schematic.wires.cbegin(), schematic.wires.cend(), isWanted);
    return wire == schematic.wires.cend() ? QString() : nameOf(*wire);
}

/// A symbol or a wire, as screen readers find it.
class ElementAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    ElementAccessible(SchematicView& view, int id)
        : m_view(&view)
        , m_id(id)
    {
    }

    int id() const { return m_id; }

    bool isValid() const override { return item() != nullptr; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_view ? m_view->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_view);
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Graphic; }

    QString text(QAccessible::Text kind) const override
    {
        const bool isName = kind == QAccessible::Name && m_view;
        return isName ? nameOf(m_view->schematicScene().schematic(), m_id) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override { }

    QRect rect() const override
    {
        const GridItem* const shown = item();
        if (!shown)
            return {};
        const QRect inView = m_view->mapFromScene(shown->sceneBoundingRect()).boundingRect();
        return {m_view->viewport()->mapToGlobal(inView.topLeft()), inView.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        const GridItem* const shown = item();
        state.invalid = !shown;
        if (!shown)
            return state;
        state.selectable = true;
        state.focusable = true;
        state.selected = shown->isSelected();
        state.focused = shown->isSelected() && m_view->hasFocus();
        state.multiSelectable = true;
        state.offscreen = !m_view->mapToScene(m_view->viewport()->rect())
                               .boundingRect()
                               .intersects(shown->sceneBoundingRect());
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {setFocusAction()}; }
    void doAction(const QString& name) override
    {
        if (name != setFocusAction() || !item())
            return;
        m_view->setFocus();
        m_view->schematicScene().select(m_id);
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    const GridItem* item() const { return m_view ? m_view->schematicScene().item(m_id) : nullptr; }

    QPointer<SchematicView> m_view;
    int m_id;
};

/// A view with its symbols and wires as children, in the order of the schematic.
class ViewAccessible : public QAccessibleWidget
{
public:
    explicit ViewAccessible(SchematicView& view)
        : QAccessibleWidget(&view, QAccessible::Canvas)
        , m_view(view)
    {
    }

    ~ViewAccessible() override
    {
        for (const QAccessible::Id id : qAsConst(m_elements))
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override
    {
        return schematic().symbols.size() + schematic().wires.size();
    }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const int symbols = schematic().symbols.size();
        return element(index < symbols ? schematic().symbols.at(index).id
                                       : schematic().wires.at(index - symbols).id);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto* const element = dynamic_cast<const ElementAccessible*>(child);
        return element ? m_view.schematicScene().indexOf(element->id()) : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override
    {
        const QPoint place = m_view.viewport()->mapFromGlobal({x, y});
        const auto* const item = dynamic_cast<const GridItem*>(m_view.itemAt(place));
        return item && m_view.schematicScene().item(item->id()) ? element(item->id()) : nullptr;
    }

    QAccessibleInterface* focusChild() const override
    {
        const QList<QGraphicsItem*> selected = m_view.schematicScene().selectedItems();
        if (!m_view.hasFocus() || selected.isEmpty())
            return QAccessibleWidget::focusChild();
        return element(static_cast<const GridItem*>(selected.constFirst())->id());
    }

private:
    const Schematic& schematic() const { return m_view.schematicScene().schematic(); }

    QAccessibleInterface* element(int id) const
    {
        if (!m_elements.contains(id)) {
            forgetRemoved();
            m_elements[id] = QAccessible::registerAccessibleInterface(
                std::make_unique<ElementAccessible>(m_view, id).release());
        }
        return QAccessible::accessibleInterface(m_elements.value(id));
    }

    void forgetRemoved() const
    {
        if (m_elements.size() <= 2 * childCount())
            return;
        for (auto it = m_elements.begin(); it != m_elements.end();) {
            if (m_view.schematicScene().item(it.key())) {
                ++it;
                continue;
            }
            QAccessible::deleteAccessibleInterface(it.value());
            it = m_elements.erase(it);
        }
    }

    SchematicView& m_view;
    mutable QHash<int, QAccessible::Id> m_elements; ///< by the ids of symbols and wires
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object)
{
    auto* const view = qobject_cast<SchematicView*>(object);
    return view ? std::make_unique<ViewAccessible>(*view).release() : nullptr;
}

} // namespace

void installSchematicAccessibility()
{
    QAccessible::installFactory(makeAccessible);
}

void tellOfSelection(SchematicView& view)
{
    const QList<QGraphicsItem*> selected = view.schematicScene().selectedItems();
    if (!QAccessible::isActive() || selected.isEmpty())
        return;
    const int id = static_cast<const GridItem*>(selected.constFirst())->id();
    for (const QAccessible::Event type : {QAccessible::Selection, QAccessible::Focus}) {
        if (type == QAccessible::Focus && !view.hasFocus())
            continue;
        QAccessibleEvent event(&view, type);
        event.setChild(view.schematicScene().indexOf(id));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace workbench
