#!/usr/bin/env python3
"""A block's headers are those of any other but for names and comments: headers_alike.py SOURCE_DIR"""
import difflib
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
differing = []
for part in ("Data", "Params", "Model"):
    headers = sorted(source.glob(f"*/ZelmOrvane*{part}.h"))
    assert headers, f"no headers {part} below {source}"
    pattern = None
    for header in headers:
        block = header.name[len("ZelmOrvane"):-len(f"{part}.h")]
        text = re.sub(r"^///.*\n", "", header.read_text(), flags=re.MULTILINE)
        # Long names wrap, and a folder's name moves its includes.
        text = re.sub(r"\s+", " ", text.replace(f"ZelmOrvane{block}", "ZelmOrvaneX"))
        text = text.replace(f'"{header.parent.name}/ZelmOrvaneX', '"folder/ZelmOrvaneX')
        includes = sorted(re.findall(r'#include "framework/\w+\.h"|#include "folder/\w+\.h"', text))
        text = re.sub(r'#include "\w+/\w+\.h" ?', "", text)
        words = includes + text.split(" ")
        if pattern is None:
            pattern, first = words, header
        elif words != pattern:
            differing.append(header)
            print(f"{header.relative_to(source)} differs from {first.relative_to(source)}:")
            print("\n".join(difflib.unified_diff(pattern, words, lineterm="", n=1)))
    print(f"{len(headers)} headers {part} compared")
sys.exit(1 if differing else 0)
