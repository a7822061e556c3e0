"""How other object managers behave: what cimhost tells of it."""

import subprocess
import unittest

from host import BUILD, SOURCE, Host

PAGE = SOURCE / "docs/portability.md"
MARK = "<!-- From here on: cimhost manners -->\n"


def cimhost(*words):
    return subprocess.run([BUILD / "cimhost/cimhost", *words], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True, timeout=30, check=False)


class Manners(unittest.TestCase):
    def test_the_page_on_portability_has_the_table_that_is_followed(self):
        printed = cimhost("manners").stdout
        self.assertEqual(PAGE.read_text().split(MARK)[1], "\n" + printed,
                         "write what 'cimhost manners' prints below the mark of docs/portability.md")

    def test_a_manner_s_habits_are_listed(self):
        answer = cimhost("manners", "sfcb")
        self.assertEqual(0, answer.returncode, answer.stderr)
        self.assertIn("hasNoMemoryFunctions\n    The table of memory functions is null.\n",
                      answer.stdout)
        self.assertEqual("", cimhost("manners", "standard").stdout)

    def test_a_manner_that_is_none_is_refused_with_the_names_of_those_there_are(self):
        for words in (["manners", "other"], ["serve", "--manner", "other"]):
            answer = cimhost(*words)
            self.assertEqual(2, answer.returncode)
            self.assertIn("standard, openpegasus, sfcb, strict, mean or mean:SEED", answer.stderr)

    def test_a_module_answers_under_every_manner(self):
        for manner in ("standard", "openpegasus", "sfcb", "strict", "mean", "mean:7"):
            with self.subTest(manner), Host(manner=manner) as host:
                self.assertIn("PYL_ComputerSystem.", host.paths("ein", ":PYL_ComputerSystem")[0])


if __name__ == "__main__":
    unittest.main()
