#!/usr/bin/env python3
"""Writes the files that tst_writers.cpp expects, from parameters.tsv (code, description, value; UTF-8).

Deliberately shares nothing with the program. Run by hand when parameters.tsv changes.
"""

import struct
from pathlib import Path

HERE = Path(__file__).parent
MAC = "000B82A1b2C3"


def read_parameters():
    text = (HERE / "parameters.tsv").read_text(encoding="utf-8")
    return sorted(tuple(line.split("\t")) for line in text.splitlines())


def ansi(text):
    return text.encode("cp1252", errors="replace")


def text_file(lines):
    return b"".join(ansi(line) + b"\r\n" for line in lines)


def image(parameters):
    pairs = [f"P{code}={value}" for code, _, value in reversed(parameters)]
    body = bytes.fromhex(MAC) + b"\r\n\r\n" + ansi("&".join(pairs + ["gnkey=7c3e"]))
    body += bytes(len(body) % 2)
    words = struct.unpack(f">{len(body) // 2}H", body)
    count = len(words) + 3  # the length takes two words, the checksum one
    return struct.pack(">IH", count, -(sum(words) + count) % 0x10000) + body


def main():
    parameters = read_parameters()
    elements = [f"<{code}>{value}</{code}>" for code, _, value in parameters]
    lines = [f"{code}={value}" for code, _, value in parameters]
    comments = [f"<!-- {description} -->" for _, description, _ in parameters]

    def commented(entries):
        return [line for pair in zip(comments, entries) for line in pair]

    def profile(entries):
        return ["<flat-profile>", *entries, "</flat-profile>"]

    golden = {
        "gxp2000.device": image(parameters),
        "gxp2000.source": text_file(
            line
            for code, description, value in parameters
            for line in (f"# {description}", f"P{code} = {value}")
        ),
        "pap2.device": text_file(profile(elements)),
        "pap2.source": text_file(profile(commented(elements))),
        "f1000.device": text_file(lines),
        "f1000.source": text_file(commented(lines)),
    }
    for name, content in golden.items():
        (HERE / name).write_bytes(content)


if __name__ == "__main__":
    main()
