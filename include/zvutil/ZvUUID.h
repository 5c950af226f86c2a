#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/uuid.h>
#include <zvutil/zvutil_export.h>

#include <string>

namespace zvutil {

/// A universally unique identifier as text: the handle that crosses module boundaries.
///
/// The text isn't checked: any text can be an identifier. Input ends at its first NUL. Comparison
/// is that of bytes, so two spellings of one identifier differ.
///
/// Copies share nothing. An identifier takes one allocation for its implementation, and one for a
/// text that is too long to lie in it, as that of a generated one is; a move takes none and throws
/// nothing. A moved-from identifier may only be destroyed or assigned to. Operations fail only
/// for lack of memory. Two threads may use two identifiers at once.
/// @since 0.1 @ingroup paths
class ZVUTIL_EXPORT ZvUUID
{
public:
    /// Generates a new identifier, as `uuid` does: there is no null identifier.
    ZvUUID();
    /// Copies a text.
    /// @param text must not be null
    ZvUUID(const char* text);
    /// Copies a standard string.
    /// @param text counts up to its first NUL
    ZvUUID(const std::string& text);
    /// Copies a text of the library.
    /// @param text isn't checked
    ZvUUID(const ZvBasicString<char>& text);
    /// Copies the text of an identifier.
    /// @param id counts up to its first NUL
    ZvUUID(const uuid& id);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvUUID(const ZvUUID& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvUUID(ZvUUID&& other) noexcept;
    /// Copies the text into the implementation that this identifier has; a moved-from one gets a
    /// new one.
    /// @param other must not have been moved from
    ZvUUID& operator=(const ZvUUID& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvUUID& operator=(ZvUUID&& other) noexcept;
    /// Copies the text of an identifier; `c_str` returns another pointer then. This object may have
    /// been moved from.
    /// @param id counts up to its first NUL
    ZvUUID& operator=(const uuid& id);
    /// Frees the text; what `c_str` returned ends with it.
    ~ZvUUID();

    /// @return whether the texts are the same, byte for byte; case counts.
    /// @param other must not have been moved from
    bool operator==(const ZvUUID& other) const;
    /// @return the negation of `==`.
    /// @param other must not have been moved from
    bool operator!=(const ZvUUID& other) const;
    /// @return whether this text comes before the other, by the order of the bytes as unsigned
    /// values; a text comes before a longer one that begins with it, so the empty one before all
    /// others.
    /// @param other must not have been moved from
    bool operator<(const ZvUUID& other) const;

    /// @return the text; valid until the identifier is assigned to or destroyed.
    const char* c_str() const;
    /// @return a copy of the text.
    ZvBasicString<char> toString() const;
    /// @return a copy of the identifier.
    uuid toUUID() const;

private:
    struct ZvUUIDImpl;

    basic_pimpl<ZvUUIDImpl> m_impl;
};

static_assert(sizeof(ZvUUID) == 2 * sizeof(void*));

} // namespace zvutil
