"""What the configuration files of the sample database cost without Velmora. Prints the seconds it took.

    yardstick_generation.py generate DATABASE FOLDER     writes the same files, in the plainest way
    yardstick_generation.py write COUNT SIZE FOLDER      only writes files, as a floor under the time
"""

import os
import sqlite3
import struct
import sys
import time


def expanded(value, phone, description):
    """The value with its macro replaced, which runs to the first apostrophe or to the end."""
    if "$$" not in value:
        return value
    token = value[value.index("$$"):].split("'")[0]
    name, *arguments = token.split(",")
    text = {"$$P": phone, "$$N": description}[name]
    if arguments:
        start, length = map(int, arguments)
        text = text[start - 1:start - 1 + length]
    return value.replace(token, text)


def parameters_of(database, company, model, phone, description):
    """The values by code; the first level that holds a code wins."""
    levels = [
        ("SELECT PA_CODE, PA_DEFAULT FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = ? AND LE_CODE = 'E'", (model,)),
        ("SELECT PA_CODE, PA_VALUE FROM COMPANY_PARAMETERS WHERE CO_CODE = ? AND EQ_CODE = ?", (company, model)),
        ("SELECT PA_CODE, PA_VALUE FROM PHONES_PARAMETERS WHERE CO_CODE = ? AND EQ_CODE = ? AND PH_CODE = ?",
         (company, model, phone)),
    ]
    parameters = {}
    for query, values in levels:
        for code, value in database.execute(query, values):
            parameters.setdefault(code, expanded(value, phone, description))
    return parameters


def image_of(mac, parameters):
    """The file that the phone loads: header with word count, checksum and address, then the parameters."""
    pairs = [f"P{code}={value}" for code, value in sorted(parameters.items(), reverse=True)]
    text = "&".join(pairs + ["gnkey=7c3e"]).encode("cp1252", "replace")
    body = bytes.fromhex(mac) + b"\r\n\r\n" + text
    body += b"\0" * (len(body) % 2)
    words = struct.unpack(f">{len(body) // 2}H", body)
    # The three words before the body count as zero when the complements are summed.
    checksum = (65535 * (len(words) + 3) - sum(words)) % 65536
    return struct.pack(">IH", len(words) + 3, checksum) + body


def generate(file, folder):
    database = sqlite3.connect(file)
    start = time.perf_counter()
    phones = database.execute(
        "SELECT CO_CODE, EQ_CODE, PH_CODE, PH_DESC, PH_MAC FROM PHONES WHERE CO_CODE = ? AND EQ_CODE = ? "
        "ORDER BY PH_CODE", ("ACME", "GXP2000")).fetchall()
    for company, model, phone, description, mac in phones:
        image = image_of(mac, parameters_of(database, company, model, phone, description))
        with open(os.path.join(folder, "cfg" + mac), "wb") as output:
            output.write(image)
    return time.perf_counter() - start


def write(count, size, folder):
    content = b"x" * size
    start = time.perf_counter()
    for number in range(count):
        with open(os.path.join(folder, f"cfg{number:012X}"), "wb") as output:
            output.write(content)
    return time.perf_counter() - start


if sys.argv[1] == "generate":
    print(generate(sys.argv[2], sys.argv[3]))
else:
    print(write(int(sys.argv[2]), int(sys.argv[3]), sys.argv[4]))
