#pragma once

/// Takes the result of one call of a script function.
class FuncResultMinimal
{
public:
    /// Allots a result of \p count strings and returns its first element. Into each element goes a
    /// buffer from `malloc`, which belongs to the host from then on.
    virtual char** allotStrings(int count) = 0;

protected:
    // Not virtual: the operation above has the first slot of the table.
    ~FuncResultMinimal() = default;
};
