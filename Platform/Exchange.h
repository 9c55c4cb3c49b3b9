#pragma once

namespace kelmoth {

/// A channel that can be locked for a request and its answer, so that two processes that use the same mouse
/// do not read each other's answers.
class ExchangeChannel {
public:
    virtual ~ExchangeChannel() = default;

    /// Locks the mouse for one request and its answer against other processes; waits a bounded time. 0 on
    /// success, else errno: then send nothing. Transfer thread.
    virtual int beginExchange() = 0;

    /// Releases the lock of a successful `beginExchange`. Transfer thread.
    virtual void endExchange() = 0;
};

/// Locks a channel for its own lifetime.
class ExchangeScope {
public:
    explicit ExchangeScope(ExchangeChannel &channel) : m_channel(channel), m_status(channel.beginExchange())
    {
    }
    ~ExchangeScope()
    {
        if (m_status == 0) {
            m_channel.endExchange();
        }
    }
    ExchangeScope(const ExchangeScope &) = delete;
    ExchangeScope &operator=(const ExchangeScope &) = delete;

    /// 0 while the channel is locked, else the errno of the failure.
    int status() const { return m_status; }

private:
    ExchangeChannel &m_channel;
    int m_status;
};

} // namespace kelmoth
