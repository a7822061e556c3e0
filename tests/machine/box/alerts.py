"""A listener in the guest, subscribed to all alerts of the object manager there."""

import shlex
import time

from .answers import Question
from .words import BoxError

PORT = 5990
QUERY = 'Query="SELECT * FROM KT_AlertIndication",QueryLanguage="WQL",SourceNamespaces="root/ktq"'
FILTER, DESTINATION, SUBSCRIPTION = "CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML", "CIM_IndicationSubscription"


class Listener:
    """What `cimhost listen` prints there, in a file of this name."""

    def __init__(self, machine, program, name):
        self._machine = machine
        self._file = f"/run/{name}"
        machine.ask(f"setsid {shlex.quote(str(program))} listen --port {PORT} >{self._file} 2>&1 & "
                    "echo $! >/run/listener.pid")

    def text(self):
        return self._machine.ask(f"cat {self._file}")

    def end(self):
        self._machine.ask("kill $(cat /run/listener.pid)")


def subscribe(client, system, name="box"):
    """Has the client's object manager tell that listener; raises BoxError with the words of one that refuses."""
    for class_name, data in ((FILTER, QUERY), (DESTINATION, f'Destination="http://127.0.0.1:{PORT}/"')):
        path = (f'{class_name}.SystemCreationClassName="CIM_ComputerSystem",SystemName="{system}",'
                f'CreationClassName="{class_name}",Name="{name}"')
        _make(client, Question("ci", "interop", path, f'Name="{name}",{data}'))
    # An object manager may give them other keys.
    made, to = (_path(client, class_name, name) for class_name in (FILTER, DESTINATION))
    both = f"Filter={made},Handler={to}"
    _make(client, Question("ci", "interop", f"{SUBSCRIPTION}.{both}", both))


def wait_until(is_so, seconds=180):
    """Whether it came to be."""
    deadline = time.monotonic() + seconds
    while not is_so():
        if time.monotonic() > deadline:
            return False
        time.sleep(0.2)
    return True


def _make(client, question):
    answer = client.ask(question)
    if answer.refusal:
        raise BoxError(f"{question.target.split('.')[0]} could not be made: {answer.refusal}")


def _path(client, class_name, name):
    for path in client.paths(class_name, "interop"):
        if f'Name="{name}"' in path:
            return path
    raise BoxError(f"{class_name} was made and is not there.")
