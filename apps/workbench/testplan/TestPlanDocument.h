#pragma once

#include "documents/UndoDocument.h"
#include "testplan/TestPlanModel.h"

namespace workbench {

class TestPlanView;

/// A test plan in its window.
class TestPlanDocument : public UndoDocument
{
    Q_OBJECT

public:
    TestPlanDocument(const QString& title, QWidget* parent);
    ~TestPlanDocument() override;

    TestPlanModel& model();
    TestPlanView& view();

    ContentWriter snapshot() const override;
    quint64 revision() const override;
    void finishTyping() const override;

protected:
    bool event(QEvent* event) override;
    void read(const zvutil::ZvFilePath& file) override;
    void write(const zvutil::ZvFilePath& file) const override;

private:
    void addClipboardActions();
    void addRowActions();
    void addColumnActions();

    TestPlanModel m_model;
    TestPlanView* m_view;
};

/// Returns the type of test plans, for `addDocumentType`.
const DocumentType& testPlanType();

} // namespace workbench
