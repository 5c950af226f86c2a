#include "documents/ProgressBox.h"

namespace workbench {

namespace {

constexpr int patience = 500;
constexpr int narrowest = 320;
constexpr int stepsPerReport = 256;

} // namespace

void report(const Progress& progress, int done, int all)
{
    if (done % stepsPerReport == 0 && !progress(done, all))
        throw Stopped();
}

ProgressBox::ProgressBox(const QString& text, QWidget* parent)
    : m_box(text, QProgressDialog::tr("Stop"), 0, 1, parent)
{
    m_box.setWindowModality(Qt::ApplicationModal);
    m_box.setMinimumDuration(patience);
    m_box.setMinimumWidth(narrowest);
}

bool ProgressBox::report(int done, int all)
{
    m_box.setMaximum(all);
    m_box.setValue(done);
    return !m_box.wasCanceled();
}

Progress ProgressBox::progress()
{
    return [this](int done, int all) { return report(done, all); };
}

} // namespace workbench
