#include "Core/Services/LoginItem.h"

#include "Core/Services/L10n.h"
#include "Platform/Platform.h"

namespace kelmoth {

namespace {

/// Takes a success into the memory before it tells of it.
LoginItemService::Done finishing(LoginItem::Done done, std::function<void()> remember)
{
    return [done = std::move(done), remember = std::move(remember)](std::optional<std::string> failure) {
        if (failure) {
            done(LoginItemServiceError{std::move(*failure)});
            return;
        }
        remember();
        done(std::nullopt);
    };
}

} // namespace

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

void LoginItem::setEnabled(bool enabled, const Done &done)
{
    enabled ? enable(done) : disable(done);
}

void LoginItem::enable(const Done &done)
{
    if (!isInApplicationsFolder()) {
        done(NotInApplicationsError{});
        return;
    }
    const auto finish =
        finishing(done, [this] { m_defaults->setData(registeredPathKey, m_service->bundlePath()); });
    if (m_service->status() == LoginItemStatus::enabled) {
        finish(std::nullopt);
    } else {
        m_service->registerItem(finish);
    }
}

void LoginItem::disable(const Done &done)
{
    const auto finish = finishing(done, [this] { m_defaults->removeObject(registeredPathKey); });
    if (status() == LoginItemStatus::notRegistered) {
        finish(std::nullopt);
    } else {
        m_service->unregisterItem(finish);
    }
}

void LoginItem::repairIfNeeded()
{
    const bool isRegisteredHere = isInApplicationsFolder() && m_service->status() == LoginItemStatus::enabled;
    if (isRegisteredHere && m_defaults->dataForKey(registeredPathKey) != m_service->bundlePath()) {
        registerAnew();
    }
}

void LoginItem::registerAnew()
{
    const auto finish = [this](const std::optional<std::string> &failure) {
        if (failure) {
            log("❌ Launch at Login repair failed: %s", failure->c_str());
            return;
        }
        const auto path = m_service->bundlePath();
        m_defaults->setData(registeredPathKey, path);
        log("✅ Launch at Login now points to %s", path.c_str());
    };
    m_service->unregisterItem([this, finish](const std::optional<std::string> &failure) {
        if (failure) {
            finish(failure);
        } else {
            m_service->registerItem(finish);
        }
    });
}

} // namespace kelmoth
