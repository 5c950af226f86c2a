#pragma once

#include <DockFramework/DockableWidgetContents.h>

#include <QTimer>

#include <cstdint>

class QComboBox;
class QLineEdit;
class QTreeView;

namespace workbench {

class LogFilter;
class LogModel;

/// Shows what the log's memory sink keeps, filtered. Asks the sink a few times a second, while
/// visible.
class LogPanel : public DockableWidgetContents
{
    Q_OBJECT

public:
    /// Creates the panel, and starts the memory sink unless it is running.
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

    DockLocationPreference getPreferredDockLocation() const override;
    QSize getPreferredNewWindowSize() const override;
    bool isSystemWidget() const override;
    /// Returns false: the list has a menu of its own.
    bool requireDefaultMenu() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeTopRow();
    void makeView();
    void look();
    void copy() const;
    bool isAtEnd() const;

    LogModel* m_lines;
    LogFilter* m_shown;
    QComboBox* m_level;
    QLineEdit* m_text;
    QTreeView* m_view;
    QTimer m_timer;
    std::uint64_t m_seen = 0;
};

} // namespace workbench
