"""What restarting phones costs with plain blocking sockets. Prints the seconds it took.

    yardstick_reboot.py PORT PHONES     restarts GXP2000 at 127.0.1.1 and so on
"""

import socket
import sys
import time

HEAD = " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: fr\r\nUser-Agent: Winsock\r\nHost: {}\r\n"


def exchange(address, port, request):
    """The whole reply to a request."""
    with socket.create_connection((address, port), timeout=5) as connection:
        connection.sendall(request.encode())
        reply = b""
        while True:
            part = connection.recv(65536)
            if not part:
                return reply.decode("latin-1")
            reply += part


def restart(address, port):
    """One phone's three exchanges."""
    head = HEAD.format(address)
    exchange(address, port, "GET /" + head + "\r\n")
    login = exchange(address, port,
                     "POST /dologin.htm" + head + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n")
    cookie = login.split("Set-Cookie: ", 1)[1].split(";", 1)[0]
    if "rebooting" not in exchange(address, port, "GET /rs.htm" + head + "Cookie: " + cookie + "\r\n\r\n"):
        sys.exit(f"{address} was not restarted")


def main():
    port, phones = int(sys.argv[1]), int(sys.argv[2])
    start = time.perf_counter()
    for phone in range(1, phones + 1):
        restart(f"127.0.1.{phone}", port)
    print(time.perf_counter() - start)


main()
