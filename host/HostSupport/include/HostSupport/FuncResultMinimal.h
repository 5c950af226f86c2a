#pragma once

/// Receives the result of one call of a script function.
class FuncResultMinimal
{
public:
    /// Allots a result of \p count strings and returns its first element. The caller stores into
    /// each element a buffer from `malloc`, which the host owns from then on.
    virtual char** allotStrings(int count) = 0;

protected:
    // A virtual destructor would take slots of the table, whose first one the operation above has.
    ~FuncResultMinimal() = default;
};
