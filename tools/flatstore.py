"""Writing a flat store of the old server: EUC-JP record files and names.

Shared by tools/make_example_store.py (the example, from its UTF-8 tree) and
tools/make_store.py (generated stores of any size).
"""
import os
import sys


def euc(text, where):
    """text in EUC-JP; a character without an EUC-JP form stops the script."""
    try:
        return text.encode("euc_jp")
    except UnicodeEncodeError as e:
        sys.exit(f"{where}: {text[e.start:e.end]!r} has no EUC-JP form")


def write_file(store, rel, data):
    """Writes data (bytes, or text that goes to EUC-JP) to store/rel.

    rel is a UTF-8 path relative to the store; every component of it is named
    in EUC-JP on disk, as the old server named attached files.
    """
    target = os.path.join(os.fsencode(store), euc(rel, rel))
    os.makedirs(os.path.dirname(target), exist_ok=True)
    if isinstance(data, str):
        data = euc(data, rel)
    with open(target, "wb") as f:
        f.write(data)
