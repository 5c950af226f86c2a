#pragma once

/// Receives the result of one call of a script function.
/// @since 0.1 @ingroup host
class FuncResultMinimal
{
public:
    /// Makes room for the result. The caller stores into each element a buffer from `malloc`, which
    /// the host owns from then on.
    /// @param count the number of strings
    /// @return the first element
    virtual char** allotStrings(int count) = 0;

protected:
    // A virtual destructor would take slots of the table, whose first one the operation above has.
    ~FuncResultMinimal() = default;
};
