#include "schematic/SchematicDocument.h"

#include "common/EmptyHint.h"
#include "common/edit_icons.h"
#include "common/line_icon.h"
#include "common/path_names.h"
#include "documents/empty_file.h"
#include "documents/xml_text.h"
#include "schematic/SchematicPages.h"
#include "schematic/SchematicPicture.h"
#include "schematic/SchematicReadFile.h"
#include "schematic/SchematicSaveFile.h"
#include "schematic/SchematicView.h"
#include "schematic/SymbolDialog.h"
#include "schematic/schematic_clipboard.h"

#include <QActionGroup>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTransform>

#include <algorithm>
#include <array>

namespace workbench {

namespace {

/// Returns an icon that shows the symbol itself.
QIcon kindIcon(SymbolKind kind)
{
    const SymbolShape& shape = shapeOf(kind);
    QPainterPath lines = shape.body;
    lines.addPath(shape.lines);
    const QRectF all = lines.boundingRect();
    const double scale = 20 / std::max(all.width(), all.height());
    const QPointF middle = all.center();
    return lineIcon((QTransform::fromTranslate(-middle.x(), -middle.y())
                     * QTransform::fromScale(scale, scale) * QTransform::fromTranslate(12, 12))
                        .map(lines));
}

QIcon wireIcon()
{
    QPainterPath path(QPointF(3, 18));
    path.lineTo(12, 18);
    path.lineTo(12, 6);
    path.lineTo(21, 6);
    path.addEllipse(QPointF(12, 12), 0.8, 0.8);
    return lineIcon(path);
}

struct KindAction
{
    SymbolKind kind;
    const char* key;
};

constexpr std::array<KindAction, symbolKinds.size()> kindActions = {{
    {SymbolKind::Resistor, "R"},
    {SymbolKind::Capacitor, "C"},
    {SymbolKind::Diode, "D"},
    {SymbolKind::Source, "S"},
    {SymbolKind::Ground, "G"},
    {SymbolKind::Chip, "U"},
}};

} // namespace

const DocumentType& schematicType()
{
    static const DocumentType type = {QStringLiteral("schematic"),
                                      SchematicDocument::tr("Schematic"),
                                      SchematicDocument::tr("Schematics"),
                                      QStringLiteral(".zvsch"),
                                      [](const QString& title, QWidget* parent) -> Document* {
                                          return new SchematicDocument(title, parent);
                                      },
                                      1};
    return type;
}

SchematicDocument::SchematicDocument(const QString& title, QWidget* parent)
    : UndoDocument(schematicType(), title, parent)
    , m_view(new SchematicView(m_scene, this))
    , m_tools(new QActionGroup(this))
{
    setView(*m_view, m_scene.undoStack());
    connect(&m_scene, &SchematicScene::failed, this, &Document::failed);
    connect(&m_scene, &SchematicScene::editRequested, this, &SchematicDocument::editSymbol);
    connect(&m_scene, &SchematicScene::toolChanged, this, &SchematicDocument::checkTool);
    auto* const hint =
        new EmptyHint(tr("Press R for a resistor or W for a wire, and click where it is to be.\n"
                         "The other parts are on the tool bar and in the Edit menu."),
                      m_view, [this] { return isBlank(); });
    connect(&m_scene, &SchematicScene::schematicChanged, hint, &EmptyHint::update);
    addToolActions();
    addUndoActions();
    addEditActions();
    addZoomActions();
    checkTool();
}

SchematicDocument::~SchematicDocument()
{
    m_scene.disconnect(this);
    endView();
}

SchematicScene& SchematicDocument::scene()
{
    return m_scene;
}

SchematicView& SchematicDocument::view()
{
    return *m_view;
}

void SchematicDocument::showHit(int /*line*/, const QString& text)
{
    if (m_scene.selectSymbol(text))
        m_view->centerOn(m_scene.selectedItems().constFirst());
}

void SchematicDocument::read(const zvutil::ZvFilePath& file)
{
    ProgressBox box = readingBox(file);
    const bool isEmpty = isEmptyFile(file);
    m_scene.setSchematic(isEmpty ? Schematic() : SchematicReadFile(file).read(box.progress()));
    m_view->fit();
}

void SchematicDocument::write(const zvutil::ZvFilePath& file) const
{
    ProgressBox box = savingBox(file);
    requireWritten(SchematicSaveFile(file).save(m_scene.schematic(), box.progress()), file);
}

bool SchematicDocument::isBlank() const
{
    const Schematic& schematic = m_scene.schematic();
    return schematic.symbols.isEmpty() && schematic.wires.isEmpty();
}

QPageLayout::Orientation SchematicDocument::orientation() const
{
    const QRectF all = m_scene.contents();
    return all.width() > all.height() ? QPageLayout::Landscape : QPageLayout::Portrait;
}

std::unique_ptr<Pages> SchematicDocument::pages(const Paper& paper,
                                                const Progress& /*progress*/) const
{
    return std::make_unique<SchematicPages>(pageTitleOf(*this), paper, m_scene.schematic());
}

std::vector<ExportFormat> SchematicDocument::exportFormats() const
{
    return {{tr("SVG pictures"), QStringLiteral(".svg"),
             [this](const Progress& progress) {
                 return SchematicPicture(m_scene.schematic()).svg(shortTitle(), progress);
             }},
            {tr("PNG pictures, 300 dpi"), QStringLiteral(".png"), [this](const Progress& progress) {
                 return SchematicPicture(m_scene.schematic()).png(shortTitle(), progress);
             }}};
}

ContentWriter SchematicDocument::snapshot() const
{
    return [schematic = m_scene.schematic()](const zvutil::ZvFilePath& file,
                                             const Progress& progress) {
        requireWritten(SchematicSaveFile(file).save(schematic, progress), file);
    };
}

void SchematicDocument::addToolActions()
{
    QAction* const select = addNamedAction(QStringLiteral("select"), tr("&Select"), keys({"Esc"}),
                                           [this] { m_scene.escape(); });
    select->setIcon(pointerIcon());
    QAction* const wire = addNamedAction(QStringLiteral("wire"), tr("&Wire"), keys({"W"}),
                                         [this] { m_scene.setTool(SchematicScene::Tool::Wire); });
    wire->setIcon(wireIcon());
    wire->setToolTip(tr("Draws a wire from click to click, until a double click, Esc or the right "
                        "button ends it."));
    addToToolBar({select, wire});
    for (const KindAction& kind : kindActions) {
        QAction* const placing =
            addNamedAction(QStringLiteral("place") + kindName(kind.kind), kindName(kind.kind),
                           keys({kind.key}), [this, kind] { m_scene.setPlacing(kind.kind); });
        placing->setIcon(kindIcon(kind.kind));
        addToToolBar({placing});
    }
    for (QAction* const action : toolBarActions()) {
        action->setCheckable(true);
        m_tools->addAction(action);
    }
}

void SchematicDocument::addEditActions()
{
    addSeparatorAction();
    const auto add = [this](const char* name, const QString& text, QKeySequence::StandardKey key,
                            void (SchematicScene::*work)()) {
        return addNamedAction(QLatin1String(name), text, QKeySequence::keyBindings(key),
                              [this, work] { (m_scene.*work)(); });
    };
    QAction* const cut = add("cut", tr("Cu&t"), QKeySequence::Cut, &SchematicScene::cut);
    QAction* const copy = add("copy", tr("&Copy"), QKeySequence::Copy, &SchematicScene::copy);
    QAction* const paste = add("paste", tr("&Paste"), QKeySequence::Paste, &SchematicScene::paste);
    QAction* const remove =
        add("delete", tr("&Delete"), QKeySequence::Delete, &SchematicScene::removeSelected);
    add("selectAll", tr("Select &All"), QKeySequence::SelectAll, &SchematicScene::selectAll);
    cut->setIcon(cutIcon());
    copy->setIcon(copyIcon());
    paste->setIcon(pasteIcon());
    remove->setIcon(removeIcon());
    addToToolBar({cut, copy, paste});
    addToToolBar({addSeparatorAction()});
    QAction* const rotate = addNamedAction(QStringLiteral("rotate"), tr("R&otate"),
                                           keys({"Ctrl+R", "Space"}), [this] { m_scene.rotate(); });
    rotate->setIcon(rotateIcon());
    addToToolBar({rotate, remove});
    addNamedAction(QStringLiteral("editSymbol"), tr("&Edit Symbol…"), keys({"F2"}),
                   [this] { editSymbol(); });
    connect(&m_scene, &QGraphicsScene::selectionChanged, this, &SchematicDocument::enableActions);
    connect(&m_scene, &SchematicScene::toolChanged, this, &SchematicDocument::enableActions);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &SchematicDocument::enableActions);
    enableActions();
}

void SchematicDocument::enableActions()
{
    const bool isSelected = !m_scene.selectedItems().isEmpty();
    const auto enable = [this](const char* name, bool isEnabled) {
        findChild<QAction*>(QLatin1String(name))->setEnabled(isEnabled);
    };
    for (const char* const name : {"cut", "copy", "delete"})
        enable(name, isSelected);
    enable("paste", hasSchematicOnClipboard());
    enable("rotate", isSelected || m_scene.tool() == SchematicScene::Tool::Place);
    enable("editSymbol", m_scene.selectedSymbol());
}

void SchematicDocument::addZoomActions()
{
    addToToolBar({addSeparatorAction()});
    addNamedAction(QStringLiteral("zoomIn"), tr("Zoom &In"), plusKeys(),
                   [this] { m_view->zoomIn(); });
    addNamedAction(QStringLiteral("zoomOut"), tr("Zoom &Out"), keys({"Ctrl+-"}),
                   [this] { m_view->zoomOut(); });
    QAction* const fit = addNamedAction(QStringLiteral("fit"), tr("&Fit"), keys({"Ctrl+0"}),
                                        [this] { m_view->fit(); });
    fit->setIcon(fitIcon());
    fit->setToolTip(tr("Shows the whole schematic."));
    addToToolBar({fit});
}

void SchematicDocument::checkTool()
{
    QString name = QStringLiteral("select");
    if (m_scene.tool() == SchematicScene::Tool::Wire)
        name = QStringLiteral("wire");
    else if (m_scene.tool() == SchematicScene::Tool::Place)
        name = QStringLiteral("place") + kindName(m_scene.placing());
    for (QAction* const action : m_tools->actions())
        action->setChecked(action->objectName() == name);
}

void SchematicDocument::editSymbol()
{
    const Symbol* const selected = m_scene.selectedSymbol();
    if (!selected)
        return;
    const Symbol symbol = *selected;
    QSet<QString> taken;
    for (const Symbol& other : m_scene.schematic().symbols) {
        if (other.id != symbol.id)
            taken.insert(other.reference);
    }
    SymbolDialog dialog(symbol, taken, this);
    if (dialog.exec() == QDialog::Accepted)
        m_scene.setTexts(symbol.id, dialog.reference(), dialog.value());
}

} // namespace workbench
