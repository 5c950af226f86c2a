#pragma once

/// The arguments of one call of a script function, already checked against the function's table.
/// @since 0.1 @ingroup host
class FuncArgsMinimal
{
public:
    /// @return a pointer to the value of one argument: to a `char*` with NUL-ended UTF-8 text for a
    /// string, to a `double` for a number. Valid during the call.
    /// @param index counted from 0
    virtual const void* value(int index) const = 0;

protected:
    // A virtual destructor would take slots of the table, whose first one the operation above has.
    ~FuncArgsMinimal() = default;
};
