#!/usr/bin/python3
"""Verifies sealed recordings, written from docs/seal.md alone: it shares no code with the recorder.

Usage: verify.py [--key HEX] FILE...      (of one recorder; does not compare the schema)
Prints one verdict a file; ends with 0 when all are proven, 3 when one is not, 5 when seals are missing, 6 when
something was altered.
"""
import hashlib
import sqlite3
import struct
import sys

from nacl.exceptions import BadSignatureError
from nacl.signing import VerifyKey

LEVELS = 20
NO_KEY = bytes(32)


class Bad(Exception):
    pass


def blake(label, data):
    return hashlib.blake2b(bytes([label]) + data, digest_size=32).digest()


def number(value, first=0, bits=0):
    """Groups of seven bits, the lowest first; the first one has `bits` less, for a type."""
    groups = [value << bits & 0x7F | first]
    value >>= 7 - bits
    while value:
        groups.append(value & 0x7F)
        value >>= 7
    return bytes(group | 0x80 for group in groups[:-1]) + bytes(groups[-1:])


def value_bytes(value):
    if value is None:
        return b"\0"
    if isinstance(value, int):
        return number(value << 1 if value >= 0 else ~(value << 1), 1, 2)
    if isinstance(value, bytes):  # a text, taken from SQLite as it stands
        return number(len(value), 2, 2) + value
    raise Bad(f"a value of type {type(value).__name__}")


def row_bytes(table, row):
    name = table.encode()
    return number(len(name)) + name + number(len(row)) + b"".join(map(value_bytes, row))


def signed_by(key, message, signature):
    try:
        VerifyKey(key).verify(message, signature)
        return True
    except (BadSignatureError, ValueError):
        return False


def items_of(note):
    items = {}
    while note:
        if len(note) < 5:
            raise Bad("the note is cut short")
        kind, size = struct.unpack(">BI", note[:5])
        if kind > 5 or size > len(note) - 5 or kind <= max(items, default=0):
            raise Bad("the note cannot be read")
        items[kind] = note[5:5 + size]
        note = note[5 + size:]
    return items


def epoch_key(root, epoch, path):
    if len(path) != LEVELS * 96:
        raise Bad("the path has a wrong length")
    above = root
    for level in range(1, LEVELS + 1):
        node = path[(level - 1) * 96:level * 96]
        certified = b"MMDB key" + struct.pack(">BQ", level, epoch >> (LEVELS - level)) + node[:32]
        if not signed_by(above, certified, node[32:]):
            raise Bad(f"the key of epoch {epoch} is not the recorder's")
        above = node[:32]
    return above


class Chain:
    def __init__(self):
        self.last = None  # (number, hash, epoch, ends the epoch)
        self.signed_tick = 0
        self.missing = False  # before the current file
        self.root = self.key = NO_KEY

    def follow(self, seal, rows, begins, run):
        """One seal with its rows (sequence number, bytes); True where it is signed."""
        num, first, last, tick, epoch, digest, signature, note = seal
        items = items_of(note or b"")
        if (1 in items) != begins:
            raise Bad("a file begins with its file item, and nothing else does")
        if self.last is not None and num <= self.last[0]:
            raise Bad("the number comes again")
        next_one = self.last is not None and num == self.last[0] + 1
        if not begins and not next_one:
            raise Bad("seals before it are missing")
        previous = items[1][:32] if begins else self.last[1]
        adjacent = self.last is not None and previous == self.last[1]
        if next_one and not adjacent:
            raise Bad("it does not follow the seal before")
        if begins:
            self.root = items[1][32:64]
            if items[1][64:80] != run:
                raise Bad("the id of its run is not the sealed one")
            expected, found = (struct.unpack(">Q", items[4][at:at + 8])[0] if 4 in items else 0
                               for at in (0, 40))
            self.missing = not adjacent and (self.last is not None or found < expected)
        if adjacent and epoch != self.last[2] and not (epoch == self.last[2] + 1 and self.last[3]):
            raise Bad("the epoch before was not ended")
        if self.root != NO_KEY and (begins or epoch != self.last[2]):
            self.key = epoch_key(self.root, epoch, items.get(2, b""))
        if 3 in items and signature is None:
            raise Bad("an epoch ends without a signature")
        late = begins or not 0 <= tick - self.signed_tick < 1000
        if self.root != NO_KEY and signature is None and late:
            raise Bad("its signature was removed")
        head = previous + struct.pack(">5qI", num, first, last, tick, epoch, len(note or b""))
        if blake(1, head + (note or b"") + b"".join(row for _, row in rows)) != digest:
            raise Bad("the records are not those that were sealed")
        if signature is not None and not signed_by(self.key, b"MMDBseal" + digest, signature):
            raise Bad("the signature is wrong")
        self.last = (num, digest, epoch, 3 in items)
        self.signed_tick = tick if signature is not None else self.signed_tick
        return signature is not None


def read(path):
    """The seals of a file, and the canonical bytes of its rows in the order of their sequence numbers."""
    database = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    database.text_factory = bytes
    tables = [name.decode() for (name,) in database.execute(
        "SELECT m.name FROM sqlite_schema AS m WHERE m.type='table' AND "
        "(SELECT group_concat(name) FROM (SELECT name FROM pragma_table_info(m.name) LIMIT 4))"
        "='seq,tick,sender_tick,event'")]
    rows = sorted((row[0], row_bytes(table, row)) for table in tables
                  for row in database.execute(f'SELECT * FROM "{table}"'))
    seals = database.execute("SELECT number, first_seq, last_seq, last_tick, epoch, hash, signature, note "
                             "FROM seal ORDER BY number").fetchall()
    return seals, rows, database.execute("SELECT id FROM run").fetchone()[0]


def verify(chain, seals, rows, run):
    at = 0
    proven = 0
    for count, seal in enumerate(seals):
        end = at
        while end < len(rows) and rows[end][0] <= seal[2]:
            end += 1
        try:
            if at < end and rows[at][0] < seal[1]:
                raise Bad(f"record {rows[at][0]} is under no seal")
            if chain.follow(seal, rows[at:end], count == 0, run):
                proven = seal[2]
        except Bad as bad:
            raise Bad(f"seal {seal[0]}, records {seal[1]} to {seal[2]}: {bad}") from bad
        at = end
    if at < len(rows):
        raise Bad(f"record {rows[at][0]} is under no seal")
    return proven


def main(arguments):
    trusted = None
    if arguments[:1] == ["--key"]:
        trusted = bytes.fromhex(arguments[1])
        arguments = arguments[2:]
    chain = Chain()
    status = 0
    files = sorted(((*read(path), path) for path in arguments), key=lambda file: file[0][:1])
    for seals, rows, run, path in files:
        try:
            proven = verify(chain, seals, rows, run)
        except (Bad, sqlite3.Error) as bad:
            print(f"{path}: altered: {bad}")
            return 6
        if chain.missing:
            print(f"{path}: incomplete")
            status = 5
        elif trusted is None or chain.root != trusted or proven == 0:
            print(f"{path}: consistent, not proven")
            status = max(status, 3)
        else:
            print(f"{path}: proven to record {proven}")
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
