#include "Core/Services/Application.h"

#include "Platform/Platform.h"

namespace kelmoth::application {

std::string version()
{
    const auto &bundle = Platform::current().mainBundle;
    const auto text = bundle ? bundle->version() : std::string();
    return text.empty() ? "?" : text;
}

} // namespace kelmoth::application
