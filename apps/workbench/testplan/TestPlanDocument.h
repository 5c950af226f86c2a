#pragma once

#include "documents/UndoDocument.h"
#include "output/OutputContent.h"
#include "testplan/PlanFindTarget.h"
#include "testplan/TestPlanModel.h"

namespace workbench {

class FindBar;
class TestPlanView;

/// A test plan in its window.
class TestPlanDocument : public UndoDocument, public OutputContent
{
    Q_OBJECT

public:
    TestPlanDocument(const QString& title, QWidget* parent);
    ~TestPlanDocument() override;

    TestPlanModel& model();
    TestPlanView& view();

    ContentWriter snapshot() const override;
    quint64 revision() const override;
    bool isTyping() const override;
    void finishTyping() const override;

    bool isBlank() const override;
    QPageLayout::Orientation orientation() const override;
    std::unique_ptr<Pages> pages(const Paper& paper, const Progress& progress) const override;
    std::vector<ExportFormat> exportFormats() const override;

    /// Shows the content of a CSV file as a new plan: the document has no file until it is saved as a test plan, and
    /// the CSV file stays as it is. If it can't be read, changes nothing and emits `failed`.
    bool importCsv(const zvutil::ZvFilePath& file);
    /// Returns the CSV file that is shown, or an empty path.
    const zvutil::ZvFilePath& importedFile() const;

    void showHit(int line, const QString& text) override;
    QList<QAction*> windowActions() const override;

protected:
    bool event(QEvent* event) override;
    void read(const zvutil::ZvFilePath& file) override;
    void write(const zvutil::ZvFilePath& file) const override;
    zvutil::ZvFilePath requestSavePath() const override;

private:
    void readCsv(const zvutil::ZvFilePath& file);
    void addHint();
    void addClipboardActions();
    void enableActions();
    void addFindActions();
    void askForRow();
    int rowAtLine(int line) const;
    void addRowActions();
    void addColumnActions();

    TestPlanModel m_model;
    TestPlanView* m_view;
    PlanFindTarget m_target;
    FindBar* m_findBar; // owned as a child
    QList<QAction*> m_windowActions;
    zvutil::ZvFilePath m_importedFile;
};

/// Returns the type of test plans, for `addDocumentType`.
const DocumentType& testPlanType();

} // namespace workbench
