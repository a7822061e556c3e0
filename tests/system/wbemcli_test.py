"""Every operation that wbemcli has, answered and refused."""

import re
import unittest

from host import BUILD, SOURCE, Host

NAMESPACE = "root/test"
WIDGET = SOURCE / "tests/system/widget"
WIDGETS = (
    "--namespace", NAMESPACE,
    "--schema", SOURCE / "schema/base/base.mof",
    "--schema", WIDGET / "Widget.mof",
    "--registration", WIDGET / "widget.registration",
    "--provider-dir", BUILD / "tests/system/widget",
)

NOT_FOUND, NOT_SUPPORTED, ALREADY_EXISTS = 6, 7, 11
INVALID_NAMESPACE, INVALID_PARAMETER, INVALID_CLASS = 3, 4, 5
FAILED, ACCESS_DENIED, NO_SUCH_PROPERTY = 1, 2, 12
TYPE_MISMATCH, METHOD_NOT_FOUND = 13, 17


class HostCase(unittest.TestCase):
    """A server of its own for each test, so that what one changes no other sees."""

    arguments = WIDGETS

    def setUp(self):
        self.host = Host(arguments=self.arguments)
        self.addCleanup(self._stop)

    def _stop(self):
        self.assertEqual(0, self.host.stop(), self.host.log())

    def ask(self, *words, **options):
        return self.host.ask(*words, namespace=NAMESPACE, **options)

    def good(self, *words, **options):
        answer = self.ask(*words, **options)
        self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text + self.host.log())
        return answer

    def refused(self, code, *words, **options):
        answer = self.ask(*words, **options)
        self.assertEqual(code, answer.cim_error, answer.text + self.host.log())
        return answer

    def create(self, name, more="", class_name="TST_Widget"):
        data = f'Name="{name}"' + ("," + more if more else "")
        return self.good("ci", f':{class_name}.Name="{name}"', data)

    def connect(self, user, used, class_name="TST_Uses"):
        ends = f'User=TST_Widget.Name="{user}",Used=TST_Widget.Name="{used}"'
        return self.ask("ci", f":{class_name}.{ends}", ends)


class Classes(HostCase):
    def test_gc_shows_the_properties_of_a_class_with_what_it_inherits(self):
        answer = self.good("gc", ":TST_SpecialWidget", options=["-nl"])
        self.assertIn("-Extra", answer.text)
        self.assertIn("-Name", answer.text)
        self.assertIn("-ElementName", answer.text)

    def test_gcd_shows_the_definition(self):
        self.assertIn("TST_Widget", self.good("gcd", ":TST_Widget").text)

    def test_gc_of_an_unknown_class_is_not_found(self):
        self.refused(NOT_FOUND, "gc", ":TST_Unheard")

    def test_ec_lists_the_direct_subclasses(self):
        answer = self.good("ec", ":TST_Widget")
        self.assertIn("TST_SpecialWidget", answer.text)

    def test_ecn_lists_the_names_of_subclasses(self):
        answer = self.good("ecn", ":TST_Uses")
        self.assertEqual(1, len(answer.lines))
        self.assertTrue(answer.lines[0].endswith(":TST_NeedsBadly"), answer.text)

    def test_ecn_of_an_unknown_class_is_an_invalid_class(self):
        self.refused(INVALID_CLASS, "ecn", ":TST_Unheard")

    def test_dc_is_not_supported(self):
        self.refused(NOT_SUPPORTED, "dc", ":TST_Part")

    def test_an_unknown_namespace_is_named_so(self):
        answer = self.host.ask("gc", ":TST_Widget", namespace="root/unheard")
        self.assertEqual(INVALID_NAMESPACE, answer.cim_error, answer.text)


class Instances(HostCase):
    def test_ei_and_ein_of_nothing_are_empty(self):
        self.assertEqual([], self.good("ei", ":TST_Widget").lines)
        self.assertEqual([], self.good("ein", ":TST_Widget").lines)

    def test_ci_makes_an_instance_that_gi_ei_and_ein_show(self):
        self.create("one", 'U8=255,S64=-9223372036854775808,Flag=true,Text="a \'text\'"')
        shown = self.good("gi", ':TST_Widget.Name="one"', options=["-nl"]).text
        for line in ("-U8=255", "-S64=-9223372036854775808", "-Flag=true"):
            self.assertIn(line, shown)
        self.assertIn('Name="one"', self.good("ein", ":TST_Widget").text)
        self.assertIn("U8=255", self.good("ei", ":TST_Widget").text)

    def test_ein_of_a_superclass_shows_each_instance_under_its_own_class(self):
        self.create("plain")
        self.create("special", class_name="TST_SpecialWidget")
        names = "\n".join(self.good("ein", ":TST_Widget").lines)
        self.assertIn('TST_Widget.Name="plain"', names)
        self.assertIn('TST_SpecialWidget.Name="special"', names)
        above = self.good("ein", ":CIM_ManagedElement").text
        self.assertIn('TST_SpecialWidget.Name="special"', above)

    def test_a_property_list_holds_for_every_kind_of_reading(self):
        self.create("one", 'U8=1,U16=2,U32=3')
        shown = self.good("gi", ':TST_Widget.Name="one"', "U16,u32,Unheard", options=["-nl"]).text
        self.assertNotIn("-U8", shown)
        self.assertIn("-U16=2", shown)
        self.assertIn("-U32=3", shown)
        listed = self.good("ei", ":TST_Widget", "U8").text
        self.assertIn("U8=1", listed)
        self.assertNotIn("U16", listed)

    def test_text_comes_back_byte_for_byte(self):
        text = "Grüße > 'ʤ' 100% %n %s"
        self.create("one", f'Text="{text}"')
        self.assertIn(text, self.good("gi", ':TST_Widget.Name="one"').text)

    def test_arrays_of_texts_and_numbers_come_back_in_order(self):
        self.create("one", 'Tags="b","a","c",Codes=3,1,65535')
        shown = self.good("gi", ':TST_Widget.Name="one"', options=["-nl"]).text
        self.assertRegex(shown, r'-Tags="?b"?,"?a"?,"?c"?')
        self.assertIn("-Codes=3,1,65535", shown)

    def test_gi_of_an_instance_that_is_not_there_is_not_found(self):
        self.refused(NOT_FOUND, "gi", ':TST_Widget.Name="nobody"')

    def test_gi_with_wrong_keys_is_an_invalid_parameter(self):
        self.refused(INVALID_PARAMETER, "gi", ':TST_Widget.Title="one"')
        self.refused(INVALID_PARAMETER, "gi", ':TST_Widget.Name="one",More="two"')

    def test_gi_of_an_unknown_class_is_an_invalid_class(self):
        self.refused(INVALID_CLASS, "gi", ':TST_Unheard.Name="one"')

    def test_ci_of_what_exists_says_so(self):
        self.create("one")
        self.refused(ALREADY_EXISTS, "ci", ':TST_Widget.Name="one"', 'Name="one"')

    def test_ci_with_a_number_out_of_range_is_refused_and_makes_nothing(self):
        answer = self.ask("ci", ':TST_Widget.Name="one"', 'Name="one",U8=256')
        self.assertIn(answer.cim_error, (INVALID_PARAMETER, TYPE_MISMATCH), answer.text)
        self.assertEqual([], self.good("ein", ":TST_Widget").lines)

    def test_mi_changes_an_instance(self):
        self.create("one", "U8=1")
        self.good("mi", ':TST_Widget.Name="one"', "U8=2")
        self.assertIn("U8=2", self.good("gi", ':TST_Widget.Name="one"').text)

    def test_mi_of_what_is_not_there_is_not_found(self):
        self.refused(NOT_FOUND, "mi", ':TST_Widget.Name="nobody"', "U8=2")

    def test_di_removes_an_instance_once(self):
        self.create("one")
        self.good("di", ':TST_Widget.Name="one"')
        self.refused(NOT_FOUND, "di", ':TST_Widget.Name="one"')

    def test_gp_and_sp_read_and_write_one_property(self):
        self.create("one", "U32=7")
        self.assertIn("7", self.good("gp", ':TST_Widget.Name="one"', "U32").text)
        self.good("sp", ':TST_Widget.Name="one"', "U32=8")
        self.assertIn("8", self.good("gp", ':TST_Widget.Name="one"', "U32").text)

    def test_gp_of_an_unknown_property_is_no_such_property(self):
        self.create("one")
        self.refused(NO_SUCH_PROPERTY, "gp", ':TST_Widget.Name="one"', "Unheard")

    def test_keys_of_every_type_name_an_instance(self):
        self.create("one")
        keys = ('Text="x y",Small=255,Big=9223372036854775807,Flag=TRUE,'
                'Made="20260102030405.000006+060",'
                'Widget=TST_Widget.Name="one",Other=TST_Widget.Name="two"')
        self.good("ci", f":TST_Keyed.{keys}", keys)
        self.assertIn("Small=255", self.good("gi", f":TST_Keyed.{keys}").text)
        self.assertEqual(1, len(self.good("ein", ":TST_Keyed").lines))


class Associations(HostCase):
    def setUp(self):
        super().setUp()
        for name in ("hub", "near", "far"):
            self.create(name)
        self.assertIsNone(self.connect("hub", "near").cim_error)
        self.assertIsNone(self.connect("hub", "far", "TST_NeedsBadly").cim_error)

    def names(self, *words, **options):
        answer = self.good(*words, **options)
        return sorted(re.search(r'Name="(\w+)"', line).group(1) for line in answer.lines)

    def test_ain_and_ai_follow_links_of_the_class_and_its_subclasses(self):
        self.assertEqual(["far", "near"], self.names("ain", ':TST_Widget.Name="hub"'))
        self.assertEqual(["far", "near"],
                         self.names("ain", ':TST_Widget.Name="hub"', options=["-ac", "TST_Uses"]))
        self.assertEqual(["far"],
                         self.names("ain", ':TST_Widget.Name="hub"', options=["-ac", "TST_NeedsBadly"]))
        self.assertEqual(2, len(self.good("ai", ':TST_Widget.Name="hub"').lines))

    def test_result_classes_may_be_superclasses(self):
        self.assertEqual(["far", "near"], self.names("ain", ':TST_Widget.Name="hub"',
                                                     options=["-arc", "CIM_ManagedElement"]))
        self.assertEqual([], self.names("ain", ':TST_Widget.Name="hub"',
                                        options=["-arc", "TST_SpecialWidget"]))

    def test_roles_tell_the_ends_apart(self):
        self.assertEqual(["hub"], self.names("ain", ':TST_Widget.Name="near"', options=["-ar", "used"]))
        self.assertEqual([], self.names("ain", ':TST_Widget.Name="near"', options=["-ar", "User"]))

    def test_rin_and_ri_show_the_links_themselves(self):
        self.assertEqual(2, len(self.good("rin", ':TST_Widget.Name="hub"').lines))
        answer = self.good("ri", ':TST_Widget.Name="hub"', options=["-arc", "TST_NeedsBadly"])
        self.assertEqual(1, len(answer.lines))
        self.assertIn('Name="far"', answer.text)

    def test_unknown_filter_classes_are_refused(self):
        self.refused(INVALID_PARAMETER, "ain", ':TST_Widget.Name="hub"', options=["-ac", "TST_Unheard"])
        self.refused(INVALID_PARAMETER, "rin", ':TST_Widget.Name="hub"', options=["-arc", "TST_Unheard"])


class Methods(HostCase):
    def test_cm_returns_the_value_and_the_output_arguments(self):
        self.create("one")
        answer = self.good("cm", ':TST_Widget.Name="one"', "Add.A=2,B=-5")
        self.assertIn("-3", answer.text)
        self.assertIn("the sum is -3", answer.text)

    def test_cmx_passes_text_through_unchanged(self):
        self.create("one")
        answer = self.good("cmx", ':TST_Widget.Name="one"', 'Echo.Text="%n%s ü"')
        self.assertIn("%n%s ü", answer.text)

    def test_static_methods_run_on_the_class(self):
        self.assertIn("hello", self.good("cm", ":TST_Widget", "Greet").text)

    def test_an_unknown_method_is_not_found(self):
        self.create("one")
        self.refused(METHOD_NOT_FOUND, "cm", ':TST_Widget.Name="one"', "Unheard")

    def test_an_argument_of_the_wrong_type_is_refused(self):
        self.create("one")
        answer = self.ask("cm", ':TST_Widget.Name="one"', "Add.A=2147483648,B=3")
        self.assertIn(answer.cim_error, (INVALID_PARAMETER, TYPE_MISMATCH), answer.text)

    def test_what_a_provider_throws_reaches_the_client_and_the_server_goes_on(self):
        self.create("one")
        target = ':TST_Widget.Name="one"'
        answer = self.refused(ACCESS_DENIED, "cm", target, 'Fail.How="status"')
        self.assertIn("not <you>", answer.text.replace("&lt;", "<").replace("&gt;", ">"))
        self.assertIn("100", self.refused(FAILED, "cm", target, 'Fail.How="system"').text)
        self.assertIn("own text", self.refused(FAILED, "cm", target, 'Fail.How="exception"').text)
        self.refused(FAILED, "cm", target, 'Fail.How="memory"')
        self.refused(FAILED, "cm", target, 'Fail.How="int"')
        self.assertIn("hello", self.good("cm", ":TST_Widget", "Greet").text)


class BadModules(HostCase):
    def test_a_module_that_is_not_there_is_an_error_and_a_log_line_and_nothing_more(self):
        answer = self.ask("ei", ":TST_Missing")
        self.assertEqual(FAILED, answer.cim_error, answer.text)
        self.assertIn("notthere", self.host.log())
        self.good("ei", ":TST_Widget")

    def test_a_module_without_entry_points_is_an_error_and_a_log_line(self):
        answer = self.ask("ei", ":TST_Empty")
        self.assertIsNotNone(answer.cim_error, answer.text)
        self.assertIn("EmptyProvider", self.host.log())
        self.good("ei", ":TST_Widget")

    def test_a_class_that_nobody_serves_is_not_supported(self):
        self.refused(NOT_SUPPORTED, "gi", ':TST_Nobody.Name="one"')


class BaseServer(unittest.TestCase):
    """The reference module with this machine's own data."""

    @classmethod
    def setUpClass(cls):
        cls.host = Host()

    @classmethod
    def tearDownClass(cls):
        status = cls.host.stop()
        if status != 0:
            raise AssertionError(cls.host.log())

    def test_there_is_one_computer_system_in_one_chassis(self):
        systems = self.host.paths("ein", ":PYL_ComputerSystem")
        self.assertEqual(1, len(systems))
        chassis = self.host.paths("ain", f":{systems[0]}", options=["-ac", "PYL_ComputerSystemPackage"])
        self.assertEqual(self.host.paths("ein", ":PYL_ComputerSystemChassis"), chassis)

    def test_every_pci_device_belongs_to_the_system(self):
        system = self.host.paths("ein", ":PYL_ComputerSystem")[0]
        devices = self.host.paths("ein", ":PYL_PCIDevice")
        options = ["-ac", "CIM_SystemDevice", "-arc", "CIM_LogicalDevice"]
        self.assertEqual(devices, self.host.paths("ain", f":{system}", options=options))
        self.assertEqual(len(devices), len(self.host.paths("rin", f":{system}",
                                                           options=["-arc", "PYL_SystemPCIDevice"])))

    def test_an_instance_is_found_whatever_the_client_calls_the_host(self):
        path = self.host.paths("ein", ":PYL_ComputerSystem")[0]
        for name in ("127.0.0.1", "localhost"):
            answer = self.host.ask("gi", f":{path}", host=name)
            self.assertEqual(0, answer.status, answer.text)

    def test_role_filters_are_refused_and_the_refusal_is_told(self):
        path = self.host.paths("ein", ":PYL_ComputerSystem")[0]
        answer = self.host.ask("ain", f":{path}", options=["-ar", "GroupComponent"])
        self.assertEqual(NOT_SUPPORTED, answer.cim_error)
        self.assertIn("role filters not supported", answer.text)

    def test_the_decorator_and_the_collection_log(self):
        self.host.paths("ein", ":PYL_ComputerSystem")
        log = self.host.log()
        self.assertIn("enumInstanceNames() for class: PYL_ComputerSystem", log)
        self.assertIn("returned 1 object from enumInstanceNames()", log)


if __name__ == "__main__":
    unittest.main()
