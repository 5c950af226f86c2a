#pragma once

#include "documents/UndoDocument.h"
#include "output/OutputContent.h"
#include "schematic/SchematicScene.h"

class QActionGroup;

namespace workbench {

class SchematicView;

/// A schematic in its window.
class SchematicDocument : public UndoDocument, public OutputContent
{
    Q_OBJECT

public:
    SchematicDocument(const QString& title, QWidget* parent);
    ~SchematicDocument() override;

    SchematicScene& scene();
    SchematicView& view();

    ContentWriter snapshot() const override;
    void showHit(int line, const QString& text) override;

    bool isBlank() const override;
    QPageLayout::Orientation orientation() const override;
    std::unique_ptr<Pages> pages(const Paper& paper, const Progress& progress) const override;
    std::vector<ExportFormat> exportFormats() const override;

protected:
    void read(const zvutil::ZvFilePath& file) override;
    void write(const zvutil::ZvFilePath& file) const override;

private:
    void addEditActions();
    void enableActions();
    void addToolActions();
    void addZoomActions();
    void checkTool();
    void editSymbol();

    SchematicScene m_scene;
    SchematicView* m_view;
    QActionGroup* m_tools;
};

/// Returns the type of schematics, for `addDocumentType`.
const DocumentType& schematicType();

} // namespace workbench
