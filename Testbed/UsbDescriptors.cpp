#include "Testbed/UsbDescriptors.h"

#include <array>
#include <string>

namespace kelmoth {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t interfaceCount = 4;

/// Without the closing END_COLLECTION.
const std::array<Bytes, interfaceCount> reportDescriptors{{
    // A mouse: five buttons, X and Y of 16 bits, a wheel.
    {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0x05, 0x09, 0x19, 0x01, 0x29, 0x05, 0x15, 0x00, 0x25,
     0x01, 0x95, 0x05, 0x75, 0x01, 0x81, 0x02, 0x95, 0x01, 0x75, 0x03, 0x81, 0x01, 0x05, 0x01,
     0x09, 0x30, 0x09, 0x31, 0x16, 0x01, 0x80, 0x26, 0xFF, 0x7F, 0x75, 0x10, 0x95, 0x02, 0x81,
     0x06, 0x09, 0x38, 0x15, 0x81, 0x25, 0x7F, 0x75, 0x08, 0x95, 0x01, 0x81, 0x06},
    // A keyboard: eight modifiers, six keys.
    {0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00,
     0x25, 0x01, 0x75, 0x01, 0x95, 0x08, 0x81, 0x02, 0x75, 0x08, 0x95, 0x01, 0x81, 0x01,
     0x19, 0x00, 0x29, 0x65, 0x15, 0x00, 0x25, 0x65, 0x95, 0x06, 0x81, 0x00},
    // Media keys: one at a time.
    {0x05, 0x0C, 0x09, 0x01, 0xA1, 0x01, 0x19, 0x00, 0x2A, 0x3C, 0x02,
     0x15, 0x00, 0x26, 0x3C, 0x02, 0x75, 0x10, 0x95, 0x01, 0x81, 0x00},
    // The vendor's: 15 bytes in.
    {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01, 0x15, 0x00, 0x26,
     0xFF, 0x00, 0x75, 0x08, 0x95, 0x0F, 0x09, 0x02, 0x81, 0x02},
}};

/// 90 bytes of the vendor's page.
const Bytes commandReport{0x06, 0x00, 0xFF, 0x09, 0x03, 0x15, 0x00, 0x26,
                          0xFF, 0x00, 0x75, 0x08, 0x95, 0x5A, 0xB1, 0x02};

void append(Bytes &bytes, const Bytes &more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

Bytes reportDescriptor(const SimulatedMouse &mouse, std::uint16_t interface)
{
    auto descriptor = reportDescriptors.at(interface);
    if (interface == mouse.protocolInterface()) {
        append(descriptor, commandReport);
    }
    descriptor.push_back(0xC0);
    return descriptor;
}

std::uint8_t low(std::size_t value)
{
    return static_cast<std::uint8_t>(value & 0xFF);
}

std::uint8_t high(std::size_t value)
{
    return static_cast<std::uint8_t>(value >> 8);
}

Bytes deviceDescriptor(const SimulatedModel &model)
{
    return {18,
            1,
            0x00,
            0x02,
            0,
            0,
            0,
            64,
            low(model.vendorID),
            high(model.vendorID),
            low(model.productID),
            high(model.productID),
            0x00,
            0x02,
            1,
            2,
            3,
            1};
}

Bytes configurationDescriptor(const SimulatedMouse &mouse)
{
    Bytes bytes{9, 2, 0, 0, interfaceCount, 1, 0, 0xA0, 250}; // remote wake-up, 500 mA
    for (std::uint8_t i = 0; i < interfaceCount; ++i) {
        const auto length = reportDescriptor(mouse, i).size();
        const std::uint8_t subclass = i < 2 ? 1 : 0;                   // takes the boot protocol
        const auto protocol = std::array<std::uint8_t, 4>{2, 1, 0, 0}; // mouse, keyboard
        append(bytes, {9, 4, i, 0, 1, 3, subclass, protocol.at(i), 0});
        append(bytes, {9, 0x21, 0x11, 0x01, 0, 1, 0x22, low(length), high(length)});
        append(bytes, {7, 5, static_cast<std::uint8_t>(0x81 + i), 3, 64, 0, 1}); // each frame, that is 1 ms
    }
    bytes[2] = low(bytes.size());
    bytes[3] = high(bytes.size());
    return bytes;
}

Bytes stringDescriptor(const std::string &text)
{
    Bytes bytes{low(2 + 2 * text.size()), 3};
    for (const char c : text) {
        append(bytes, {static_cast<std::uint8_t>(c), 0});
    }
    return bytes;
}

} // namespace

std::optional<Bytes> usbDescriptor(const SimulatedMouse &mouse, std::uint8_t type, std::uint8_t index,
                                   std::uint16_t wIndex)
{
    const auto &model = mouse.model();
    switch (type) {
    case 1:
        return deviceDescriptor(model);
    case 2:
        return configurationDescriptor(mouse);
    case 3: {
        const std::array<std::string, 4> strings{"", "Razer", model.productName, model.serialNumber};
        if (index == 0) {
            return Bytes{4, 3, 0x09, 0x04};
        }
        return index < strings.size() ? std::optional(stringDescriptor(strings.at(index))) : std::nullopt;
    }
    case 0x22:
        return wIndex < interfaceCount ? std::optional(reportDescriptor(mouse, wIndex)) : std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace kelmoth
