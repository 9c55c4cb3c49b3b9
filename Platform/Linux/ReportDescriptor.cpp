#include "Platform/Linux/ReportDescriptor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace kelmoth {

namespace {

// The kernel's limits: it gives no hidraw node to a descriptor beyond them.
constexpr std::size_t maxDescriptorSize = 4096;
constexpr std::size_t maxPushDepth = 4;
constexpr std::uint32_t maxReportSize = 256;    // bits of one field
constexpr std::uint32_t maxReportCount = 12288; // fields of one item
constexpr std::uint32_t maxReportBits = (16384 - 1) * 8;

constexpr std::uint8_t longItemPrefix = 0xFE;

/// Type and tag of a short item: its prefix without the two bits of size.
enum Tag : std::uint8_t {
    collection = 0xA0,
    endCollection = 0xC0,
    feature = 0xB0,
    reportSize = 0x74,
    reportID = 0x84,
    reportCount = 0x94,
    push = 0xA4,
    pop = 0xB4,
};

struct Item {
    std::uint8_t tag = 0;
    std::uint32_t value = 0;
};

/// The global items that determine the length of a report.
struct Globals {
    std::uint32_t size = 0;
    std::uint32_t count = 0;
    std::uint8_t id = 0;
};

/// Reads the items of a descriptor.
class ItemReader {
public:
    explicit ItemReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    bool atEnd() const { return m_bytes.empty(); }

    /// The next item; none when it is truncated. A long item, whose content is ignored, has the tag 0xFC.
    std::optional<Item> next()
    {
        const std::uint8_t prefix = m_bytes.front();
        if (prefix == longItemPrefix) {
            // Prefix, size, tag, then the data.
            if (m_bytes.size() < 3 || !skip(std::size_t{3} + m_bytes[1])) {
                return std::nullopt;
            }
            return Item{.tag = longItemPrefix & 0xFC};
        }
        const std::size_t size = (prefix & 0x03) == 3 ? 4 : prefix & 0x03;
        Item item{.tag = static_cast<std::uint8_t>(prefix & 0xFC)};
        const auto data = m_bytes.subspan(1);
        if (!skip(1 + size)) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < size; ++i) {
            item.value |= static_cast<std::uint32_t>(data[i]) << (8 * i);
        }
        return item;
    }

private:
    bool skip(std::size_t count)
    {
        if (count > m_bytes.size()) {
            return false;
        }
        m_bytes = m_bytes.subspan(count);
        return true;
    }

    std::span<const std::uint8_t> m_bytes;
};

/// Sums up the feature reports, item by item.
class FeatureReports {
public:
    /// False when the item makes the descriptor invalid.
    bool take(const Item &item)
    {
        switch (item.tag) {
        case collection:
            ++m_depth;
            return true;
        case endCollection:
            return m_depth-- > 0;
        case feature:
            return addFeature();
        case reportSize:
            m_globals.size = item.value;
            return item.value <= maxReportSize;
        case reportCount:
            m_globals.count = item.value;
            return item.value <= maxReportCount;
        case reportID:
            m_usesIDs = true;
            m_globals.id = static_cast<std::uint8_t>(item.value);
            return item.value >= 1 && item.value <= 255;
        case push:
            m_stack.push_back(m_globals);
            return m_stack.size() <= maxPushDepth;
        case pop:
            if (m_stack.empty()) {
                return false;
            }
            m_globals = m_stack.back();
            m_stack.pop_back();
            return true;
        default:
            return true;
        }
    }

    std::optional<std::int64_t> longest() const
    {
        const auto bits = std::ranges::max(m_bits);
        if (m_depth != 0 || bits == 0) {
            return std::nullopt;
        }
        return static_cast<std::int64_t>((bits + 7) / 8) + (m_usesIDs ? 1 : 0);
    }

private:
    bool addFeature()
    {
        auto &bits = m_bits[m_globals.id];
        bits += m_globals.size * m_globals.count; // at most 2^22 at a time
        return bits <= maxReportBits;
    }

    std::array<std::uint32_t, 256> m_bits{}; // by report ID
    std::vector<Globals> m_stack;
    Globals m_globals;
    int m_depth = 0;
    bool m_usesIDs = false;
};

} // namespace

std::optional<std::int64_t> maxFeatureReportSize(std::span<const std::uint8_t> descriptor)
{
    if (descriptor.size() > maxDescriptorSize) {
        return std::nullopt;
    }
    FeatureReports reports;
    ItemReader reader(descriptor);
    while (!reader.atEnd()) {
        const auto item = reader.next();
        if (!item || !reports.take(*item)) {
            return std::nullopt;
        }
    }
    return reports.longest();
}

} // namespace kelmoth
