"""The tool itself: python3 -m zelm estimate design.json"""

import os
import sys

from . import _zelm

os.environ.setdefault("QTA_DATADIR", _zelm.data_directory())
sys.exit(_zelm.main(["zelm", *sys.argv[1:]]))
