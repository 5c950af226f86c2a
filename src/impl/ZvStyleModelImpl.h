#pragma once

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleModel.h>

#include <QVariant>

#include <memory>
#include <vector>

namespace libzvutil {

/// The model's copy of the style and the handlers that indexes point to; a handler knows the kind
/// of its row.
class ZVUTIL_NO_EXPORT ZvStyleModel::Impl
{
public:
    enum Kind { Brushes, Icons, Editors, Brush, Editor, Icon, EditorColour };

    class AbstractHandler
    {
    public:
        explicit AbstractHandler(Impl& impl);
        AbstractHandler(const AbstractHandler&) = delete;
        AbstractHandler& operator=(const AbstractHandler&) = delete;
        virtual ~AbstractHandler();

        virtual int columnCount(const QModelIndex& index) const = 0;
        virtual QVariant data(const QModelIndex& index, int role) const = 0;
        virtual int rowCount(const QModelIndex& index) const = 0;
        virtual bool setData(const QModelIndex& index, const QVariant& value, int role);
        virtual Kind kind() const = 0;

    protected:
        Impl& impl() const { return *m_impl; }

    private:
        Impl* m_impl;
    };

    class BrushesHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        Kind kind() const override;
    };

    class IconsHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        Kind kind() const override;
    };

    class EditorsHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        Kind kind() const override;
    };

    class BrushHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        bool setData(const QModelIndex& index, const QVariant& value, int role) override;
        Kind kind() const override;
    };

    class IconHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        Kind kind() const override;
    };

    class EditorHandler : public AbstractHandler
    {
    public:
        using AbstractHandler::AbstractHandler;
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        Kind kind() const override;
    };

    class EditorColourHandler : public AbstractHandler
    {
    public:
        EditorColourHandler(Impl& impl, int editorRow);
        int columnCount(const QModelIndex& index) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        int rowCount(const QModelIndex& index) const override;
        bool setData(const QModelIndex& index, const QVariant& value, int role) override;
        Kind kind() const override;

        int editorRow() const { return m_editorRow; }

    private:
        int m_editorRow;
    };

    explicit Impl(const ZvStyle& style);

    /// The handler of an index; null for an invalid one.
    static AbstractHandler* handler(const QModelIndex& index);

    /// The handler of a row below the root; null if there is no such row.
    AbstractHandler* group(int row);
    AbstractHandler* addColourHandler(int editorRow);

    int brushCount() const;
    int iconCount() const;
    int editorCount() const;

    /// The brush of a row; null if there is no such row. The same for icons and editors below.
    ZvNamedColour* brush(int row);
    const ZvNamedIcon* icon(int row) const;
    const ZvEditorStyle* editor(int row) const;
    int editorBrushCount(int editorRow) const;
    ZvNamedColour* editorBrush(int editorRow, int row);

    ZvStyle style;
    BrushesHandler brushes{*this};
    IconsHandler icons{*this};
    EditorsHandler editors{*this};
    BrushHandler brushRows{*this};
    IconHandler iconRows{*this};
    EditorHandler editorRows{*this};
    std::vector<std::shared_ptr<EditorColourHandler>> colourHandlers;
};

} // namespace libzvutil
