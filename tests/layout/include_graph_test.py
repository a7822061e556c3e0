#!/usr/bin/env python3
"""Every arrow that the include graph forbids is found, and no other."""

import pathlib
import sys
import tempfile

from include_graph import violations

CASES = [  # file, what it includes, whether that is allowed
    ("common/A.cpp", "cmpicpp/CmpiData.h", True),
    ("common/A.cpp", "platform/smbios/SmBios.h", True),
    ("common/A.cpp", "cimhost/broker/Broker.h", False),
    ("cmpicpp/A.h", "cmpi/cmpift.h", True),
    ("cmpicpp/A.h", "common/PYLUtil.h", False),
    ("cmpicpp/A.h", "platform/logger/Logger.h", False),
    ("platform/smbios/A.cpp", "platform/logger/Logger.h", True),
    ("platform/smbios/A.cpp", "platform/computersystem/A.h", False),
    ("platform/computersystem/A.cpp", "platform/smbios/SmBios.h", True),
    ("platform/blade/A.cpp", "platform/smbios/SmBios.h", True),
    ("platform/blade/A.cpp", "platform/computersystem/MRAStatus.h", True),
    ("platform/computersystem/A.cpp", "platform/blade/A.h", False),
    ("platform/logger/A.cpp", "platform/smbios/SmBios.h", False),
    ("cimhost/broker/A.cpp", "cmpi/cmpift.h", True),
    ("cimhost/broker/A.cpp", "common/PYLUtil.h", False),
    ("cimhost/server/A.cpp", "cmpicpp/CmpiData.h", False),
    ("providers/fan/A.cpp", "common/PYLUtil.h", True),
    ("providers/fan/A.cpp", "cimhost/broker/Broker.h", False),
    ("cmpi/cmpift.h", "cmpi/cmpidt.h", True),
    ("cmpi/cmpift.h", "common/PYLUtil.h", False),
    ("common/A.cpp", "vector", True),
]


def main():
    failures = 0
    for name, header, allowed in CASES:
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / name
            path.parent.mkdir(parents=True)
            path.write_text(f'#include "{header}"\n', encoding="utf-8")
            found = violations(pathlib.Path(folder))
        if bool(found) == allowed:
            print(f"{name} including {header}: found {found}")
            failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
