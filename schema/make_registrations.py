#!/usr/bin/env python3
"""Writes a module's registration in the forms of the established object managers.

The source is our neutral form: a line a class, "Class Namespace ProviderName ModuleName type...".
From it come `<module>.reg` for sfcb (sfcbstage) and `<module>Registration.mof` for OpenPegasus
(cimmof, into its Interop namespace). The namespace "interop" becomes each host's own: a second one
of that kind would keep clients from finding the first.

sfcb takes one registration a class. So a class has one provider and the same types in all its
namespaces, and each form has one entry a class.

    make_registrations.py SOURCE.registration OUTPUT_FOLDER VERSION
"""

import pathlib
import sys

SFCB_INTEROP = "root/interop"
PEGASUS_INTEROP = "root/PG_InterOp"
PEGASUS_TYPES = {"instance": 2, "association": 3, "indication": 4, "method": 5}


def read_rows(source):
    """The registered classes: (class, [namespace, ...], provider, module, [type, ...])."""
    rows = {}
    for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
        words = line.split("#", 1)[0].split()
        if not words:
            continue
        unknown = [word for word in words[4:] if word not in PEGASUS_TYPES]
        if len(words) < 5 or unknown:
            sys.exit(f"{source}:{number}: expected: Class Namespace ProviderName ModuleName type...")
        row = rows.setdefault(words[0], (words[0], [], *words[2:4], words[4:]))
        if row[2:] != (*words[2:4], words[4:]):
            sys.exit(f"{source}:{number}: {words[0]} has one provider, in all namespaces alike")
        row[1].append(words[1])
    return list(rows.values())


def of_host(namespaces, interop):
    return [interop if namespace == "interop" else namespace for namespace in namespaces]


def sfcb_registration(rows):
    blocks = []
    for cim_class, namespaces, provider, module, types in rows:
        blocks.append(
            f"[{cim_class}]\n"
            f"   provider: {provider}\n"
            f"   location: {module}\n"
            f"   type: {' '.join(types)}\n"
            f"   namespace: {' '.join(of_host(namespaces, SFCB_INTEROP))}\n"
        )
    return "\n".join(blocks)


def instance(cim_class, properties):
    body = "".join(f"   {name} = {value};\n" for name, value in properties)
    return f"instance of {cim_class} {{\n{body}}};\n"


def pegasus_registration(rows, version):
    quoted = '"{}"'.format
    instances = []
    for module in dict.fromkeys(row[3] for row in rows):
        instances.append(instance("PG_ProviderModule", [
            ("Name", quoted(module)), ("Location", quoted(module)), ("Vendor", quoted("pylcommon")),
            ("Version", quoted(version)), ("InterfaceType", quoted("CMPI")),
            ("InterfaceVersion", quoted("2.0.0"))]))
    for module, provider in dict.fromkeys((row[3], row[2]) for row in rows):
        instances.append(instance("PG_Provider", [
            ("ProviderModuleName", quoted(module)), ("Name", quoted(provider))]))
    for number, (cim_class, namespaces, provider, module, types) in enumerate(rows, 1):
        codes = ", ".join(str(PEGASUS_TYPES[name]) for name in types)
        spaces = ", ".join(map(quoted, of_host(namespaces, PEGASUS_INTEROP)))
        instances.append(instance("PG_ProviderCapabilities", [
            ("ProviderModuleName", quoted(module)), ("ProviderName", quoted(provider)),
            ("CapabilityID", quoted(number)), ("ClassName", quoted(cim_class)),
            ("Namespaces", f"{{{spaces}}}"), ("ProviderType", f"{{{codes}}}"),
            ("SupportedProperties", "NULL"), ("SupportedMethods", "NULL")]))
    return "\n".join(instances)


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    source, folder, version = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    rows = read_rows(source)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{source.stem}.reg").write_text(sfcb_registration(rows), encoding="utf-8")
    (folder / f"{source.stem}Registration.mof").write_text(
        pegasus_registration(rows, version), encoding="utf-8")


if __name__ == "__main__":
    main()
