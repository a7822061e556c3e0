"""The same questions for two object managers, and whether they answer alike."""

import dataclasses
import re
import subprocess

# What the reference modules can do beside being read, by their classes.
METHODS = (
    ("PYL_BaseServerWorker", "PerformWork"),
    ("PYL_ComputerSystem", 'PostStatus.ClassName="PYL_PCIDeviceGroup",Status=2'),
    ("PYL_ComputerSystem", "PostStatus.Status=2"),
    ("PYL_PXDataCollection", 'GetCollectedClasses.RegisteredName="KT PCI"'),
    ("PYL_PXDataCollection", 'GetCollectedClasses.RegisteredName="nosuch"'),
    ("PYL_PXDataCollection", "NoSuchMethod"),
)


@dataclasses.dataclass(frozen=True)
class Question:
    """wbemcli OPERATION [OPTIONS] NAMESPACE:TARGET [DATA]; the profiles' namespace is called interop."""
    operation: str
    namespace: str
    target: str
    data: str = ""
    options: tuple = ()

    def __str__(self):
        words = (self.operation, *self.options, f"{self.namespace}:{self.target}", self.data)
        return " ".join(word for word in words if word)


@dataclasses.dataclass(frozen=True)
class Answer:
    """Blocks of lines, an instance each; or what was said instead, with a status of CIM where there is one."""
    blocks: tuple = ()
    refusal: str = None
    status: int = 0
    operation: str = ""

    def mapped(self, of_line):
        blocks = tuple(tuple(of_line(line) for line in block) for block in self.blocks)
        return dataclasses.replace(self, blocks=blocks, refusal=self.refusal and of_line(self.refusal))

    def lines(self):
        return [self.refusal] if self.refusal else [line for block in self.blocks for line in block]


class Client:
    """Asks an object manager at this address, whose profiles are in the namespace `interop`."""

    def __init__(self, address, options=(), interop="interop"):
        self._address = address
        self._options = options
        self.interop = interop

    def ask(self, question):
        namespace = self.interop if question.namespace == "interop" else question.namespace
        command = ["wbemcli", question.operation, *self._options, *question.options,
                   f"{self._address}/{namespace}:{question.target}", *([question.data] if question.data else [])]
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120,
                                check=False, stdin=subprocess.DEVNULL)
        return self._answer(question, result.stdout.strip())

    def paths(self, class_name, namespace):
        """As they may be used in questions: class and keys."""
        answer = self.ask(Question("ein", namespace, class_name))
        return [line.split(":", 1)[1] for block in answer.blocks for line in block if ":" in line]

    def _answer(self, question, text):
        text = text.replace(re.sub(".*(//|@)", "", self._address) + "/", "")
        if "wbemcli:" in text:
            said = re.search(r"wbemcli: (?:Cim: \((\d+)\) )?(.*)", text, re.DOTALL)
            words = " ".join(word for word in said.group(2).split() if word != "*")
            return Answer(refusal=words, status=int(said.group(1) or 0), operation=question.operation)
        blocks = [block.splitlines() for block in re.split(r"\n\s*\n", text)] if text else []
        if question.operation in ("ein", "ain", "rin"):
            blocks = [[line] for block in blocks for line in block]
        return Answer(tuple(map(tuple, blocks)), operation=question.operation)


def questions(data, client):
    """What can be asked of the modules whose registrations are in the folder `data`, with the paths that the client's
    object manager gives."""
    served = dict.fromkeys(tuple(words) for file in sorted(data.glob("*.registration"))
                           for words in map(str.split, file.read_text().splitlines())
                           if len(words) > 4 and not words[0].startswith("#"))
    asked = []
    first = {}
    for name, namespace, _, _, *kinds in served:
        if "instance" not in kinds:
            continue
        paths = client.paths(name, namespace)
        asked += [Question("ein", namespace, name), Question("ei", namespace, name, options=("-nl",))]
        if paths and "association" not in kinds:
            first.setdefault(name, (namespace, paths[0]))
            asked += [Question("gi", namespace, path, options=("-nl",)) for path in {paths[0]: 0, paths[-1]: 0}]
    for namespace, path in first.values():
        asked += [Question(operation, namespace, path, options=options)
                  for operation, options in (("ain", ()), ("ai", ("-nl",)), ("rin", ()), ("ri", ("-nl",)))]
    for name, namespace, _, _, *kinds in served:
        if "association" in kinds and (system := first.get("PYL_ComputerSystem")):
            asked.append(Question("ain", *system, options=("-ac", name)))
            asked.append(Question("ain", *system, options=("-ac", name, "-ar", "Dependent")))
    asked += [Question("cm", *first[name], data=call) for name, call in METHODS if name in first]
    asked += [Question("ei", *first[name][:1], name, options=("-nl",)) for name in ("PYL_ConsolidatedStatus",)
              if name in first]
    return list(dict.fromkeys(asked + _refused(first)))


def _refused(first):
    asked = [Question("ein", "root/ktq", "PYL_NoSuchClass"), Question("ein", "root/nosuch", "PYL_ComputerSystem")]
    for namespace, path in first.values():
        absent = re.sub(r'(?:"[^"]*")$', '"nosuch"', path)
        asked += [Question("gi", namespace, absent, options=("-nl",)), Question("di", namespace, path)]
    if "PYL_ComputerSystem" in first:
        asked += [Question("ci", *first["PYL_ComputerSystem"], data='ElementName="x"'),
                  Question("mi", *first["PYL_ComputerSystem"], data='ElementName="x"')]
    return asked


@dataclasses.dataclass(frozen=True)
class Reason:
    """Why an object manager may answer otherwise: what an answer is without it."""
    text: str
    without: object  # Answer -> Answer
    of: tuple = ("openpegasus", "sfcb")


DEFAULTS = ("-EnabledState=5", "-RequestedState=12", "-EnabledDefault=2", "-TransitioningToState=12")
DELIVERY = ("-SequenceContext=", "-SequenceNumber=", "-IndicationFilterName=")
ASSOCIATIONS = ("ain", "ai", "rin", "ri")


def _dropped(answer, is_dropped):
    blocks = tuple(tuple(line for line in block if not is_dropped(line)) for block in answer.blocks)
    return dataclasses.replace(answer, blocks=blocks)


def _with_sorted_keys(line):
    def in_order(keys):
        words = re.findall(r'\w+="(?:[^"\\]|\\.)*"', keys[0])
        return "." + ",".join(sorted(words)) + keys[0][len(",".join(words)) + 1:]

    return re.sub(r'\.(?:\w+="(?:[^"\\]|\\.)*",?)+', in_order, line)


def _sorted(answer):
    blocks = sorted(tuple(sorted(map(_with_sorted_keys, block))) for block in answer.blocks)
    return dataclasses.replace(answer, blocks=tuple(dict.fromkeys(blocks)))


def _without_refused_association(answer):
    if answer.operation in ASSOCIATIONS and answer.status == 7:
        return Answer(operation=answer.operation)
    return answer


REASONS = (
    Reason("Each has a name of its own for the interop namespace.",
           lambda answer: answer.mapped(lambda line: re.sub(r"\broot/(PG_InterOp|interop)(?=\W|PYL_)", "interop", line))),
    Reason("The text of a refusal is each one's own, its status is the same.",
           lambda answer: dataclasses.replace(answer, refusal=answer.refusal and f"status {answer.status}")
           if answer.status else answer),
    Reason("Properties without a value are listed.", lambda answer: _dropped(answer, lambda line: line.endswith("="))),
    Reason("Properties have the values that their class declares until a provider sets them.",
           lambda answer: _dropped(answer, lambda line: line in DEFAULTS), ("openpegasus",)),
    Reason("References name the host.",
           lambda answer: answer.mapped(lambda line: re.sub(r'(?<==)("?)(//)?[\w.:-]+/(?=root/|interop)', r"\1", line))),
    Reason("An association operation that a provider does not support is an empty answer.",
           _without_refused_association, ("openpegasus",)),
    Reason("Times are those of the question.",
           lambda answer: answer.mapped(lambda line: re.sub(r"\d{14}\.\d{6}[+-]\d{3}", "TIME", line))),
    Reason("Each numbers and names what it delivers.",
           lambda answer: _dropped(answer, lambda line: line.startswith(DELIVERY))),
    Reason("Instances, properties and keys come in an order of their own, and one that is found on two ways comes once or "
           "twice.", _sorted),
)


def reasons_for(ours, theirs, kind):
    """Why these answers differ: texts, none when they are equal; None when no reason explains it."""
    used = [reason for reason in REASONS if kind in reason.of]
    if not _alike(ours, theirs, used):
        return None
    for reason in list(used):  # those that it does not take
        rest = [each for each in used if each is not reason]
        if _alike(ours, theirs, rest):
            used = rest
    return [reason.text for reason in used]


def _alike(ours, theirs, reasons):
    for reason in reasons:
        ours, theirs = reason.without(ours), reason.without(theirs)
    return ours == theirs


class Comparison:
    """Counts and tells, question by question, what is equal, what differs for a reason, and what differs."""

    def __init__(self, kind, name):
        self._kind = kind
        self._name = name
        self.equal = 0
        self.explained = {}  # reason -> questions
        self.different = []  # (question, ours, theirs)

    def add(self, question, ours, theirs):
        reasons = reasons_for(ours, theirs, self._kind)
        if reasons is None:
            self.different.append((question, ours, theirs))
        elif not reasons:
            self.equal += 1
        for reason in reasons or ():
            self.explained.setdefault(reason, []).append(question)

    def lines(self):
        explained = {question for asked in self.explained.values() for question in asked}
        yield (f"{self.equal + len(explained) + len(self.different)} questions: {self.equal} answers equal, "
               f"{len(explained)} different for a reason, {len(self.different)} different.")
        for reason, asked in self.explained.items():
            yield f"  {len(asked):3}  {reason}"
        for question, ours, theirs in self.different:
            yield f"Different: {question}"
            yield from self._difference("cimhost", ours, theirs)
            yield from self._difference(self._name, theirs, ours)

    @staticmethod
    def _difference(name, answer, other, limit=6):
        lines = answer.lines()
        own = [line for line in lines if line not in other.lines()]
        if not lines:
            yield f"  {name}: an empty answer"
        elif not own:
            yield f"  {name}: no line that the other has not"
        for line in own[:limit]:
            yield f"  {name}: {line[:200]}"
        if len(own) > limit:
            yield f"  {name}: ... and {len(own) - limit} lines more"
