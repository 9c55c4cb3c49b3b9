#pragma once

#include "Testbed/MockTestbed.h"

#include <gtest/gtest.h>

namespace kelmoth {

/// A test on a machine whose devices are mocked.
class MockedMachineTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!umockdev_in_mock_environment()) {
            GTEST_SKIP() << "not run under umockdev-wrapper";
        }
    }

    const std::shared_ptr<MockTestbed> testbed = std::make_shared<MockTestbed>();
};

} // namespace kelmoth
