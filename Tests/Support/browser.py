"""Shows a file in the real engine, without network, and asks what it has loaded.

    with Browser(folder) as browser:
        page = browser.open(folder / "index.html")
        page.evaluate("document.images.length")
        page.addresses    # of all requests
"""

import base64
import json
import os
import select
import subprocess
import tempfile
import time

from engine import HEADLESS_SHELL

_SECONDS = 60


class Page:
    """A page that has loaded. Its scripts see nothing of what is evaluated."""

    def __init__(self, browser, session):
        self._browser = browser
        self._session = session
        self.addresses = []

    def call(self, method, **parameters):
        return self._browser.call(method, self._session, **parameters)

    def frames(self):
        """The main frame's identifier and those of all others, in the order of the document."""
        def all_of(tree):
            return [tree["frame"]["id"]] + [frame for child in tree.get("childFrames", []) for frame in all_of(child)]
        return all_of(self.call("Page.getFrameTree")["frameTree"])

    def evaluate(self, expression, frame=None):
        """The value of an expression in a frame, the main frame without one; a promise is waited for."""
        context = self.call("Page.createIsolatedWorld", frameId=frame or self.frames()[0])["executionContextId"]
        answer = self.call("Runtime.evaluate", expression=expression, contextId=context, returnByValue=True,
                           awaitPromise=True)
        if "exceptionDetails" in answer:
            raise AssertionError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def texts(self):
        """What each frame shows."""
        return [self.evaluate("document.documentElement.innerText ?? document.documentElement.textContent",
                              frame).strip() for frame in self.frames()]

    def images(self):
        """The widths of the images of all frames, 0 for those that are not there."""
        return [width for frame in self.frames()
                for width in self.evaluate("[...document.images].map(image => image.naturalWidth)", frame)]

    def fonts(self):
        """The families that have loaded, of all frames."""
        families = ("document.fonts.ready.then(() => [...document.fonts].filter(font => font.status === 'loaded')"
                    ".map(font => font.family))")
        return sorted(family for frame in self.frames() for family in self.evaluate(families, frame))

    def colour(self, selector, name="color", frame=None):
        return self.evaluate(f"getComputedStyle(document.querySelector({json.dumps(selector)})).{name}", frame)

    def told(self, method):
        """What the browser has told of the page by these events, since the last one was opened."""
        return [event["params"] for event in self._browser.events
                if event.get("method") == method and event.get("sessionId") == self._session]

    def complaints(self):
        """What stands in the page's console, whoever has written it."""
        return [self.told(method) for method in ("Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Log.entryAdded")
                if self.told(method)]

    def picture(self):
        """The page as it looks, a PNG file."""
        return base64.b64decode(self.call("Page.captureScreenshot")["data"])


class Browser:
    def __enter__(self):
        self._profile = tempfile.TemporaryDirectory(prefix="browser-")
        to_browser, from_browser = os.pipe(), os.pipe()
        # High numbers, since a pipe may itself have got number 3 or 4.
        self._child = subprocess.Popen(
            ["/bin/sh", "-c", f'exec "$@" 3<&{to_browser[0]} 4>&{from_browser[1]}', "sh", HEADLESS_SHELL,
             "--remote-debugging-pipe", "--no-sandbox", "--disable-gpu", "--disable-breakpad", "--no-first-run",
             "--proxy-server=127.0.0.1:9", "--host-resolver-rules=MAP * ~NOTFOUND",
             f"--user-data-dir={self._profile.name}", "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            pass_fds=(to_browser[0], from_browser[1]))
        os.close(to_browser[0])
        os.close(from_browser[1])
        self._to, self._from = to_browser[1], from_browser[0]
        self._unread, self._number, self.events = b"", 0, []
        return self

    def __exit__(self, *_):
        """Asked to end, it ends after its other processes, which write to the profile."""
        try:
            self.call("Browser.close")
            self._child.wait(_SECONDS)
        finally:
            self._child.kill()
            self._child.wait()
        os.close(self._to)
        os.close(self._from)
        self._profile.cleanup()

    def call(self, method, session=None, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._to, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._receive()
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise AssertionError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def _receive(self):
        until = time.monotonic() + _SECONDS
        while b"\0" not in self._unread:
            ready, _, _ = select.select([self._from], [], [], max(0, until - time.monotonic()))
            data = os.read(self._from, 1 << 20) if ready else b""
            if not data:
                raise AssertionError("the browser does not answer")
            self._unread += data
        message, _, self._unread = self._unread.partition(b"\0")
        return json.loads(message)

    def open(self, path):
        """The page of a file, when it and all that it has asked for has loaded or failed."""
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        page = Page(self, session)
        for domain in ("Page", "Network", "Runtime", "Log"):
            page.call(f"{domain}.enable")
        page.call("Page.setLifecycleEventsEnabled", enabled=True)
        self.events.clear()
        page.call("Page.navigate", url=path.absolute().as_uri())
        while not any(event.get("method") == "Page.lifecycleEvent" and event["params"]["name"] == "networkIdle" and
                      event["params"]["frameId"] == target for event in self.events):
            self.events.append(self._receive())
        page.addresses = [event["params"]["request"]["url"] for event in self.events
                          if event.get("method") == "Network.requestWillBeSent"]
        return page
