#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/uuid.h>
#include <zvutil/zvutil_export.h>

#include <string>

namespace zvutil {

/// A universally unique identifier as text: the handle that crosses module boundaries.
///
/// Nothing looks into the text: any text can be an identifier, and none is checked. Text that comes
/// in ends at its first NUL. Comparison is that of bytes, so two spellings of one identifier differ.
///
/// Copies share nothing. An identifier takes one allocation for its implementation, and one for a
/// text that is too long to lie in it, as that of a generated one is; a move takes none and throws
/// nothing. A moved-from identifier may only be destroyed or assigned to. Nothing fails but for
/// lack of memory. Two threads may use two identifiers at once.
class ZVUTIL_EXPORT ZvUUID
{
public:
    /// Generates a new identifier, as `uuid` does: there is no null identifier.
    ZvUUID();
    /// Copies \p text, which must not be null.
    ZvUUID(const char* text);
    ZvUUID(const std::string& text);
    ZvUUID(const ZvBasicString<char>& text);
    ZvUUID(const uuid& id);

    ZvUUID(const ZvUUID& other);
    ZvUUID(ZvUUID&& other) noexcept;
    /// Writes into the implementation that is there; a moved-from identifier gets a new one.
    ZvUUID& operator=(const ZvUUID& other);
    ZvUUID& operator=(ZvUUID&& other) noexcept;
    /// Takes a new implementation.
    ZvUUID& operator=(const uuid& id);
    ~ZvUUID();

    /// Case counts.
    bool operator==(const ZvUUID& other) const;
    bool operator!=(const ZvUUID& other) const;
    /// The order of the bytes as unsigned values; a text comes before a longer one that begins with
    /// it, so the empty one before all others.
    bool operator<(const ZvUUID& other) const;

    /// The text; valid until the identifier is assigned to or destroyed.
    const char* c_str() const;
    ZvBasicString<char> toString() const;
    uuid toUUID() const;

private:
    struct ZvUUIDImpl;

    basic_pimpl<ZvUUIDImpl> m_impl;
};

static_assert(sizeof(ZvUUID) == 2 * sizeof(void*));

} // namespace zvutil
