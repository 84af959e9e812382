"""The quick choice of the hostile pages, as tests: one class for each module in pages/."""

import unittest

import processes
from hostile import FAMILIES, pages
from judge import judge
from tool import tool_path


class HostileTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        processes.adopt_orphans()


def _test(page):
    def test(self):
        verdict = judge(page, tool_path())
        self.assertEqual(verdict.problems, [], page.harm)
    return test


for _family in FAMILIES:
    _tests = {f"test_{page.name}": _test(page) for page in pages(_family) if page.quick}
    globals()[_family] = type(_family, (HostileTestCase,), _tests)
