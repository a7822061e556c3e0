#!/usr/bin/env python3
"""Every arrow that the include graph forbids is found, and no other."""

import pathlib
import sys
import tempfile

from include_graph import violations

CASES = [  # file, what it includes, whether that is allowed
    ("common/A.cpp", "cmpicpp/CmpiData.h", True),
    ("common/A.cpp", "platform/smbios/SmBios.h", True),
    ("common/A.cpp", "common/detail/A.h", True),
    ("common/detail/A.cpp", "common/A.h", True),
    ("common/A.cpp", "cmpicpp/detail/A.h", False),
    ("common/A.cpp", "cimhost/objects/Broker.h", False),
    ("cmpicpp/A.h", "cmpi/cmpift.h", True),
    ("cmpicpp/A.h", "common/PYLUtil.h", False),
    ("cmpicpp/A.h", "platform/logger/Logger.h", False),
    ("platform/smbios/A.cpp", "platform/logger/Logger.h", True),
    ("platform/smbios/A.cpp", "platform/host/A.h", False),
    ("platform/host/A.cpp", "platform/smbios/SmBios.h", True),
    ("platform/host/A.cpp", "platform/smbios/detail/A.h", False),
    ("platform/ipmi/A.cpp", "platform/smbios/SmBios.h", False),
    ("platform/logger/A.cpp", "platform/smbios/SmBios.h", False),
    ("platform/other/A.cpp", "vector", False),
    ("testing/A.cpp", "toolkit/A.h", True),
    ("testing/A.cpp", "cimhost/operations/A.h", True),
    ("testing/A.cpp", "common/detail/A.h", False),
    ("cimhost/server/A.cpp", "testing/A.h", False),
    ("providers/fan/A.cpp", "testing/A.h", False),
    ("toolkit/A.cpp", "common/PYLUtil.h", True),
    ("toolkit/A.h", "cmpicpp/CmpiData.h", True),
    ("toolkit/A.cpp", "platform/logger/Logger.h", True),
    ("toolkit/A.cpp", "common/detail/A.h", False),
    ("toolkit/A.cpp", "providers/fan/FanProvider.h", False),
    ("toolkit/A.cpp", "cimhost/objects/Broker.h", False),
    ("common/A.cpp", "toolkit/A.h", False),
    ("platform/host/A.cpp", "toolkit/A.h", False),
    ("cimhost/objects/A.cpp", "toolkit/A.h", False),
    ("providers/fan/A.cpp", "toolkit/A.h", True),
    ("providers/fan/A.cpp", "toolkit/detail/A.h", False),
    ("providers/fan/A.cpp", "common/PYLUtil.h", True),
    ("providers/fan/A.cpp", "common/detail/A.h", False),
    ("providers/fan/A.cpp", "cimhost/objects/Broker.h", False),
    ("cimhost/repository/A.cpp", "cimhost/repository/B.h", True),
    ("cimhost/repository/A.cpp", "cimhost/cimxml/A.h", False),
    ("cimhost/repository/A.cpp", "cmpi/cmpift.h", False),
    ("cimhost/mof/A.cpp", "cimhost/repository/A.h", True),
    ("cimhost/mof/A.cpp", "cimhost/objects/Broker.h", False),
    ("cimhost/query/A.cpp", "cimhost/http/A.h", False),
    ("cimhost/objects/A.cpp", "cmpi/cmpift.h", True),
    ("cimhost/objects/A.cpp", "cimhost/query/A.h", True),
    ("cimhost/objects/A.cpp", "cimhost/operations/A.h", False),
    ("cimhost/objects/A.cpp", "common/PYLUtil.h", False),
    ("cimhost/modules/A.cpp", "cimhost/operations/A.h", False),
    ("cimhost/operations/A.cpp", "cimhost/indications/A.h", False),
    ("cimhost/indications/A.cpp", "cimhost/operations/A.h", True),
    ("cimhost/indications/A.cpp", "cimhost/mof/A.h", True),
    ("cimhost/operations/A.cpp", "cimhost/mof/A.h", False),
    ("cimhost/cimxml/A.cpp", "cimhost/indications/A.h", True),
    ("cimhost/cimxml/A.cpp", "cimhost/http/A.h", False),
    ("cimhost/http/A.cpp", "cimhost/repository/A.h", False),
    ("cimhost/server/A.cpp", "cimhost/http/A.h", True),
    ("cimhost/server/A.cpp", "cmpicpp/CmpiData.h", False),
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
