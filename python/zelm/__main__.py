"""The tool itself: python3 -m zelm estimate design.json"""

import os
import sys

from . import Error, _zelm

try:
    os.environ.setdefault("QTA_DATADIR", _zelm.data_directory())
except Error:
    pass  # the tool tells it, unless --datadir names others
sys.exit(_zelm.main(["zelm", *sys.argv[1:]]))
