#pragma once

#include <zvutil/ZvString.h>
#include <zvutil/ZvVariant.h>
#include <zvutil/zvutil_export.h>

/// A rectangular grid of cells, which gives its text with commas or tabs between the cells. The
/// clipboard (`ZvClipboardData`) reads such a text by other rules: the two aren't each other's
/// inverse.
///
/// **A table may have no storage**: one that is made by the default constructor, one that has been
/// moved from, and one that the clipboard gives where there is none to read. Such a table may only
/// be destroyed or moved from, and can't be distinguished from another one; ask `hasTableData`
/// before you take a table from the clipboard. A table of 0 rows and 0 columns has storage.
///
/// A copy is deep: each cell is copied. A cell takes 48 bytes and one allocation, beside what its
/// `QVariant` needs. Operations fail only for lack of memory. Two threads may use two tables at once.
/// @since 0.1 @ingroup tables
class ZVUTIL_EXPORT ZvTable
{
public:
    /// Makes a table without storage. Allocates nothing.
    ZvTable() noexcept;

    /// Makes a table whose cells are equal. Throws `std::length_error` or `std::bad_alloc` if there
    /// is no room for so many cells.
    /// @param rows may be 0; the number of columns is kept
    /// @param columns may be 0; the number of rows is kept
    /// @param fill copied into each cell
    ZvTable(unsigned long long rows, unsigned long long columns, const libzvutil::ZvVariant& fill);

    /// Copies each cell.
    /// @param other must have storage
    ZvTable(const ZvTable& other);
    /// Takes the cells over.
    /// @param other has no storage afterwards
    ZvTable(ZvTable&& other) noexcept;
    /// A table keeps its size and cells for life; assign to the cells instead.
    /// @param other can't be assigned
    ZvTable& operator=(const ZvTable& other) = delete;
    /// Destroys the cells; references to them end with it.
    ~ZvTable();

    /// @return the number of rows; needs storage.
    unsigned long long rows() const;
    /// @return the number of columns; needs storage, as all operations below.
    unsigned long long columns() const;

    /// @return one cell. **The place isn't checked.** Valid as long as the table.
    /// @param row counted from 0
    /// @param column counted from 0
    libzvutil::ZvVariant& value(unsigned long long row, unsigned long long column);
    /// @return the same for a constant table.
    /// @param row counted from 0
    /// @param column counted from 0
    const libzvutil::ZvVariant& value(unsigned long long row, unsigned long long column) const;

    /// @return the cells' texts, by `QVariant::toString`, in UTF-8, with commas between them and
    /// line feeds between the rows.
    ///
    /// A text that contains a comma is put in double quotes. **Nothing else is quoted or escaped**,
    /// neither a double quote nor a line feed. A NUL ends its cell's text; the separator after it
    /// is lost, and with it the end of the row before.
    libzvutil::ZvString toCSV() const;
    /// @return the same with tabs in place of the commas.
    libzvutil::ZvString toTSV() const;

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation = nullptr;
};

static_assert(sizeof(ZvTable) == sizeof(void*));
