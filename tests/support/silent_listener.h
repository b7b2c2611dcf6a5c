// A port on which connections are never taken.
#pragma once

#include <QTcpSocket>

#include <memory>
#include <vector>

namespace velmora {

/// Listens on loopback with the shortest queue, which it fills itself: who connects now waits.
class SilentListener {
public:
    SilentListener();
    ~SilentListener();
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;

    quint16 port() const { return m_port; }
    /// Takes the connections that wait, so that the next one comes up; nobody answers on it.
    void takeConnections();
    /// Whether something has been sent on one of them.
    bool hasReceived() const;

private:
    int m_socket = -1;
    quint16 m_port = 0;
    std::vector<std::unique_ptr<QTcpSocket>> m_queue;
    std::vector<int> m_taken;
};

} // namespace velmora
