#include "Tests/Hardware/MockTestbed.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kelmoth {

namespace {

constexpr ::uid_t nobody = 65534;

/// A GObject that hands every ioctl to a C++ function.
struct Handler {
    UMockdevIoctlBase parent;
    MockTestbed::Handler *function;
};
struct HandlerClass {
    UMockdevIoctlBaseClass parent;
};

G_DEFINE_TYPE(Handler, kelmoth_mock_handler, UMOCKDEV_TYPE_IOCTL_BASE)

gboolean handleIoctl(UMockdevIoctlBase *self, UMockdevIoctlClient *client)
{
    MockIoctl ioctl(client);
    (*reinterpret_cast<Handler *>(self)->function)(ioctl);
    return TRUE;
}

void finalizeHandler(GObject *object)
{
    delete reinterpret_cast<Handler *>(object)->function;
    G_OBJECT_CLASS(kelmoth_mock_handler_parent_class)->finalize(object);
}

void kelmoth_mock_handler_init(Handler *) {}

void kelmoth_mock_handler_class_init(HandlerClass *type)
{
    type->parent.handle_ioctl = handleIoctl;
    G_OBJECT_CLASS(type)->finalize = finalizeHandler;
}

void throwOn(GError *error)
{
    if (error) {
        const std::string message = error->message;
        g_error_free(error);
        throw std::runtime_error(message);
    }
}

/// The NULL-terminated list of names and values that umockdev takes.
std::vector<gchar *> flatten(const MockTestbed::Pairs &pairs)
{
    std::vector<gchar *> list;
    for (const auto &[name, value] : pairs) {
        list.push_back(const_cast<gchar *>(name.c_str()));
        list.push_back(const_cast<gchar *>(value.c_str()));
    }
    list.push_back(nullptr);
    return list;
}

} // namespace

WithoutRights::WithoutRights() : m_user(::geteuid())
{
    if (m_user == 0 && ::seteuid(nobody) != 0) {
        throw std::system_error(errno, std::generic_category(), "seteuid");
    }
}

WithoutRights::~WithoutRights()
{
    if (m_user == 0 && ::seteuid(m_user) != 0) {
        std::abort(); // further tests would judge something else
    }
}

GObjectPtr<UMockdevIoctlData> MockIoctl::argument(std::size_t size) const
{
    return pointee(umockdev_ioctl_client_get_arg(m_client), 0, size);
}

GObjectPtr<UMockdevIoctlData> MockIoctl::pointee(UMockdevIoctlData *data, std::size_t offset,
                                                 std::size_t size)
{
    GError *error = nullptr;
    GObjectPtr<UMockdevIoctlData> target(umockdev_ioctl_data_resolve(data, offset, size, &error));
    throwOn(error);
    return target;
}

std::vector<std::uint8_t> MockIoctl::bytes(UMockdevIoctlData *data)
{
    guint8 *copy = nullptr;
    gint length = 0;
    umockdev_ioctl_data_retrieve(data, &copy, &length);
    std::vector<std::uint8_t> result(copy, copy + length);
    g_free(copy);
    return result;
}

void MockIoctl::write(UMockdevIoctlData *data, std::span<const std::uint8_t> bytes, std::size_t offset)
{
    std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
    umockdev_ioctl_data_update(data, offset, copy.data(), static_cast<gint>(copy.size()));
}

void MockIoctl::complete(int result)
{
    umockdev_ioctl_client_complete(m_client, result < 0 ? -1 : result, result < 0 ? -result : 0);
}

MockTestbed::MockTestbed() : m_testbed(umockdev_testbed_new())
{
    gchar *root = umockdev_testbed_get_root_dir(m_testbed.get());
    m_root = root;
    g_free(root);
    // Programs under test may run as a user without rights; a monitor of theirs is a socket in there.
    fs::permissions(m_root, fs::perms::all);
    fs::permissions(path("/ioctl/_default"), fs::perms::all);
    fs::create_directories(path("/dev"));
}

bool MockTestbed::isEffective() const
{
    const std::string node = "/dev/kelmoth-probe";
    std::ofstream(path(node)).put('x');
    struct ::stat status{};
    const bool isThere = ::stat(node.c_str(), &status) == 0;
    fs::remove(path(node));
    return isThere;
}

std::string MockTestbed::addDevice(const std::string &subsystem, const std::string &name,
                                   const std::string &parent, const Pairs &attributes,
                                   const Pairs &properties)
{
    auto attributeList = flatten(attributes);
    auto propertyList = flatten(properties);
    gchar *const syspath = umockdev_testbed_add_devicev(m_testbed.get(), subsystem.c_str(), name.c_str(),
                                                        parent.empty() ? nullptr : parent.c_str(),
                                                        attributeList.data(), propertyList.data());
    std::string result = syspath;
    g_free(syspath);
    return result;
}

void MockTestbed::setBinaryAttribute(const std::string &syspath, const std::string &name,
                                     std::vector<std::uint8_t> value)
{
    umockdev_testbed_set_attribute_binary(m_testbed.get(), syspath.c_str(), name.c_str(), value.data(),
                                          static_cast<gint>(value.size()));
}

void MockTestbed::setDriver(const std::string &syspath, const std::string &driver)
{
    umockdev_testbed_set_attribute_link(m_testbed.get(), syspath.c_str(), "driver",
                                        ("/sys/bus/usb/drivers/" + driver).c_str());
}

void MockTestbed::removeDevice(const std::string &syspath)
{
    umockdev_testbed_remove_device(m_testbed.get(), syspath.c_str());
}

void MockTestbed::sendEvent(const std::string &syspath, const std::string &action)
{
    umockdev_testbed_uevent(m_testbed.get(), syspath.c_str(), action.c_str());
}

void MockTestbed::addNode(const std::string &node, std::span<const std::uint8_t> contents, Handler handler)
{
    const GObjectPtr<UMockdevIoctlBase> object(
        static_cast<UMockdevIoctlBase *>(g_object_new(kelmoth_mock_handler_get_type(), nullptr)));
    reinterpret_cast<kelmoth::Handler *>(object.get())->function =
        new MockTestbed::Handler(std::move(handler));
    GError *error = nullptr;
    umockdev_testbed_attach_ioctl(m_testbed.get(), node.c_str(), object.get(), &error);
    throwOn(error);
    fs::create_directories(fs::path(path(node)).parent_path());
    std::ofstream file(path(node), std::ios::binary);
    file.write(reinterpret_cast<const char *>(contents.data()),
               static_cast<std::streamsize>(contents.size()));
    file.close();
    setMode(node, 0666);
    // The ioctls of a program without rights must reach the handler too.
    fs::permissions(path("/ioctl" + node), fs::perms::all);
}

void MockTestbed::setMode(const std::string &node, unsigned mode)
{
    fs::permissions(path(node), fs::perms(mode));
}

void MockTestbed::removeNode(const std::string &node)
{
    if (!fs::remove(path(node))) {
        return;
    }
    GError *error = nullptr;
    umockdev_testbed_detach_ioctl(m_testbed.get(), node.c_str(), &error);
    throwOn(error);
}

} // namespace kelmoth
