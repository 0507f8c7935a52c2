#!/usr/bin/env python3
"""Writes the example flat store from its UTF-8 sources.

examples/store-src/ mirrors the store's tree in UTF-8 so that it can be read and
reviewed; the old server kept everything in EUC-JP. This script rebuilds
examples/store/ from it:

- every file under data/ is a record file: its text goes to EUC-JP;
- every file under file/ is an attached file: its bytes are copied as they are;
- every path component (directory and file names) goes to EUC-JP, as the old
  server named attached files on disk.

A character that EUC-JP can't hold stops the script, naming the file.

Usage: tools/make_example_store.py [SOURCE_DIR [STORE_DIR]]
"""
import os
import shutil
import sys

from flatstore import write_file


def main():
    repo = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    source = sys.argv[1] if len(sys.argv) > 1 else os.path.join(repo, "examples", "store-src")
    store = sys.argv[2] if len(sys.argv) > 2 else os.path.join(repo, "examples", "store")
    if os.path.exists(store):
        shutil.rmtree(store)
    count = 0
    for directory, dirs, files in os.walk(source):
        dirs.sort()
        for name in sorted(files):
            path = os.path.join(directory, name)
            rel = os.path.relpath(path, source)
            with open(path, "rb") as f:
                data = f.read()
            if rel.split(os.sep)[0] == "data":
                data = data.decode("utf-8")
            write_file(store, rel, data)
            count += 1
    print(f"{count} files written to {store}")


if __name__ == "__main__":
    main()
