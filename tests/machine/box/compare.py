"""cimhost and another object manager in the same guest, one after the other, with the same modules and questions."""

import re

from .alerts import Listener, subscribe, wait_until
from .answers import Answer, Client, Comparison, Question, questions
from .words import BoxError

ALERTS = Question("alerts", "root/ktq", "KT_AlertIndication")
TESTS = 3  # alerts of the trigger


def compare(machine, program, serve, manager, installation):
    """`serve`: the command that starts cimhost. Prints what is done and what came out, and returns it."""
    print(f"Asking cimhost, of which {manager.name} is to do the same ...", flush=True)
    machine.serve(serve)
    own = Client(machine.address, machine.client_options)
    asked = questions(installation.data, own)
    ours = [own.ask(question) for question in asked]
    told = _alerts(machine, program, own, "cimhost")
    if isinstance(told, BoxError):
        raise told
    machine.stop_serving()
    machine.ask("rm -rf /etc/cim/*")  # what the modules count begins anew

    print(f"Giving {manager.name} the modules ...", flush=True)
    manager.set_up(machine, installation)
    print(f"Asking {manager.name} ...", flush=True)
    other = Client(f"http://localhost:{machine.port}", interop=manager.interop)
    comparison = Comparison(manager.kind, manager.name)
    for question, answer in zip(asked, ours):
        comparison.add(question, answer, other.ask(question))
    heard = _alerts(machine, program, other, manager.kind)
    if isinstance(heard, BoxError):
        print(f"No subscription: {heard} The alerts were not compared.")
    else:
        comparison.add(ALERTS, told, heard)
    print("\n".join(comparison.lines()), flush=True)
    return comparison


def _alerts(machine, program, client, name):
    """What a listener hears of root's trigger for test alerts; or why there is no subscription."""
    listener = Listener(machine, program, name)
    try:
        subscribe(client, machine.server.host_name)
    except BoxError as error:
        return error
    finally_heard = f"Test Event Id: {TESTS}"
    machine.ask("touch /tmp/PYL.test")
    wait_until(lambda: finally_heard in listener.text())
    text = listener.text()
    listener.end()
    return _answer(text)


def _answer(text):
    """The test alerts as instances, with the names of their properties as wbemcli writes them."""
    blocks = [block for block in re.split(r"(?m)^(?=\d{4}-\d\d-\d\d )", text) if "Test Event Id" in block]
    lines = [[re.sub(r"^ +(\w+) = ", r"-\1=", line).replace('\\"', '"').strip() for line in block.splitlines()[1:]]
             for block in blocks]
    return Answer(tuple(map(tuple, lines)), operation=ALERTS.operation)
