#include "Platform/Linux/Udev.h"

#include "Platform/FileDescriptor.h"
#include "Platform/Linux/ReportDescriptor.h"

#include <QByteArrayView>
#include <QString>

#include <array>
#include <charconv>
#include <fcntl.h>
#include <span>
#include <utility>

namespace kelmoth {

namespace {

constexpr std::int64_t busUSB = 3;
constexpr std::int64_t busBluetooth = 5;

std::optional<std::string> text(const char *value)
{
    if (!value || *value == '\0') {
        return std::nullopt;
    }
    return std::string(value);
}

/// The text with invalid UTF-8 replaced by U+FFFD.
std::optional<std::string> validUTF8(const std::optional<std::string> &bytes)
{
    if (!bytes) {
        return std::nullopt;
    }
    return QString::fromUtf8(QByteArrayView(bytes->data(), static_cast<qsizetype>(bytes->size())))
        .toStdString();
}

/// A hexadecimal number of one to eight digits and nothing else.
std::optional<std::int64_t> hexNumber(std::string_view digits)
{
    std::uint32_t value = 0;
    const std::span<const char> characters = digits;
    const char *const end = std::to_address(characters.end());
    const auto [stop, error] = std::from_chars(characters.data(), end, value, 16);
    if (digits.size() > 8 || error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

struct HIDID {
    std::int64_t bus;
    std::int64_t vendor;
    std::int64_t product;
};

/// "0003:00001532:00000099": bus, vendor, product.
std::optional<HIDID> parseHIDID(std::string_view id)
{
    const auto first = id.find(':');
    const auto second = first == std::string_view::npos ? first : id.find(':', first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    const auto bus = hexNumber(id.substr(0, first));
    const auto vendor = hexNumber(id.substr(first + 1, second - first - 1));
    const auto product = hexNumber(id.substr(second + 1));
    if (!bus || !vendor || !product) {
        return std::nullopt;
    }
    return HIDID{*bus, *vendor, *product};
}

std::string transportName(std::int64_t bus)
{
    if (bus == busUSB) {
        return "USB";
    }
    return bus == busBluetooth ? "Bluetooth" : "Unknown";
}

std::vector<UdevDevice> scan(udev *context, udev_enumerate *enumerate)
{
    std::vector<UdevDevice> devices;
    if (udev_enumerate_scan_devices(enumerate) < 0) {
        return devices;
    }
    for (auto *entry = udev_enumerate_get_list_entry(enumerate); entry;
         entry = udev_list_entry_get_next(entry)) {
        // A device may vanish while the list is read.
        if (UdevDevice device(udev_device_new_from_syspath(context, udev_list_entry_get_name(entry)));
            device) {
            devices.push_back(std::move(device));
        }
    }
    return devices;
}

std::string hexID(std::uint16_t id)
{
    std::array<char, 4> digits{'0', '0', '0', '0'};
    std::array<char, 4> number{};
    const auto length = std::to_chars(number.begin(), number.end(), id, 16).ptr - number.begin();
    std::copy_n(number.begin(), length, digits.end() - length);
    return {digits.begin(), digits.end()};
}

} // namespace

std::optional<std::string> UdevDevice::property(const char *key) const
{
    return text(udev_device_get_property_value(m_device.get(), key));
}

std::optional<std::string> UdevDevice::attribute(const char *name) const
{
    return text(udev_device_get_sysattr_value(m_device.get(), name));
}

std::optional<std::int64_t> UdevDevice::hexAttribute(const char *name) const
{
    const auto value = attribute(name);
    return value ? hexNumber(*value) : std::nullopt;
}

std::string UdevDevice::syspath() const
{
    return udev_device_get_syspath(m_device.get());
}

std::optional<std::string> UdevDevice::node() const
{
    return text(udev_device_get_devnode(m_device.get()));
}

std::string UdevDevice::action() const
{
    return text(udev_device_get_action(m_device.get())).value_or("");
}

std::optional<std::string> UdevDevice::driver() const
{
    return text(udev_device_get_driver(m_device.get()));
}

UdevDevice UdevDevice::parent(const char *subsystem, const char *type) const
{
    // The parent is a borrowed reference of the child: take one of our own.
    return UdevDevice(
        udev_device_ref(udev_device_get_parent_with_subsystem_devtype(m_device.get(), subsystem, type)));
}

std::vector<UdevDevice> devicesOfSubsystem(udev *context, const char *subsystem, const UdevDevice *parent)
{
    const UdevPtr<udev_enumerate> enumerate(udev_enumerate_new(context));
    udev_enumerate_add_match_subsystem(enumerate.get(), subsystem);
    if (parent) {
        udev_enumerate_add_match_parent(enumerate.get(), parent->get());
    }
    return scan(context, enumerate.get());
}

std::vector<UdevDevice> usbDevices(udev *context, std::uint16_t vendorID,
                                   std::optional<std::uint16_t> productID)
{
    const UdevPtr<udev_enumerate> enumerate(udev_enumerate_new(context));
    udev_enumerate_add_match_subsystem(enumerate.get(), "usb");
    udev_enumerate_add_match_sysattr(enumerate.get(), "idVendor", hexID(vendorID).c_str());
    if (productID) {
        udev_enumerate_add_match_sysattr(enumerate.get(), "idProduct", hexID(*productID).c_str());
    }
    return scan(context, enumerate.get());
}

std::optional<HIDFacts> hidFacts(const UdevDevice &hidraw)
{
    const auto node = hidraw.node();
    const auto hid = hidraw.parent("hid", nullptr);
    const auto id = hid ? parseHIDID(hid.property("HID_ID").value_or("")) : std::nullopt;
    if (!node || !id) {
        return std::nullopt;
    }
    HIDFacts facts{.syspath = hidraw.syspath(),
                   .hidSyspath = hid.syspath(),
                   .node = *node,
                   .vendorID = id->vendor,
                   .productID = id->product,
                   .transport = transportName(id->bus),
                   .product = validUTF8(hid.property("HID_NAME")),
                   .serial = validUTF8(hid.property("HID_UNIQ")),
                   .interfaceNumber = std::nullopt};
    if (id->bus != busUSB) {
        return facts; // a Bluetooth mouse may sit below its adapter, which is a USB device too
    }
    if (const auto usb = hid.parent("usb", "usb_device")) {
        // The HID name is vendor and product, so a product that begins with its vendor repeats it.
        if (auto product = usbProduct(usb)) {
            facts.product = std::move(product);
        }
        if (!facts.serial) {
            facts.serial = validUTF8(usb.attribute("serial"));
        }
    }
    if (const auto interface = hid.parent("usb", "usb_interface")) {
        if (const auto number = interface.hexAttribute("bInterfaceNumber")) {
            facts.interfaceNumber = static_cast<int>(*number);
        }
    }
    return facts;
}

std::optional<std::string> usbProduct(const UdevDevice &usbDevice)
{
    // Use udev's copy: reading the attribute blocks on the kernel's device lock for some milliseconds after
    // each attach, while the interface drivers start. udev substitutes the product ID for a missing product
    // string.
    if (const auto encoded = usbDevice.property("ID_MODEL_ENC")) {
        if (encoded == usbDevice.attribute("idProduct")) {
            return std::nullopt;
        }
        return validUTF8(decodedProperty(*encoded));
    }
    return validUTF8(usbDevice.attribute("product"));
}

std::string decodedProperty(std::string_view encoded)
{
    std::string decoded;
    while (!encoded.empty()) {
        if (encoded.size() >= 4 && encoded.substr(0, 2) == "\\x") {
            if (const auto byte = hexNumber(encoded.substr(2, 2))) {
                decoded.push_back(static_cast<char>(*byte));
                encoded.remove_prefix(4);
                continue;
            }
        }
        decoded.push_back(encoded.front());
        encoded.remove_prefix(1);
    }
    return decoded;
}

std::optional<std::int64_t> readMaxFeatureReportSize(const std::string &hidSyspath)
{
    const FileDescriptor file(::open((hidSyspath + "/report_descriptor").c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(8192); // larger than the limit, to detect descriptors beyond it
    std::size_t length = 0;
    while (length < bytes.size()) {
        const auto count = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    return maxFeatureReportSize(std::span(bytes).first(length));
}

} // namespace kelmoth
