#pragma once

#include <QCoreApplication>

#include <memory>

namespace kelmoth {

/// The application's one instance of a service, which `make` gives as a unique pointer when it is first asked
/// for. Instances go with the application object, the youngest first: what a service was made of outlives it.
/// Main thread.
template <class Make> auto &sharedInstance(const Make &make)
{
    static decltype(make()) instance;
    if (!instance) {
        instance = make();
        qAddPostRoutine([] { instance.reset(); });
    }
    return *instance;
}

} // namespace kelmoth
