#pragma once

#include "search/FindTarget.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QAction;
class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class ZvSearchBar;

namespace workbench {

class Document;

/// Finds and replaces texts of a document, below what it shows. Hidden until the user asks for it.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// Creates the bar as a child of \p document. \p target is what it searches, and must outlive it; \p content
    /// has the focus again when the bar is closed.
    FindBar(Document& document, FindTarget& target, QWidget& content);

    /// Returns the actions that find and replace, for the document to add.
    QList<QAction*> findActions() const;

    /// Shows the bar, with the selected text to search for.
    void open(bool isReplacing);
    /// Selects the first match of \p text behind \p from, without regard to case, and stays as it is otherwise.
    void findFirst(const QString& text, const TextPlace& from);
    void findNext();
    void findPrevious();
    /// Replaces the match that is selected, and selects the next.
    void replace();
    void replaceAll();

Q_SIGNALS:
    /// Emitted before the target is searched, so that it takes over what is being typed.
    void aboutToSearch();

public Q_SLOTS:
    /// Hides the bar, and gives the focus to the content.
    void end();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeActions();
    void makeFields();
    void addSearchRow(QGridLayout& layout);
    void addReplaceRow(QGridLayout& layout);
    void addOptionRow(QGridLayout& layout);
    SearchPattern pattern() const;
    bool isUsable(const SearchPattern& pattern);
    void findWhileTyping();
    void find(bool isForward, const TextPlace& from);
    void showFound(const std::optional<FoundText>& found, bool isForward);
    void run(const std::function<void(const Progress&)>& work);
    void say(const QString& text);
    bool isOthersShortcut(const QKeyEvent& event) const;

    Document& m_document;
    FindTarget& m_target;
    QWidget& m_content;
    // The bar owns the following as its children.
    QList<QAction*> m_actions;
    ZvSearchBar* m_text;
    QLineEdit* m_replacement;
    QWidget* m_replaceButtons;
    QCheckBox* m_case;
    QCheckBox* m_words;
    QCheckBox* m_expression;
    QLabel* m_status;
};

} // namespace workbench
