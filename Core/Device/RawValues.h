#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace kelmoth {

/// The one table of an enumeration: `static constexpr std::array table`, a row for each case in declaration
/// order. A row is the raw string itself, or a struct whose member `rawValue` is the raw string.
/// The raw string is the case's stored form and its identity as a map key; the row order is the order in
/// which every control lists the cases.
template <class E> struct RawValues;

template <class E>
concept RawValueEnum = std::is_enum_v<E> && requires { RawValues<E>::table; };

/// The whole row of a case, for tables that hold more than the raw string.
template <RawValueEnum E> constexpr const auto &tableRow(E value)
{
    return RawValues<E>::table[static_cast<std::size_t>(value)];
}

/// The stored form of a case.
template <RawValueEnum E> constexpr std::string_view rawValue(E value)
{
    const auto &row = tableRow(value);
    if constexpr (requires { row.rawValue; }) {
        return row.rawValue;
    } else {
        return row;
    }
}

/// Every case, in declaration order.
template <RawValueEnum E> constexpr auto allCases()
{
    std::array<E, RawValues<E>::table.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i] = static_cast<E>(i);
    }
    return cases;
}

/// The case with this raw string, compared exactly; none for any other string.
template <RawValueEnum E> constexpr std::optional<E> fromRawValue(std::string_view raw)
{
    for (const E value : allCases<E>()) {
        if (rawValue(value) == raw) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace kelmoth
