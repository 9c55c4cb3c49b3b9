#include "Platform/Platform.h"

#include <utility>

namespace kelmoth {

namespace {

Platform &installed()
{
    static Platform platform;
    return platform;
}

} // namespace

const Platform &Platform::current()
{
    return installed();
}

void Platform::setCurrent(Platform platform)
{
    installed() = std::move(platform);
}

} // namespace kelmoth
