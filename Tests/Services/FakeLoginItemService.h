#pragma once

#include "Platform/LoginItemService.h"

#include <string>
#include <utility>
#include <vector>

namespace kelmoth {

/// A system's login items, with a memory of what was asked of it.
class FakeLoginItemService : public LoginItemService {
public:
    LoginItemStatus now = LoginItemStatus::notRegistered;
    LoginItemStatus afterRegistering = LoginItemStatus::enabled;
    bool isInApplications = true;
    bool isSlow = false; ///< answers when the test calls `answerNow`
    std::function<void()> answerNow;
    std::string path = "/Applications/Link/Kelmoth";
    std::optional<std::string> registerFailure;
    std::optional<std::string> unregisterFailure;

    /// "register", "unregister" and "open settings", oldest first, and forgets them.
    std::vector<std::string> takeCalls() { return std::exchange(m_calls, {}); }

    LoginItemStatus status() const override { return now; }
    void registerItem(Done done) override
    {
        m_calls.emplace_back("register");
        now = registerFailure ? now : afterRegistering;
        answer(std::move(done), registerFailure);
    }
    void unregisterItem(Done done) override
    {
        m_calls.emplace_back("unregister");
        now = unregisterFailure ? now : LoginItemStatus::notRegistered;
        answer(std::move(done), unregisterFailure);
    }
    void openLoginItemsSettings() override { m_calls.emplace_back("open settings"); }
    bool isInApplicationsFolder() const override { return isInApplications; }
    std::string bundlePath() const override { return path; }

private:
    void answer(Done done, const std::optional<std::string> &failure)
    {
        answerNow = [done = std::move(done), failure] { done(failure); };
        if (!isSlow) {
            answerNow();
        }
    }

    std::vector<std::string> m_calls;
};

} // namespace kelmoth
