"""No page reaches a network: neither this machine's loopback nor anything beyond it."""

import os
import socket
import subprocess
import threading
import unittest

import processes
from pages import acting, page
from tool import ToolTestCase
from webarchive import Resource


class Listener:
    """Counts the connections and datagrams that reach it."""

    def __init__(self):
        self.reached = 0
        self._stream = socket.create_server(("127.0.0.1", 0))
        self.port = self._stream.getsockname()[1]
        self._datagrams = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._datagrams.bind(("127.0.0.1", self.port))
        self._threads = [threading.Thread(target=self._accept), threading.Thread(target=self._receive)]
        for thread in self._threads:
            thread.start()

    def _accept(self):
        while True:
            connection, _ = self._stream.accept()
            with connection:
                if self._is_last(connection.recv(16)):
                    return
            self.reached += 1

    def _receive(self):
        while not self._is_last(self._datagrams.recv(2048)):
            self.reached += 1

    @staticmethod
    def _is_last(data):
        return data == b"the end"

    def close(self):
        with socket.create_connection(("127.0.0.1", self.port)) as last:
            last.sendall(b"the end")
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as last:
            last.sendto(b"the end", ("127.0.0.1", self.port))
        for thread in self._threads:
            thread.join()
        self._stream.close()
        self._datagrams.close()


def probing_page(port):
    """Tries every road out of a page that there is."""
    base = f"//127.0.0.1:{port}/"
    script = f"""
        var base = 'http:{base}';
        var tries = [
            () => new WebSocket('ws:{base}socket'),
            () => fetch(base + 'fetch', {{mode: 'no-cors'}}),
            () => {{ var x = new XMLHttpRequest(); x.open('GET', base + 'xhr'); x.send(); }},
            () => navigator.sendBeacon(base + 'beacon', 'x'),
            () => new EventSource(base + 'events'),
            () => new Image().src = base + 'image.png',
            () => window.open(base + 'popup'),
            () => new Worker('worker.js'),
            () => new SharedWorker('worker.js'),
            () => new Worker(URL.createObjectURL(new Blob(["fetch('" + base + "blob', {{mode: 'no-cors'}});"
                + "new WebSocket('ws:{base}blob')"]))),
            () => navigator.serviceWorker.register('worker.js'),
            () => {{ var p = new RTCPeerConnection({{iceServers: [{{urls: 'stun:127.0.0.1:{port}'}}]}});
                     p.createDataChannel('x'); p.createOffer().then(o => p.setLocalDescription(o)); }},
            () => document.getElementById('form').submit(),
            () => document.getElementById('link').click(),
            () => {{ var f = document.createElement('iframe'); f.src = base + 'frame';
                     document.body.appendChild(f); }},
        ];
        tries.forEach(attempt => {{ try {{ attempt(); }} catch (e) {{ }} }});
    """
    head = (f'<link rel="preconnect" href="http:{base}"><link rel="dns-prefetch" href="http:{base}">'
            f'<link rel="prefetch" href="http:{base}prefetch"><link rel="preload" as="image" href="http:{base}preload">'
            f'<link rel="stylesheet" href="http:{base}style.css"><link rel="icon" href="http:{base}icon.png">'
            f'<script src="http:{base}script.js"></script>'
            f'<script type="speculationrules">{{"prerender":[{{"source":"list","urls":["http:{base}rules"]}}],'
            f'"prefetch":[{{"source":"list","urls":["http:{base}rules2"]}}]}}</script>')
    body = (f'<p>StillHere</p><form id="form" target="_blank" action="http:{base}form"></form>'
            f'<a id="link" ping="http:{base}ping" href="http:{base}link"></a>'
            f'<video src="http:{base}video.mp4"></video><object data="http:{base}object"></object>')
    worker = (f"try {{ fetch('http:{base}worker', {{mode: 'no-cors'}}); }} catch (e) {{ }}"
              f"try {{ new WebSocket('ws:{base}worker'); }} catch (e) {{ }}"
              f"try {{ importScripts('http:{base}import.js'); }} catch (e) {{ }}")
    archive = acting(script, body, head=head)
    return archive.add(Resource("http://site.example/worker.js", worker, "text/javascript"))


class NetworkTests(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.listener = Listener()
        self.addCleanup(self.listener.close)

    def test_listener_notices(self):
        socket.create_connection(("127.0.0.1", self.listener.port)).close()
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(b"x", ("127.0.0.1", self.listener.port))
        self.assertIsNotNone(processes.wait_for(lambda: self.listener.reached == 2, 5))

    def probe(self, **options):
        self.set_preferences({"WebToolExtraLoadingTime": 2})
        run = self.convert(probing_page(self.listener.port), quick=False, **options)
        self.assertIn("StillHere", run.pdf.text())
        self.assertEqual(self.listener.reached, 0)

    def test_page_that_tries_everything(self):
        self.probe()

    def test_the_same_in_print_mode(self):
        self.probe(mode="print")

    def test_the_same_as_an_ordinary_user(self):
        options = self.as_nobody()
        (self.folder / "out").chmod(0o777)
        self.probe(**options)

    def test_page_that_navigates_there(self):
        url = f"http://127.0.0.1:{self.listener.port}/"
        run = self.convert(acting(f"location.href = '{url}'"), expect_success=False)
        self.assertIn("succeeded", run.result)
        self.assertEqual(self.listener.reached, 0)


class IsolationTests(ToolTestCase):
    """What the kernel says about the engine while a page is shown."""

    def watch(self, **options):
        """The engine's processes during the quiet period, as (name, network, user, seccomp, command line)."""
        child = self.start_and_show(page("<p>Text</p>"), 3, **options)
        seen = []
        engine = [pid for pid in processes.descendants() if pid != child.pid]
        self.assertGreaterEqual(len(engine), 2, "no engine was started")
        for pid in engine:
            with open(f"/proc/{pid}/status", encoding="utf-8") as file:
                status = dict(line.split(":", 1) for line in file)
            with open(f"/proc/{pid}/cmdline", "rb") as file:
                command = file.read().decode().replace("\0", " ")
            seen.append((pid, os.readlink(f"/proc/{pid}/ns/net"), int(status["Uid"].split()[0]),
                         int(status["Seccomp"]), int(status["NoNewPrivs"]), command))
        child.communicate(timeout=60)
        self.assert_nothing_left()
        return seen

    def assert_isolated(self, seen):
        own = os.readlink("/proc/self/ns/net")
        self.assertEqual([process for process in seen if process[1] == own], [], "processes with a network")
        self.assertEqual([process for process in seen if process[2] == 0], [], "processes of the superuser")
        self.assertEqual([process for process in seen if "--no-sandbox" in process[5]], [])
        renderers = [process for process in seen if "--type=renderer" in process[5]]
        self.assertTrue(renderers, seen)
        for renderer in renderers:
            self.assertEqual(renderer[3:5], (2, 1), "a renderer without system call filter")

    @staticmethod
    def namespaces_are_allowed():
        command = ["unshare", "-n", "true"] if os.getuid() == 0 else ["unshare", "-Un", "true"]
        return subprocess.run(command, capture_output=True, check=False).returncode == 0

    def test_engine_has_no_network_and_a_sandbox(self):
        if self.namespaces_are_allowed():
            self.assert_isolated(self.watch())
        else:
            run = self.convert(page("<p>Text</p>"))
            self.assertTrue(run.log.notes, "what was given up must be logged")

    def test_engine_of_an_ordinary_user_too(self):
        options = self.as_nobody()
        (self.folder / "out").chmod(0o777)
        if self.namespaces_are_allowed():
            self.assert_isolated(self.watch(**options))
        else:
            run = self.convert(page("<p>Text</p>"), **options)
            self.assertTrue(run.log.notes, "what was given up must be logged")


if __name__ == "__main__":
    unittest.main()
