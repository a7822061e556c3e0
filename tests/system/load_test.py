"""Eight clients at once: every request answered, every answer right."""

import subprocess
import threading
import time
import unittest

from host import Host, long

CLIENTS = 8
SECONDS = 30


class Load(unittest.TestCase):
    @long
    def test_eight_clients_for_thirty_seconds_get_only_right_answers(self):
        with Host() as host:
            requests = self._requests(host)
            expected = [self._run(command) for command in requests]
            for command, (status, text) in zip(requests, expected):
                self.assertEqual(0, status, f"{command}: {text}")
            wrong, counts = [], [0] * CLIENTS
            end = time.monotonic() + SECONDS

            def client(number):
                turn = number
                while time.monotonic() < end and not wrong:
                    index = turn % len(requests)
                    answer = self._run(requests[index])
                    if answer != expected[index]:
                        wrong.append((requests[index], answer, expected[index]))
                    counts[number] += 1
                    turn += 1

            threads = [threading.Thread(target=client, args=(number,)) for number in range(CLIENTS)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual([], wrong[:1])
            self.assertTrue(all(counts), counts)

    @staticmethod
    def _requests(host):
        system = host.paths("ein", ":PYL_ComputerSystem")[0]
        targets = [("ein", ":PYL_PCIDevice"), ("ei", ":PYL_ComputerSystem"), ("gi", f":{system}"),
                   ("ain", f":{system}"), ("ai", f":{system}"), ("rin", f":{system}"),
                   ("gc", ":PYL_PCIDevice"), ("ecn", ":CIM_ManagedElement")]
        return [["wbemcli", operation, host.url(target)] for operation, target in targets]

    @staticmethod
    def _run(command):
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                timeout=60, check=False)
        return result.returncode, result.stdout


if __name__ == "__main__":
    unittest.main()
