#pragma once

#include "support/rapidcheck.h"

#include <QUndoStack>

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace zvtest {

/// What an undo stack has to lead to: the content at each of its indexes, and which of them is the
/// clean one. Each step has a mark; the first content has none.
template <typename Content, typename Mark = int>
class UndoHistory
{
public:
    explicit UndoHistory(const Content& first)
        : m_contents{first}
    {
    }

    int index() const { return static_cast<int>(m_index); }
    int count() const { return static_cast<int>(m_contents.size()) - 1; }
    bool isClean() const { return index() == m_clean; }
    const Content& at(int index) const { return m_contents[std::size_t(index)]; }
    const Content& now() const { return m_contents[m_index]; }

    /// The mark of the step that has led here. Call only if there is one.
    const Mark& mark() const { return m_marks[m_index - 1]; }

    void push(const Content& content, const Mark& mark = Mark())
    {
        forgetUndone();
        m_contents.push_back(content);
        m_marks.push_back(mark);
        ++m_index;
    }

    /// Lets the last step lead to another content. It goes if that is where it began.
    void merge(const Content& content)
    {
        forgetUndone();
        m_contents.back() = content;
        if (!(content == m_contents[m_index - 1]))
            return;
        --m_index;
        forgetUndone();
    }

    void go(int index) { m_index = std::size_t(index); }
    void setClean() { m_clean = index(); }

private:
    void forgetUndone()
    {
        m_contents.resize(m_index + 1, m_contents.front());
        m_marks.resize(m_index);
        if (m_clean > index())
            m_clean = -1;
    }

    std::vector<Content> m_contents;
    std::vector<Mark> m_marks;
    std::size_t m_index = 0;
    int m_clean = 0;
};

/// A command of a state test whose model has a `history`, and `settle()` for what depends on its place.
/// The system under test has an `undoStack()`, and shows its content by `text()`.
template <typename Model, typename System>
class UndoableCommand : public rc::state::Command<Model, System>
{
public:
    void apply(Model& model) const override
    {
        change(model);
        model.settle();
    }

    void run(const Model& before, System& system) const override
    {
        perform(before, system);
        const Model after = this->nextState(before);
        RC_ASSERT(system.text() == after.text());
        RC_ASSERT(system.undoStack().count() == after.history.count());
        RC_ASSERT(system.undoStack().index() == after.history.index());
        RC_ASSERT(system.undoStack().isClean() == after.history.isClean());
        RC_ASSERT(system.fault() == std::string());
    }

    void show(std::ostream& stream) const override { stream << description(); }

protected:
    virtual std::string description() const = 0;
    virtual void change(Model& model) const = 0;
    virtual void perform(const Model& before, System& system) const = 0;
};

template <typename Model, typename System>
class Undo : public UndoableCommand<Model, System>
{
public:
    void checkPreconditions(const Model& model) const override
    {
        RC_PRE(model.history.index() > 0);
    }

private:
    std::string description() const override { return "undo"; }
    void change(Model& model) const override { model.history.go(model.history.index() - 1); }
    void perform(const Model& /*before*/, System& system) const override
    {
        system.undoStack().undo();
    }
};

template <typename Model, typename System>
class Redo : public UndoableCommand<Model, System>
{
public:
    void checkPreconditions(const Model& model) const override
    {
        RC_PRE(model.history.index() < model.history.count());
    }

private:
    std::string description() const override { return "redo"; }
    void change(Model& model) const override { model.history.go(model.history.index() + 1); }
    void perform(const Model& /*before*/, System& system) const override
    {
        system.undoStack().redo();
    }
};

template <typename Model, typename System>
class SetClean : public UndoableCommand<Model, System>
{
    std::string description() const override { return "saved"; }
    void change(Model& model) const override { model.history.setClean(); }
    void perform(const Model& /*before*/, System& system) const override
    {
        system.undoStack().setClean();
    }
};

/// Goes to the first content and step by step to the last, and ends at some place.
template <typename Model, typename System>
class WalkThrough : public UndoableCommand<Model, System>
{
public:
    explicit WalkThrough(const Model& model)
        : m_place(*rc::gen::inRange(0, model.history.count() + 1))
    {
    }

    void checkPreconditions(const Model& model) const override
    {
        RC_PRE(m_place <= model.history.count());
    }

private:
    std::string description() const override
    {
        return "all steps, then " + std::to_string(m_place);
    }

    void change(Model& model) const override
    {
        // What is lost on the way is lost.
        for (int index = 0; index <= model.history.count(); ++index) {
            model.history.go(index);
            model.settle();
        }
        model.history.go(m_place);
    }

    void perform(const Model& before, System& system) const override
    {
        Model model = before;
        for (int index = 0; index <= model.history.count(); ++index) {
            system.undoStack().setIndex(index);
            model.history.go(index);
            model.settle();
            RC_ASSERT(system.text() == model.text());
        }
        system.undoStack().setIndex(m_place);
    }

    int m_place;
};

} // namespace zvtest
