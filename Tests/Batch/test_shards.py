"""Parts of a batch: together they convert everything once."""

import fake_tool
from batch import FAILURE, BatchTestCase
from test_sources import NAMES, pdf_of


class ShardTests(BatchTestCase):
    def setUp(self):
        super().setUp()
        self.names = [*NAMES, *(f"page {number}" for number in range(30)), *(f"one/{number}" for number in range(10))]
        self.archives(*self.names)
        self.all = [pdf_of(name) for name in self.names]

    def run_shards(self, count, calls, **options):
        shares = []
        for index in range(count):
            run = self.run_batch("in", "--shard", f"{index}/{count}", "-j", 4, **options)
            shares.append(run.summary["total"])
        self.assertEqual(sum(shares), len(self.names))
        self.assertEqual(self.called(), calls)
        self.assert_converted(*self.all)
        return shares

    def test_together_everything_once(self):
        for count in (1, 2, 3, 8):
            with self.subTest(count):
                self.output = self.folder / f"out{count}"
                shares = self.run_shards(count, len(self.names), output=f"out{count}")
                self.assertTrue(all(shares), shares)
                files = {f"web2pdf-batch.{index}-of-{count}.jsonl" for index in range(count)}
                self.assertEqual({path.name for path in self.output.glob("web2pdf-batch*")},
                                 files if count > 1 else {"web2pdf-batch.jsonl"})

    def test_at_the_same_time(self):
        children = [self.start_batch("in", "--shard", f"{index}/4", "-j", 2) for index in range(4)]
        for child in children:
            _, errors = child.communicate(timeout=60)
            self.assertEqual((child.returncode, errors), (0, b""))
        self.assertEqual(self.called(), len(self.names))
        self.assert_converted(*self.all)

    def test_other_numbers_of_shards_keep_what_is_done(self):
        self.run_shards(3, len(self.names))
        for count in (5, 2, 1, 3):
            self.run_shards(count, 0)

    def test_share_goes_by_the_pdf_alone(self):
        def share(*sources):
            return {line.rpartition(" -> ")[2] for line in self.run_batch("-n", "--shard", "1/3", *sources).lines}
        whole = share("in")
        (self.folder / "elsewhere").mkdir()
        (self.sources / "one").rename(self.folder / "elsewhere" / "one")
        self.archive("a new one")
        self.assertEqual({pdf for pdf in whole if pdf.startswith("one/")}, share("elsewhere"))
        self.assertEqual({pdf for pdf in whole if not pdf.startswith("one/")}, share("in") - {"a new one.pdf"})

    def test_more_shards_than_archives(self):
        run = self.run_batch("in", "--shard", "1/1000000")
        self.assertEqual(run.summary, {"total": 0, "converted": 0})

    def test_failures_count_where_they_belong(self):
        self.archive("bad", fake_tool.fails("NSCocoaErrorDomain", 259))
        children = [self.start_batch("in", "--shard", f"{index}/2") for index in range(2)]
        for child in children:
            child.communicate(timeout=60)
        self.assertEqual(sorted(child.returncode for child in children), [0, FAILURE])

    def test_what_is_no_shard_is_refused(self):
        for text in ("8/8", "-1/8", "x/y", "1", "/", "1/", "/8", "0/0", "1/8x", " 1/8", "1 /8", "+1/8", "0x1/8", "",
                     "1/8/9", "99999999999999999999/8", "0/99999999999999999999", "\x1b[31m"):
            with self.subTest(text):
                self.assert_refused("--shard", "in", "--shard", text)
