#include "Core/Services/LoginItem.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Services/FakeLoginItemService.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum LoginItemStatus;

constexpr auto pathKey = "loginItemRegisteredPath";
const std::string here = "/Applications/Link/Kelmoth";
using Calls = std::vector<std::string>;
using Path = std::optional<std::string>;

class LoginItemTest : public testing::Test {
protected:
    ~LoginItemTest() override { Platform::setCurrent({}); }

    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::shared_ptr<FakeLoginItemService> service = std::make_shared<FakeLoginItemService>();
    LoginItem item{service, defaults};
};

TEST_F(LoginItemTest, SwitchesOnAndOffAndRemembersFromWhere)
{
    struct Row {
        bool enabled;
        LoginItemStatus before;
        bool isInApplications;
        Path failure;
        Path storedBefore;
        Calls calls;
        Path description; ///< of the error
        Path storedAfter;
    };
    const std::string move = "Move Kelmoth to the Applications folder to launch it at login.";
    const std::vector<Row> rows{
        {true, notRegistered, true, {}, {}, {"register"}, {}, here},
        {true, enabled, true, {}, "/old", {}, {}, here},
        {true, requiresApproval, true, {}, {}, {"register"}, {}, here},
        {true, notRegistered, false, {}, "/old", {}, move, "/old"},
        {true, notRegistered, true, "no", "/old", {"register"}, "no", "/old"},
        {false, enabled, true, {}, here, {"unregister"}, {}, {}},
        {false, notRegistered, false, {}, here, {}, {}, {}},
        {false, notFound, true, "no", here, {"unregister"}, "no", here},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto &row = rows[i];
        defaults->values.clear();
        if (row.storedBefore) {
            defaults->setData(pathKey, *row.storedBefore);
        }
        service->now = row.before;
        service->isInApplications = row.isInApplications;
        service->registerFailure = service->unregisterFailure = row.failure;
        const auto error = item.setEnabled(row.enabled);
        EXPECT_EQ(service->takeCalls(), row.calls) << i;
        EXPECT_EQ(error ? Path(localizedDescription(*error)) : std::nullopt, row.description) << i;
        EXPECT_EQ(defaults->dataForKey(pathKey), row.storedAfter) << i;
    }
}

TEST_F(LoginItemTest, MendsARegistrationFromElsewhereAtTheStart)
{
    struct Row {
        LoginItemStatus before;
        bool isInApplications;
        Path storedBefore;
        Path registerFailure;
        Calls calls;
        Path storedAfter;
        Calls lines;
    };
    const auto mended = "✅ Launch at Login now points to " + here;
    const std::vector<Row> rows{
        {enabled, true, here, {}, {}, here, {}},
        {enabled, true, "/old", {}, {"unregister", "register"}, here, {mended}},
        {enabled, true, {}, {}, {"unregister", "register"}, here, {mended}},
        {enabled, false, "/old", {}, {}, "/old", {}},
        {requiresApproval, true, "/old", {}, {}, "/old", {}},
        {enabled,
         true,
         "/old",
         "disk full",
         {"unregister", "register"},
         "/old",
         {"❌ Launch at Login repair failed: disk full"}},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto &row = rows[i];
        defaults->values.clear();
        if (row.storedBefore) {
            defaults->setData(pathKey, *row.storedBefore);
        }
        service->now = row.before;
        service->isInApplications = row.isInApplications;
        service->registerFailure = row.registerFailure;
        item.repairIfNeeded();
        EXPECT_EQ(service->takeCalls(), row.calls) << i;
        EXPECT_EQ(defaults->dataForKey(pathKey), row.storedAfter) << i;
        EXPECT_EQ(log->takeLines(), row.lines) << i;
    }

    service->registerFailure.reset();
    service->now = enabled;
    service->unregisterFailure = "busy";
    defaults->values.clear();
    item.repairIfNeeded();
    EXPECT_THAT(service->takeCalls(), ElementsAre("unregister")) << "what stands is left standing";
    EXPECT_THAT(defaults->values, IsEmpty());
}

TEST(LoginItemWithoutServiceTest, IsOffAndCannotBeSwitchedOn)
{
    const auto defaults = std::make_shared<MemoryDefaults>();
    LoginItem item(nullptr, defaults);
    item.repairIfNeeded();
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_FALSE(item.setEnabled(false));
    EXPECT_EQ(item.status(), notRegistered);
}

} // namespace
} // namespace kelmoth
