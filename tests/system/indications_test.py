"""Subscriptions made with wbemcli, and what becomes of the indications."""

import pathlib
import re
import signal
import socket
import subprocess
import tempfile
import time
import unittest

from host import BUILD, SOURCE, Host, long
from listeners import ANSWER, DeadListener, ListenCommand, Listener, good, reply

ALARM = SOURCE / "tests/system/alarm"
ALARMS = (
    "--namespace", "interop",
    "--schema", SOURCE / "schema/base/base.mof",
    "--namespace", "root/test",
    "--schema", SOURCE / "schema/base/base.mof",
    "--schema", ALARM / "Alarm.mof",
    "--registration", ALARM / "alarm.registration",
    "--provider-dir", BUILD / "tests/system/alarm",
    "--delivery-interval", "1",
)

FAILED, ACCESS_DENIED, INVALID_NAMESPACE, INVALID_PARAMETER, INVALID_CLASS = 1, 2, 3, 4, 5
NOT_FOUND, NOT_SUPPORTED, ALREADY_EXISTS, UNKNOWN_LANGUAGE, INVALID_QUERY = 6, 7, 11, 14, 15

FILTER = "CIM_IndicationFilter"
DESTINATION = "CIM_ListenerDestinationCIMXML"
SUBSCRIPTION = "CIM_IndicationSubscription"


def counts_in(log):
    """What the log says at the end of each destination: name -> (raised, sent, dropped)."""
    lines = re.findall(r"destination (\S+) \(\S+\): (\d+) indications raised, (\d+) sent, "
                       r"(\d+) dropped", log)
    return {name: tuple(map(int, numbers)) for name, *numbers in lines}


class SubscribedCase(unittest.TestCase):
    options = ()

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.state = pathlib.Path(self.folder.name) / "state"
        self.start()
        self.addCleanup(self.stop)

    def start(self, *options):
        self.host = Host(*self.options, *options, arguments=ALARMS)

    def stop(self):
        self.assertEqual(0, self.host.stop(), self.host.log())

    def ask(self, *words, namespace="interop", **options):
        return self.host.ask(*words, namespace=namespace, **options)

    def good(self, *words, **options):
        answer = self.ask(*words, **options)
        self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text + self.host.log())
        return answer

    def refused(self, code, answer):
        self.assertEqual(code, answer.cim_error, answer.text + self.host.log())
        return answer

    def make(self, class_name, name, more):
        # wbemcli wants all keys in the path and sends none of them.
        keys = (f'SystemCreationClassName="CIM_ComputerSystem",SystemName="{socket.gethostname()}",'
                f'CreationClassName="{class_name}",Name="{name}"')
        return self.ask("ci", f":{class_name}.{keys}", f'Name="{name}",{more}')

    def filter(self, name="f", query="SELECT * FROM TST_Alarm", language="WQL", source="root/test"):
        return self.make(FILTER, name, f'Query="{query}",QueryLanguage="{language}",'
                                       f'SourceNamespaces="{source}"')

    def destination(self, url, name="d"):
        return self.make(DESTINATION, name, f'Destination="{url}",PersistenceType=2')

    def ends(self, filter_name, destination_name):
        names = {}
        for class_name, name in ((FILTER, filter_name), (DESTINATION, destination_name)):
            paths = self.host.paths("ein", f":{class_name}", namespace="interop")
            names[class_name] = next((path for path in paths if f'Name="{name}"' in path),
                                     f'{class_name}.Name="{name}"')
        return f"Filter={names[FILTER]},Handler={names[DESTINATION]}"

    def subscription(self, filter_name="f", destination_name="d"):
        ends = self.ends(filter_name, destination_name)
        return self.ask("ci", f":{SUBSCRIPTION}.{ends}", ends)

    def subscribe(self, url, name="d", query="SELECT * FROM TST_Alarm"):
        """A filter, a destination and a subscription of the same name."""
        for answer in (self.filter(name, query), self.destination(url, name),
                       self.subscription(name, name)):
            self.assertEqual((0, None), (answer.status, answer.cim_error),
                             answer.text + self.host.log())

    def unsubscribe(self, name="d"):
        self.good("di", f":{SUBSCRIPTION}.{self.ends(name, name)}")

    def ring(self, count=1, class_name="TST_Alarm", method="Ring"):
        answer = self.good("cm", ":TST_Bell", f'{method}.ClassName="{class_name}",Count={count}',
                           namespace="root/test")
        self.assertTrue(answer.lines[0].endswith(" 0"), answer.text)

    def told(self):
        answer = self.good("cm", ":TST_Bell", "Told", namespace="root/test")
        return re.search(r"Told: (.*);", answer.text).group(1).split(";")

    def wait_for_status(self, pattern, seconds=90):
        """What the service says of its destinations, once it matches."""
        deadline = time.monotonic() + seconds
        while not re.search(pattern, text := self.good("ei", ":CIM_IndicationService").text):
            self.assertLess(time.monotonic(), deadline, text)
        return text

    def path(self, class_name, name):
        paths = self.host.paths("ein", f":{class_name}", namespace="interop")
        return next(path for path in paths if f'Name="{name}"' in path)


class Subscribing(SubscribedCase):
    def test_filters_destinations_and_subscriptions_are_made_read_walked_and_deleted(self):
        self.subscribe("http://localhost:1/x")
        filter_path, destination_path = self.path(FILTER, "d"), self.path(DESTINATION, "d")
        self.assertIn('CreationClassName="CIM_IndicationFilter"', filter_path)
        self.assertIn("SystemName=", filter_path)
        self.assertIn("SELECT * FROM TST_Alarm", self.good("gi", f":{filter_path}").text)
        self.assertEqual([destination_path],
                         self.host.paths("ain", f":{filter_path}", namespace="interop"))
        self.assertEqual([filter_path],
                         self.host.paths("ain", f":{destination_path}", namespace="interop"))
        self.assertIn("http://localhost:1/x", self.good("ai", f":{filter_path}").text)
        self.assertEqual(1, len(self.good("rin", f":{filter_path}").lines))
        self.assertIn("-SubscriptionState=2", self.good("ei", f":{SUBSCRIPTION}",
                                                        options=["-nl"]).text)
        self.unsubscribe()
        self.good("di", f":{filter_path}")
        self.good("di", f":{destination_path}")
        for class_name in (FILTER, DESTINATION, SUBSCRIPTION):
            self.assertEqual([], self.host.paths("ein", f":{class_name}", namespace="interop"))

    def test_what_is_in_use_is_neither_deleted_nor_given_another_meaning(self):
        self.subscribe("http://localhost:1/")
        for class_name in (FILTER, DESTINATION):
            self.refused(FAILED, self.ask("di", f":{self.path(class_name, 'd')}"))
        self.refused(FAILED, self.ask("mi", f":{self.path(FILTER, 'd')}",
                                      'Query="SELECT * FROM TST_LoudAlarm"'))
        self.refused(FAILED, self.ask("mi", f":{self.path(DESTINATION, 'd')}",
                                      'Destination="http://localhost:2/"'))
        self.good("mi", f":{self.path(FILTER, 'd')}", "IndividualSubscriptionSupported=FALSE")
        self.assertIn("-IndividualSubscriptionSupported=false",
                      self.good("gi", f":{self.path(FILTER, 'd')}", options=["-nl"]).text)

    def test_bad_filters_are_refused_with_the_reason(self):
        answer = self.refused(INVALID_QUERY, self.filter(query="SELECT * FRM TST_Alarm"))
        self.assertIn("character 10", answer.text)
        self.refused(UNKNOWN_LANGUAGE, self.filter(language="SQL"))
        self.refused(INVALID_NAMESPACE, self.filter(source="root/nowhere"))
        self.refused(INVALID_CLASS, self.filter(query="SELECT * FROM TST_Unheard"))
        self.refused(INVALID_QUERY, self.filter(query="SELECT * FROM TST_Bell"))
        self.refused(INVALID_QUERY, self.filter(query="SELECT * FROM TST_Alarm WHERE Colour=1"))
        self.assertEqual([], self.host.paths("ein", f":{FILTER}", namespace="interop"))

    def test_bad_destinations_are_refused(self):
        for url in ("localhost", "http://", "ftp://x/", "http://x:0/", "http://x:70000/",
                    "http://user@x/", "http://x y/", "http://x/#part"):
            self.refused(INVALID_PARAMETER, self.destination(url))
        self.refused(NOT_SUPPORTED, self.destination("https://localhost/x"))

    def test_duplicates_and_subscriptions_to_nothing_are_refused(self):
        self.refused(NOT_FOUND, self.subscription())
        self.subscribe("http://localhost:1/")
        self.refused(ALREADY_EXISTS, self.filter("d"))
        self.refused(ALREADY_EXISTS, self.destination("http://localhost:1/"))
        self.refused(ALREADY_EXISTS, self.subscription("d", "d"))

    def test_a_provider_that_refuses_a_filter_refuses_the_subscription(self):
        self.destination("http://localhost:1/")
        self.filter("word", "SELECT * FROM TST_Alarm WHERE Message='Forbidden'")
        answer = self.refused(ACCESS_DENIED, self.subscription("word", "d"))
        self.assertIn("that word is forbidden", answer.text)
        self.filter("picky", "SELECT * FROM TST_PickyAlarm")
        answer = self.refused(INVALID_QUERY, self.subscription("picky", "d"))
        self.assertIn("no filter is good enough", answer.text)
        # Some of the providers accept, the last refuses: none is left with the filter.
        self.filter("all", "SELECT * FROM CIM_AlertIndication")
        self.assertNotEqual(0, self.subscription("all", "d").status)
        self.assertEqual([], self.host.paths("ein", f":{SUBSCRIPTION}", namespace="interop"))

    def test_the_service_tells_how_indications_are_delivered(self):
        text = self.good("ei", ":CIM_IndicationService", options=["-nl"]).text
        self.assertIn("-DeliveryRetryInterval=1", text)
        self.assertIn("-DeliveryRetryAttempts=3", text)


class Activating(SubscribedCase):
    def test_providers_are_told_in_order_once_for_each_filter(self):
        self.subscribe("http://localhost:1/", "one")
        first = ["authorize TST_Alarm root/test", "mustPoll SELECT", "activate TST_Alarm first",
                 "enable"]
        self.assertEqual(first, self.told())
        self.subscribe("http://localhost:1/", "two")
        second = ["authorize TST_Alarm root/test", "mustPoll SELECT", "activate TST_Alarm again"]
        self.assertEqual(first + second, self.told())
        self.unsubscribe("one")
        self.unsubscribe("two")
        self.assertEqual(["deactivate TST_Alarm one", "deactivate TST_Alarm last", "disable"],
                         self.told()[len(first + second):])

    def test_a_disabled_subscription_gets_nothing_until_it_is_enabled(self):
        with Listener() as listener:
            self.subscribe(listener.url)
            path = f":{SUBSCRIPTION}.{self.ends('d', 'd')}"
            self.good("mi", path, "SubscriptionState=4")
            self.assertEqual("disable", self.told()[-1])
            self.ring()
            self.good("mi", path, "SubscriptionState=2")
            self.ring(class_name="TST_LoudAlarm")
            self.assertIn("TST_LoudAlarm", listener.wait_for(1)[0])


class Delivering(SubscribedCase):
    def test_the_listen_command_prints_what_a_person_reads(self):
        with ListenCommand() as listener:
            self.subscribe(listener.url)
            self.ring()
            line = listener.read_until("TST_Alarm")
            self.assertRegex(line, r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  TST_Alarm  Critical$")
            listener.read_until(r"^    the bell <rings> & \\x0arings$")
            listener.read_until("    AlertType = 5")
            self.assertEqual(1, listener.stop())

    def test_the_listen_command_ends_by_itself_after_its_count(self):
        with ListenCommand("--count", 3) as listener:
            self.subscribe(listener.url)
            self.ring(3)
            self.assertEqual(0, listener.process.wait(timeout=60))
            self.assertEqual(3, listener.stop())

    def test_filters_select_and_project_and_sequences_count(self):
        with Listener() as listener:
            self.subscribe(listener.url, query="SELECT Number FROM TST_Alarm WHERE "
                                               "PerceivedSeverity >= 5 AND Number != 2")
            self.ring(5)
            self.ring(1, "TST_LoudAlarm", "RingAside")
            bodies = listener.wait_for(3)
            numbers = [re.search(r'"Number".*?<VALUE>(\d+)<', body).group(1) for body in bodies]
            sequence = [re.search(r'"SequenceNumber".*?<VALUE>(\d+)<', body).group(1)
                        for body in bodies]
            self.assertEqual((["0", "4", "0"], ["0", "1", "2"]), (numbers, sequence))
            self.assertNotIn("AlertType", bodies[0])
            self.assertIn('CLASSNAME="TST_LoudAlarm"', bodies[2])

    @long
    def test_a_listener_that_fails_at_first_gets_all_in_order(self):
        failures = [reply("", "500 No"), b"nonsense\r\n\r\n", b"", reply("<a>"),
                    reply(ANSWER.format('<ERROR CODE="1" DESCRIPTION="full"/>'))]
        tries = {}

        def answer(number, body):
            message = re.search(r'ID="(\d+)"', body).group(1)
            tries[message] = tries.get(message, 0) + 1
            return failures.pop() if failures and tries[message] < 3 else good()

        with Listener(answer) as listener:
            self.subscribe(listener.url)
            self.ring(4)
            bodies = listener.wait_for(9)
            ids = [int(re.search(r'ID="(\d+)"', body).group(1)) for body in bodies]
            self.assertEqual(sorted(ids), ids)
            self.assertEqual([0, 1, 2, 3], sorted(set(ids)))
            self.host.stop()
        self.assertEqual((4, 4, 0), counts_in(self.host.log())["d"], self.host.log())

    @long
    def test_dead_listeners_are_given_up_and_counted(self):
        dead = DeadListener()
        self.addCleanup(dead.close)
        self.subscribe(dead.url)
        # One, then more: how often those are tried again that come behind depends on when they came.
        self.ring()
        text = self.wait_for_status("1 dropped")
        self.assertIn("1 raised, 0 sent, 1 dropped, 0 waiting; 3 retries", text)
        self.ring(2)
        text = self.wait_for_status("3 dropped")
        self.assertIn("3 raised, 0 sent, 3 dropped, 0 waiting", text)

    def test_a_listener_that_never_answers_holds_back_neither_others_nor_the_end(self):
        with Listener(lambda number, body: None) as silent, Listener() as lively:
            self.subscribe(silent.url, "silent")
            self.subscribe(lively.url, "lively")
            self.ring(50)
            lively.wait_for(50)
            silent.wait_for(1)
            self.assertEqual(0, self.host.stop())
        counts = counts_in(self.host.log())
        self.assertEqual((50, 50, 0), counts["lively"])
        self.assertEqual((50, 0, 50), counts["silent"])


class Bursts(SubscribedCase):
    options = ("--delivery-queue", "2000")

    def test_twenty_thousand_at_once_are_all_accounted_for(self):
        count = 20_000

        def slowly(number, body):
            slow.ended.wait(0.05)
            return good()

        with ListenCommand() as lively, Listener(slowly) as slow, DeadListener() as dead:
            self.subscribe(lively.url, "lively")
            self.subscribe(slow.url, "slow")
            self.subscribe(dead.url, "dead")
            self.ring(count)
            self.wait_for_status(rf"lively: {count} raised, \d+ sent, \d+ dropped, 0 waiting")
            self.assertEqual(0, self.host.stop(), self.host.log())
            received = lively.stop()
            counts = counts_in(self.host.log())
            self.assertEqual({"lively", "slow", "dead"}, set(counts), self.host.log())
            for name, (raised, sent, dropped) in counts.items():
                self.assertEqual((count, count), (raised, sent + dropped), name)
            self.assertEqual(counts["lively"][1], received)
            self.assertGreater(received, 0)
            self.assertEqual(0, counts["dead"][1])
            self.assertLessEqual(counts["slow"][1], len(slow.bodies))
        drops = [line for line in self.host.log().splitlines() if "dropped so far" in line]
        self.assertLess(len(drops), 100)


def blocks_sigterm(pid):
    status = pathlib.Path(f"/proc/{pid}/status").read_text()
    blocked = int(re.search(r"^SigBlk:\s*(\w+)", status, re.MULTILINE).group(1), 16)
    return bool(blocked & 1 << (signal.SIGTERM - 1))


class Keeping(SubscribedCase):
    def start(self):
        self.host = Host("--state", self.state, arguments=ALARMS)

    def test_subscriptions_survive_a_restart(self):
        with Listener() as listener:
            self.subscribe(listener.url)
            self.assertEqual(0o600, self.state.stat().st_mode & 0o777)
            self.stop()
            self.start()
            self.assertEqual(["authorize TST_Alarm root/test", "mustPoll SELECT",
                              "activate TST_Alarm first", "enable"], self.told())
            self.ring()
            self.assertIn("TST_Alarm", listener.wait_for(1)[0])
            self.unsubscribe()
            self.stop()
            self.start()
            self.assertEqual([], self.host.paths("ein", f":{SUBSCRIPTION}", namespace="interop"))
            self.assertEqual(1, len(self.host.paths("ein", f":{FILTER}", namespace="interop")))

    def test_a_damaged_state_file_is_refused_with_its_line(self):
        self.subscribe("http://localhost:1/")
        self.stop()
        whole = self.state.read_text()
        damages = {
            whole[:len(whole) // 2]: r"state:\d+:\d+: ",
            whole.replace("SELECT * FROM", "SELECT * FRM"): r"state:\d+:\d+: the query has 'FRM'",
            whole.replace("cimhost subscriptions 2", "something else"): r"state:1:1: ",
            whole.replace("end of 3", "end of 4"): r"state:\d+:\d+: there are 3",
        }
        for damaged, reason in damages.items():
            self.state.write_text(damaged)
            command = [BUILD / "cimhost/cimhost", "serve", "--port", "0", "--max-seconds", "1",
                       "--state", self.state, *ALARMS]
            result = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                                    timeout=60, check=False)
            self.assertEqual((1, ""), (result.returncode, result.stdout))
            self.assertRegex(result.stderr, reason)
            self.assertEqual(damaged, self.state.read_text())
        self.state.write_text(whole)
        self.start()

    @long
    def test_a_provider_that_hangs_at_the_restoring_does_not_keep_the_server(self):
        self.subscribe("http://localhost:1/")
        self.stop()
        whole = self.state.read_text()
        hanging = whole.replace("FROM TST_Alarm", "FROM TST_Alarm WHERE Message = 'Hanging'")
        self.assertNotEqual(whole, hanging)
        self.state.write_text(hanging)
        for seconds, asks in (("120", True), ("1", False)):
            command = [BUILD / "cimhost/cimhost", "serve", "--port", "0", "--max-seconds", seconds,
                       "--state", self.state, *ALARMS]
            with subprocess.Popen([str(word) for word in command], text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE) as server:
                if asks:
                    while not blocks_sigterm(server.pid):
                        time.sleep(0.01)
                    server.send_signal(signal.SIGTERM)
                try:
                    out, errors = server.communicate(timeout=60)
                finally:
                    server.kill()
            self.assertEqual((1, ""), (server.returncode, out))
            self.assertIn("asked to end while it starts", errors)
        self.state.write_text(whole)
        self.start()

    def test_a_subscription_whose_provider_is_gone_is_kept_and_shown_as_disabled(self):
        self.subscribe("http://localhost:1/")
        self.stop()
        self.state.write_text(self.state.read_text().replace("TST_Alarm", "TST_MissingAlarm"))
        self.start()
        self.assertIn("-SubscriptionState=4",
                      self.good("ei", f":{SUBSCRIPTION}", options=["-nl"]).text)
        self.assertIn("is disabled", self.host.log())
        self.assertIn("SubscriptionState = 2", self.state.read_text())


if __name__ == "__main__":
    unittest.main()
