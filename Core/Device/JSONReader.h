#pragma once

#include "Core/Device/RawValues.h"
#include "Core/Device/Types.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

namespace kelmoth {

/// Why a text could not be decoded, and where. Never leaves the decoding.
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads JSON text, all of it. Whole numbers that fit 64 bits become integers exactly, however they are
/// written (1, 1.0, 1e3); of members that occur twice the last counts. Throws DecodingError for text that is
/// not JSON or is nested beyond any use.
nlohmann::json parseJSON(std::string_view text);

/// One value inside a JSON document, with the way to it. Every reading throws DecodingError when the value is
/// not what was asked for. Refers to the document: it must live as long.
class JSONReader {
public:
    explicit JSONReader(const nlohmann::json &value, std::string path = {})
        : m_value(value), m_path(std::move(path))
    {
    }

    /// A required member of an object.
    JSONReader member(std::string_view name) const;
    /// A member that may be missing or null, which both give none.
    std::optional<JSONReader> optionalMember(std::string_view name) const;
    /// Throws unless the value is an object.
    const nlohmann::json::object_t &object() const;
    /// The number of elements of an array.
    std::size_t count() const;
    JSONReader element(std::size_t index) const;

    /// Booleans and fractions are no integers, and an integer lies within 64 bits.
    Int integer() const;
    std::uint8_t byte() const;
    double number() const;
    bool boolean() const;
    const std::string &text() const;
    template <RawValueEnum E> E enumeration() const
    {
        if (const auto value = fromRawValue<E>(text())) {
            return *value;
        }
        std::string words;
        for (const E value : allCases<E>()) {
            words.append(words.empty() ? "" : ", ").append(rawValue(value));
        }
        fail(quoted(text()) + " is not one of " + words);
    }

    [[noreturn]] void fail(const std::string &message) const;

    /// UTF-8 text for a message: in quotes, cut between two characters where it is long.
    static std::string quoted(std::string_view text);

private:
    const nlohmann::json &m_value;
    std::string m_path;
};

} // namespace kelmoth
