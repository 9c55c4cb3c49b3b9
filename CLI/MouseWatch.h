#pragma once

#include "CLI/Session.h"
#include "Platform/FileDescriptor.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QSocketNotifier>
#include <QUuid>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kelmoth {

/// Writes a line for each thing that happens to a mouse, until the end of its reader or of the process.
/// Sleeps in between: it has no timer. Main thread.
class MouseWatch : public QObject {
    Q_OBJECT

public:
    /// Begins with the mice that are attached. The session outlives the watch.
    explicit MouseWatch(Session *session);

    /// False when the system does not tell of mice that come and go.
    bool isWatching() const { return m_session->monitor().isMonitoring(); }

    /// Finished when there is nothing more to write, or nobody to write it for.
    QFuture<void> finished() const { return m_promise.future(); }

private:
    void report();
    void watchReader();
    void finish();

    Session *m_session;
    FileDescriptor m_hangUp; ///< becomes readable when the reader goes
    std::unique_ptr<QSocketNotifier> m_reader;
    std::vector<RazerDevice> m_known;
    std::map<QUuid, std::string> m_paths;
    QPromise<void> m_promise;
};

} // namespace kelmoth
