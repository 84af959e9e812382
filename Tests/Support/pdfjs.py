"""Draws PDF files with pdf.js, in an engine of its own that draws one file after the other.

    with PDFJS() as reader:
        picture = reader.picture("page.pdf", (612, 792))
"""

import base64
import fcntl
import io
import json
import os
import pathlib
import signal
import subprocess

from PIL import Image

from engine import HEADLESS_SHELL

_BUILD = pathlib.Path(__file__).resolve().parents[2] / "script/javascript/node_modules/pdfjs-dist/build"

_LOAD = """Promise.all(%s.map((module) => import('data:text/javascript;base64,' + module)))
    .then(([reader, worker]) => { globalThis.reader = reader; globalThis.pdfjsWorker = worker; })"""

_DRAW = """(async (file, width, height) => {
    const data = Uint8Array.from(atob(file), (letter) => letter.charCodeAt(0));
    const pdf = await reader.getDocument({ data }).promise;
    const page = await pdf.getPage(1);
    const { width: points } = page.getViewport({ scale: 1 });
    const canvas = new OffscreenCanvas(width, height);
    const viewport = page.getViewport({ scale: width / points });
    await page.render({ canvas, canvasContext: canvas.getContext('2d'), viewport }).promise;
    await pdf.loadingTask.destroy();
    const picture = new Uint8Array(await (await canvas.convertToBlob()).arrayBuffer());
    return picture.toBase64();
})(%s, %d, %d)"""


class PDFJS:
    def __init__(self):
        if not _BUILD.is_dir():
            raise AssertionError("pdf.js is missing: run script/javascript/install")
        self._unread = b""
        self._calls = 0
        to_engine, from_engine = self._high_pipe(), self._high_pipe()
        shell = f'exec "$0" "$@" 3<&{to_engine[0]} 4>&{from_engine[1]}'
        self._engine = subprocess.Popen(
            ["/bin/bash", "-c", shell, HEADLESS_SHELL, "--remote-debugging-pipe", "--no-sandbox", "--disable-gpu",
             "--disable-breakpad", "about:blank"],
            pass_fds=(to_engine[0], from_engine[1]), start_new_session=True, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_engine[0])
        os.close(from_engine[1])
        self._to, self._from = to_engine[1], from_engine[0]
        page = self._call("Target.getTargets")["targetInfos"][0]["targetId"]
        self._session = self._call("Target.attachToTarget", targetId=page, flatten=True)["sessionId"]
        modules = [self._base64(_BUILD / name) for name in ("pdf.min.mjs", "pdf.worker.min.mjs")]
        self._evaluate(_LOAD % json.dumps(modules))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    @property
    def process(self):
        return self._engine.pid

    def close(self):
        os.killpg(self._engine.pid, signal.SIGKILL)
        self._engine.wait()
        os.close(self._to)
        os.close(self._from)

    def picture(self, path, size):
        """The first page, as large as asked for."""
        drawn = self._evaluate(_DRAW % (json.dumps(self._base64(pathlib.Path(path))), *size))
        with Image.open(io.BytesIO(base64.b64decode(drawn))) as picture:
            return picture.convert("RGB")

    @staticmethod
    def _base64(path):
        return base64.b64encode(path.read_bytes()).decode()

    @staticmethod
    def _high_pipe():
        """A pipe whose numbers do not get in the way of 3 and 4."""
        ends = os.pipe()
        moved = tuple(fcntl.fcntl(end, fcntl.F_DUPFD_CLOEXEC, 20) for end in ends)
        for end in ends:
            os.close(end)
        return moved

    def _evaluate(self, expression):
        done = self._call("Runtime.evaluate", expression=expression, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in done:
            raise AssertionError(f"pdf.js refused the file: {done['exceptionDetails']['exception']['description']}")
        return done["result"].get("value")

    def _call(self, method, **parameters):
        self._calls += 1
        call = {"id": self._calls, "method": method, "params": parameters}
        if hasattr(self, "_session"):
            call["sessionId"] = self._session
        data = json.dumps(call).encode() + b"\0"
        while data:
            data = data[os.write(self._to, data):]
        while True:
            answer = json.loads(self._next_message())
            if answer.get("id") == self._calls:
                return answer["result"]

    def _next_message(self):
        while b"\0" not in self._unread:
            data = os.read(self._from, 1 << 20)
            if not data:
                raise AssertionError("the engine that runs pdf.js has ended")
            self._unread += data
        message, self._unread = self._unread.split(b"\0", 1)
        return message
