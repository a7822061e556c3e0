"""What this server conforms to, as a client finds it out: with wbemcli alone."""

import pathlib
import re
import tempfile
import unittest

from host import BASE_SERVER, BUILD, SOURCE, Host, first_path

SCHEMA = SOURCE / "schema"
PROFILES = (
    *BASE_SERVER,
    "--schema", SCHEMA / "PYL_Profiles.mof",
    "--namespace", "interop",
    "--schema", SCHEMA / "base/base.mof",
    "--schema", SCHEMA / "PYL_Profiles.mof",
    "--registration", SCHEMA / "pylProfiles.registration",
    "--provider-dir", BUILD / "providers/profiles",
)
GOLDEN = pathlib.Path(__file__).with_name("profiles.golden")
COLLECTION = ':PYL_PXDataCollection.InstanceID="KTQ:PYL_PXDataCollection:1"'
CONFORMS = ("-ac", "PYL_ElementConformsToProfile")


def profile(number):
    return f'PYL_RegisteredProfile.InstanceID="KTQ:{number}"'


def published(host):
    """The catalogue and the collection table, a line an instance, without what differs by host."""
    lines = []
    for operation, class_name in (("ei", "PYL_RegisteredProfile"), ("ein", "PYL_ReferencedProfile"),
                                  ("ein", "PYL_ExtendsProfile")):
        lines += host.ask(operation, f":{class_name}", namespace="interop").lines
    collection = host.ask("ei", ":PYL_PXDataCollection").lines
    lines += collection
    for name in re.findall(r'"(KT [^"]*)"', collection[0].split("RegisteredNames=")[1]):
        answer = host.ask("cm", COLLECTION, f'GetCollectedClasses.RegisteredName="{name}"')
        lines.append(f"{name}: {answer.lines[0]}")
    text = "\n".join(sorted(line.strip() for line in lines)) + "\n"
    return re.sub(r"127\.0\.0\.1:\d+/", "//HOST/", text)


class Profiles(unittest.TestCase):
    maxDiff = None

    def host(self, *options):
        return Host(*options, arguments=PROFILES)

    def host_with_profiles_in(self, namespace):
        """A host that has another name for the namespace of the profiles."""
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        registration = pathlib.Path(scratch.name) / "profiles.registration"
        text = (SCHEMA / "pylProfiles.registration").read_text(encoding="utf-8")
        registration.write_text(re.sub(r"\binterop\b", namespace, text), encoding="utf-8")
        given = {"interop": namespace, SCHEMA / "pylProfiles.registration": registration}
        return Host(arguments=[given.get(word, word) for word in PROFILES])

    def test_the_catalogue_is_published_as_it_stands(self):
        with self.host() as host:
            self.assertEqual(GOLDEN.read_text(encoding="utf-8"), published(host))

    def test_a_client_walks_from_the_system_to_the_component_profiles(self):
        with self.host() as host:
            system = first_path(host, "PYL_ComputerSystem")
            own = host.paths("ain", f":{system}", options=CONFORMS)
            self.assertEqual([profile(26)], own)
            shown = host.ask("gi", f":{own[0]}", namespace="interop", options=["-nl"]).text
            self.assertIn('-RegisteredName="KT Base Server"\n', shown)
            base = host.paths("ain", f":{own[0]}", namespace="interop",
                              options=["-ac", "PYL_ExtendsProfile"])
            shown = host.ask("gi", f":{base[0]}", namespace="interop", options=["-nl"]).text
            self.assertIn('-RegisteredName="Base Server"\n', shown)
            self.assertEqual([profile(number) for number in range(1, 14)],
                             host.paths("ain", f":{base[0]}", namespace="interop",
                                        options=["-ac", "PYL_ReferencedProfile"]))

    def test_the_profiles_are_where_the_host_has_its_interop_namespace(self):
        for namespace in ("root/interop", "root/PG_InterOp"):
            with self.subTest(namespace), self.host_with_profiles_in(namespace) as host:
                self.assertEqual(49, len(host.paths("ein", ":PYL_RegisteredProfile",
                                                    namespace=namespace)))
                self.assertEqual(0, host.ask("gi", f":{profile(26)}", namespace=namespace).status)
                system = first_path(host, "PYL_ComputerSystem")
                own = host.ask("ain", f":{system}", options=CONFORMS).lines
                self.assertEqual([f"/{namespace}:{profile(26)}"],
                                 [re.sub(r"^.*?(?=/)", "", line) for line in own])
                around = host.ask("ain", f":{profile(26)}", namespace=namespace).text
                self.assertIn(f"/{namespace}:{profile(14)}", around)
                self.assertIn("/root/ktq:PYL_ComputerSystem.", around)

    def test_standard_class_names_lead_there_too(self):
        with self.host() as host:
            system = first_path(host, "PYL_ComputerSystem")
            self.assertEqual([profile(26)],
                             host.paths("ain", f":{system}",
                                        options=["-ac", "CIM_ElementConformsToProfile"]))
            self.assertEqual(13, len(host.paths("ain", f":{profile(14)}", namespace="interop",
                                                options=["-ac", "CIM_ReferencedProfile"])))
            self.assertEqual(49, len(host.paths("ein", ":CIM_RegisteredProfile",
                                                namespace="interop")))

    def test_a_profile_leads_to_its_elements_in_their_own_namespace(self):
        with self.host() as host:
            answer = host.ask("ain", f":{profile(26)}", namespace="interop", options=CONFORMS)
            self.assertEqual(1, len(answer.lines), answer.text)
            self.assertIn("/root/ktq:PYL_ComputerSystem.", answer.lines[0])
            shown = host.ask("ai", f":{profile(26)}", namespace="interop",
                             options=["-nl", *CONFORMS]).text
            self.assertIn('-CreationClassName="PYL_ComputerSystem"\n', shown)

    def test_both_namespaces_have_the_links_to_elements(self):
        with self.host() as host:
            def ends(namespace):
                paths = host.paths("ein", ":PYL_ElementConformsToProfile", namespace=namespace)
                return sorted(re.findall(r'"KTQ:\d+"|PYL_(?!Reg)\w+\.', "\n".join(paths)))

            self.assertEqual(ends("interop"), ends("root/ktq"))
            for class_name in ("ComputerSystem", "ComputerSystemChassis", "PXDataCollection"):
                self.assertIn(f"PYL_{class_name}.", ends("interop"))

    def test_a_class_whose_provider_is_missing_or_unknown_costs_the_rest_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            mof = pathlib.Path(folder) / "fan.mof"
            mof.write_text("class PYL_Fan { [Key] string InstanceID; };\n", encoding="utf-8")
            registration = pathlib.Path(folder) / "fan.registration"
            registration.write_text("PYL_Fan root/ktq FanProvider noSuchModule instance\n",
                                    encoding="utf-8")
            with self.host("--namespace", "root/ktq", "--schema", mof,
                           "--registration", registration) as host:
                links = host.ask("ein", ":PYL_ElementConformsToProfile", namespace="interop")
                self.assertEqual(0, links.status, links.text)
                self.assertIn("PYL_ComputerSystem.", links.text)
                self.assertRegex(host.log(), r"warning PYL_Profiles: no PYL_Fan in root/ktq to "
                                             r'conform to "KT Fan": \d+ .*noSuchModule')
                self.assertRegex(host.log(), "information PYL_Profiles: no PYL_Memory in root/ktq")

    def test_the_collection_is_asked_by_exact_names_only(self):
        with self.host() as host:
            for name in ("KT memory", "Base Server", ""):
                answer = host.ask("cm", COLLECTION, f'GetCollectedClasses.RegisteredName="{name}"')
                self.assertEqual(6, answer.cim_error, answer.text)
            answer = host.ask("cm", COLLECTION, "GetCollectedClasses")
            self.assertEqual(4, answer.cim_error, answer.text)

    def test_what_is_not_there_is_not_found(self):
        with self.host() as host:
            for number in (0, 50, 4294967296):
                answer = host.ask("gi", f":{profile(number)}", namespace="interop")
                self.assertEqual(6, answer.cim_error, answer.text)
            self.assertEqual([], host.paths("ain", f":{profile(50)}", namespace="interop"))


if __name__ == "__main__":
    unittest.main()
