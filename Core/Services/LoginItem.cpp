#include "Core/Services/LoginItem.h"

#include "Core/Services/L10n.h"
#include "Platform/Platform.h"

namespace kelmoth {

std::string NotInApplicationsError::localizedDescription() const
{
    return L10n::text(key);
}

std::string localizedDescription(const LoginItemError &error)
{
    return std::visit([](const auto &which) { return which.localizedDescription(); }, error);
}

LoginItem &LoginItem::shared()
{
    static LoginItem item(Platform::current().loginItemService, Platform::current().userDefaults);
    return item;
}

LoginItem::LoginItem(std::shared_ptr<LoginItemService> service, std::shared_ptr<UserDefaults> defaults)
    : m_service(std::move(service)), m_defaults(std::move(defaults))
{
}

LoginItemStatus LoginItem::status() const
{
    return m_service ? m_service->status() : LoginItemStatus::notRegistered;
}

bool LoginItem::isInApplicationsFolder() const
{
    return m_service && m_service->isInApplicationsFolder();
}

void LoginItem::openLoginItemsSettings()
{
    if (m_service) {
        m_service->openLoginItemsSettings();
    }
}

std::optional<LoginItemError> LoginItem::setEnabled(bool enabled)
{
    return enabled ? enable() : disable();
}

std::optional<LoginItemError> LoginItem::enable()
{
    if (!isInApplicationsFolder()) {
        return NotInApplicationsError{};
    }
    if (m_service->status() != LoginItemStatus::enabled) {
        if (auto failure = m_service->registerItem()) {
            return LoginItemServiceError{std::move(*failure)};
        }
    }
    m_defaults->setData(registeredPathKey, m_service->bundlePath());
    return std::nullopt;
}

std::optional<LoginItemError> LoginItem::disable()
{
    if (status() != LoginItemStatus::notRegistered) {
        if (auto failure = m_service->unregisterItem()) {
            return LoginItemServiceError{std::move(*failure)};
        }
    }
    m_defaults->removeObject(registeredPathKey);
    return std::nullopt;
}

void LoginItem::repairIfNeeded()
{
    if (!isInApplicationsFolder() || m_service->status() != LoginItemStatus::enabled) {
        return;
    }
    const auto path = m_service->bundlePath();
    if (m_defaults->dataForKey(registeredPathKey) == path) {
        return;
    }
    if (const auto failure = registerAnew()) {
        log("❌ Launch at Login repair failed: %s", failure->c_str());
        return;
    }
    m_defaults->setData(registeredPathKey, path);
    log("✅ Launch at Login now points to %s", path.c_str());
}

/// What went wrong; none on success.
std::optional<std::string> LoginItem::registerAnew()
{
    auto failure = m_service->unregisterItem();
    return failure ? failure : m_service->registerItem();
}

} // namespace kelmoth
