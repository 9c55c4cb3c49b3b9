#include "Core/Device/JSONReader.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <vector>

namespace kelmoth {

namespace {

using nlohmann::json;

constexpr std::size_t deepestNesting = 512;
constexpr std::size_t longestQuote = 60;
constexpr Int mostDecimalDigits = std::numeric_limits<Int>::digits10 + 1;

/// Whether a byte of UTF-8 goes on with the character of the byte before it.
bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The exponent of a JSON number's text; a huge one is cut to one that is still beyond any use.
Int exponentOf(std::string_view text)
{
    constexpr Int limit = 1'000'000'000;
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    Int exponent = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) {
        return text.starts_with('-') ? -limit : limit;
    }
    return std::clamp(exponent, -limit, limit);
}

/// The integer that a JSON number's text denotes, exactly; none when it is not whole or exceeds 64 bits.
/// A double would not do: it cannot tell -9223372036854775809 from the smallest integer.
std::optional<Int> wholeNumber(std::string_view text)
{
    const auto mantissa = text.substr(0, text.find_first_of("eE"));
    Int exponent = mantissa.size() < text.size() ? exponentOf(text.substr(mantissa.size() + 1)) : 0;
    std::string digits;
    bool isFraction = false;
    for (const char character : mantissa) {
        if (character == '.') {
            isFraction = true;
        } else if (character != '-') {
            digits += character;
            exponent -= isFraction ? 1 : 0;
        }
    }
    digits.erase(0, digits.find_first_not_of('0'));
    if (digits.empty()) {
        return 0;
    }
    for (; exponent < 0 && digits.ends_with('0'); ++exponent) {
        digits.pop_back();
    }
    if (exponent < 0 || static_cast<Int>(digits.size()) + exponent > mostDecimalDigits) {
        return std::nullopt;
    }
    digits.append(static_cast<std::size_t>(exponent), '0');
    digits.insert(0, mantissa.starts_with('-') ? "-" : "");
    Int value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

/// Builds the document while the text is read, for a look at each number's text.
class Builder : public nlohmann::json_sax<json> {
public:
    json takeRoot() { return std::move(m_root); }

    bool null() override { return put(nullptr); }
    bool boolean(bool value) override { return put(value); }
    bool number_integer(number_integer_t value) override { return put(value); }
    bool number_unsigned(number_unsigned_t value) override { return put(value); }
    bool number_float(number_float_t value, const string_t &text) override
    {
        const auto whole = wholeNumber(text);
        return whole ? put(*whole) : put(value);
    }
    bool string(string_t &value) override { return put(std::move(value)); }
    bool binary(binary_t &) override { return false; } // not in JSON text
    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t &name) override
    {
        m_key = std::move(name);
        return true;
    }
    bool parse_error(std::size_t, const std::string &, const json::exception &error) override
    {
        // "[json.exception.parse_error.101] parse error at line …"
        const std::string_view message = error.what();
        const auto name = message.find("] ");
        throw DecodingError(std::string(message.substr(name == std::string_view::npos ? 0 : name + 2)));
    }

private:
    json &slot()
    {
        if (m_open.empty()) {
            return m_root;
        }
        json &container = *m_open.back();
        if (container.is_object()) {
            return container[m_key];
        }
        return container.emplace_back();
    }
    template <class T> bool put(T &&value)
    {
        slot() = std::forward<T>(value);
        return true;
    }
    bool open(json container)
    {
        if (m_open.size() >= deepestNesting) {
            throw DecodingError("nested too deeply");
        }
        json &place = slot();
        place = std::move(container);
        m_open.push_back(&place);
        return true;
    }
    bool close()
    {
        m_open.pop_back();
        return true;
    }

    json m_root;
    std::vector<json *> m_open; ///< a container does not grow while one inside it is open
    std::string m_key;
};

} // namespace

json parseJSON(std::string_view text)
{
    // The library takes one for the end of the text, and whatever follows goes unread.
    if (const auto at = text.find('\0'); at != std::string_view::npos) {
        throw DecodingError("a zero byte after " + std::to_string(at) + " bytes of text");
    }
    Builder builder;
    json::sax_parse(text, &builder);
    return builder.takeRoot();
}

std::string JSONReader::quoted(std::string_view text)
{
    if (text.size() <= longestQuote) {
        return "\"" + std::string(text) + "\"";
    }
    auto length = longestQuote;
    while (length > 0 && isContinuation(text[length])) {
        --length;
    }
    return "\"" + std::string(text.substr(0, length)) + "…\"";
}

void JSONReader::fail(const std::string &message) const
{
    throw DecodingError((m_path.empty() ? "the record" : m_path) + ": " + message);
}

const json::object_t &JSONReader::object() const
{
    const auto *object = m_value.get_ptr<const json::object_t *>();
    if (!object) {
        fail("an object is expected");
    }
    return *object;
}

std::optional<JSONReader> JSONReader::optionalMember(std::string_view name) const
{
    const auto &members = object();
    const auto found = members.find(std::string(name));
    if (found == members.end() || found->second.is_null()) {
        return std::nullopt;
    }
    return JSONReader(found->second, m_path.empty() ? std::string(name) : m_path + "." + std::string(name));
}

JSONReader JSONReader::member(std::string_view name) const
{
    auto reader = optionalMember(name);
    if (!reader) {
        fail("\"" + std::string(name) + "\" is missing");
    }
    return *std::move(reader);
}

std::size_t JSONReader::count() const
{
    if (!m_value.is_array()) {
        fail("an array is expected");
    }
    return m_value.size();
}

JSONReader JSONReader::element(std::size_t index) const
{
    return JSONReader(m_value.at(index), m_path + "[" + std::to_string(index) + "]");
}

Int JSONReader::integer() const
{
    const bool fits = !m_value.is_number_unsigned() ||
                      m_value.get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<Int>::max()};
    if (!m_value.is_number_integer() || !fits) {
        fail("a whole number within 64 bits is expected");
    }
    return m_value.get<Int>();
}

std::uint8_t JSONReader::byte() const
{
    const Int value = integer();
    if (value < 0 || value > 255) {
        fail(std::to_string(value) + " is outside 0 to 255");
    }
    return static_cast<std::uint8_t>(value);
}

double JSONReader::number() const
{
    if (!m_value.is_number()) {
        fail("a number is expected");
    }
    return m_value.get<double>();
}

bool JSONReader::boolean() const
{
    if (!m_value.is_boolean()) {
        fail("true or false is expected");
    }
    return m_value.get<bool>();
}

const std::string &JSONReader::text() const
{
    const auto *text = m_value.get_ptr<const std::string *>();
    if (!text) {
        fail("a string is expected");
    }
    return *text;
}

} // namespace kelmoth
