#include "support/silent_listener.h"

#include <QHostAddress>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velmora {

SilentListener::SilentListener() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_socket, plain, length) != 0 || listen(m_socket, 0) != 0 ||
        getsockname(m_socket, plain, &length) != 0)
        qFatal("no port to be silent on");
    m_port = ntohs(address.sin_port);
    for (bool taken = true; taken;) {
        m_queue.push_back(std::make_unique<QTcpSocket>());
        m_queue.back()->connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
        taken = m_queue.back()->waitForConnected(300);
    }
}

void SilentListener::takeConnections()
{
    for (int number = 0; number < 100; ++number)
        if (const int taken = accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK); taken >= 0)
            m_taken.push_back(taken);
}

bool SilentListener::hasReceived() const
{
    char byte = 0;
    const int last = accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK);
    const bool received = last >= 0 && recv(last, &byte, 1, 0) == 1;
    close(last);
    return received;
}

SilentListener::~SilentListener()
{
    for (const int taken : m_taken)
        close(taken);
    close(m_socket);
}

} // namespace velmora
