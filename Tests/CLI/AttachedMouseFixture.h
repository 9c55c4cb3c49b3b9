#pragma once

#include "Tests/CLI/Shell.h"
#include "Tests/Hardware/MockMouse.h"

#include <gmock/gmock.h>

namespace kelmoth {

/// The built program on a mouse that is mocked at the kernel's side.
class AttachedMouseTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!m_testbed->isEffective()) {
            GTEST_SKIP() << "not run under umockdev-wrapper";
        }
    }

    MockMouse &plugIn(std::string_view model)
    {
        const auto now = [] {
            return std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now().time_since_epoch());
        };
        auto mouse = std::make_shared<SimulatedMouse>(SimulatedModel::named(model).value(), now);
        m_mouse = std::make_unique<MockMouse>(m_testbed, std::move(mouse));
        m_mouse->attach();
        return *m_mouse;
    }

private:
    std::shared_ptr<MockTestbed> m_testbed = std::make_shared<MockTestbed>();
    std::unique_ptr<MockMouse> m_mouse;
};

} // namespace kelmoth
