#!/usr/bin/env python3
"""Repairs the one fault widl (7.0 and 8.0) writes into our type library.

A library whose first entry is a dispinterface (IVXCmdEvents must come first) makes widl add
stdole2's IDispatch twice: once for the dispinterface, once more when the first dual interface
inherits it. The second time its GUIDs are duplicates, widl takes the offset -1 for them, points
that interface's import record at GUID offset -1 (so every dual interface derives from garbage
instead of IDispatch) and writes the record number into the last byte of the library id.

This puts the library id from the IDL back and points every import record at offset -1 to
IDispatch's GUID entry. It rewrites the file in place and fails on any other surprise.

usage: repair_typelib.py LIBRARY.tlb LIBRARY.idl
"""
import re
import struct
import sys
import uuid

HEADER = struct.Struct("<21i")  # MSFT header: posguid is field 2, varflags 5, nrtypeinfos 8
SEGMENT = struct.Struct("<4i")  # offset, length, two reserved
IMPORTINFO, GUID = 1, 5  # segment numbers
IDISPATCH = uuid.UUID("00020400-0000-0000-c000-000000000046")


def library_id(idl_path):
    text = open(idl_path, encoding="utf-8").read()
    found = re.search(r"uuid\(([0-9A-Fa-f-]{36})\)[^\]]*\]\s*library\s", text)
    if not found:
        sys.exit(f"{idl_path}: no library uuid")
    return uuid.UUID(found.group(1))


def main(tlb_path, idl_path):
    data = bytearray(open(tlb_path, "rb").read())
    header = HEADER.unpack_from(data, 0)
    if data[:4] != b"MSFT":
        sys.exit(f"{tlb_path}: not an MSFT type library")
    segments_at = HEADER.size + (4 if header[5] & 0x100 else 0) + header[8] * 4
    segment = [SEGMENT.unpack_from(data, segments_at + i * SEGMENT.size) for i in range(15)]
    guids_at, guids_length = segment[GUID][:2]
    imports_at, imports_length = segment[IMPORTINFO][:2]

    data[guids_at + header[2]:guids_at + header[2] + 16] = library_id(idl_path).bytes_le
    dispatch = [offset for offset in range(0, guids_length, 24)
                if data[guids_at + offset:guids_at + offset + 16] == IDISPATCH.bytes_le]
    for record in range(imports_at, imports_at + max(imports_length, 0), 12):
        if struct.unpack_from("<i", data, record + 8)[0] != -1:
            continue
        if not dispatch:
            sys.exit(f"{tlb_path}: an import without GUID, and no IDispatch to give it")
        struct.pack_into("<i", data, record + 8, dispatch[0])
    open(tlb_path, "wb").write(data)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
