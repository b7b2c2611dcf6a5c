"""What restarting phones costs with plain blocking sockets, or with asyncio. Prints the seconds it took.

    yardstick_reboot.py PORT PHONES AT_ONCE EXPECTED
        restarts GXP2000 at 127.0.1.1 and so on, so many at a time (0: one by one, without asyncio); that many must
        answer
"""

import asyncio
import socket
import sys
import time

HEAD = " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: fr\r\nUser-Agent: Winsock\r\nHost: {}\r\n"


def address_of(phone):
    return f"127.0.{phone // 250 + 1}.{phone % 250 + 1}"


def login_request(head):
    return "POST /dologin.htm" + head + "Content-Length: 23\r\n\r\nP2=secret&gnkey=7c3e\r\n"


def restart_request(head, login):
    return "GET /rs.htm" + head + "Cookie: " + login.split("Set-Cookie: ", 1)[1].split(";", 1)[0] + "\r\n\r\n"


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
    """Whether one phone has taken its three exchanges."""
    head = HEAD.format(address)
    try:
        exchange(address, port, "GET /" + head + "\r\n")
        login = exchange(address, port, login_request(head))
        return "rebooting" in exchange(address, port, restart_request(head, login))
    except OSError:
        return False


async def exchange_meanwhile(address, port, request):
    """The same, while others go on."""
    reader, writer = await asyncio.open_connection(address, port)
    try:
        writer.write(request.encode())
        return (await reader.read(-1)).decode("latin-1")
    finally:
        writer.close()


async def restart_meanwhile(address, port, turns):
    head = HEAD.format(address)
    async with turns:
        try:
            await asyncio.wait_for(exchange_meanwhile(address, port, "GET /" + head + "\r\n"), 5)
            login = await asyncio.wait_for(exchange_meanwhile(address, port, login_request(head)), 5)
            return "rebooting" in await asyncio.wait_for(
                exchange_meanwhile(address, port, restart_request(head, login)), 5)
        except (OSError, asyncio.TimeoutError):
            return False


async def restart_all(port, phones, at_once):
    turns = asyncio.Semaphore(at_once)
    return sum(await asyncio.gather(*(restart_meanwhile(address_of(phone), port, turns) for phone in range(phones))))


def main():
    port, phones, at_once, expected = (int(word) for word in sys.argv[1:])
    start = time.perf_counter()
    if at_once == 0:
        restarted = sum(restart(address_of(phone), port) for phone in range(phones))
    else:
        restarted = asyncio.run(restart_all(port, phones, at_once))
    taken = time.perf_counter() - start
    if restarted != expected:
        sys.exit(f"{restarted} instead of {expected} restarted")
    print(taken)


main()
