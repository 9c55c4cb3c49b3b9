#pragma once

namespace kelmoth {

/// A channel on which a request and its answer belong together: two processes may own the same mouse, and
/// neither may read the other's answer.
class ExchangeChannel {
public:
    virtual ~ExchangeChannel() = default;

    /// Takes the mouse for one request and its answer, from every other process; waits a bounded time for
    /// it. 0 on success, else errno, and then nothing may be sent. Transfer thread.
    virtual int beginExchange() = 0;

    /// Gives back what a successful `beginExchange` took. Transfer thread.
    virtual void endExchange() = 0;
};

/// Holds a channel for as long as it lives.
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

    /// 0 while the channel is held, else the errno that says why it is not.
    int status() const { return m_status; }

private:
    ExchangeChannel &m_channel;
    int m_status;
};

} // namespace kelmoth
