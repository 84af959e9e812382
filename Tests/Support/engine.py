"""Stand-ins for the web engine: scripts that a test names in WEB2PDF_ENGINE.

A script is text of its own, because the tool may run it as another user and without the tests' modules.
"""

import inspect
import os
import subprocess

import cbor

DIES_AT_ONCE = "#!/bin/sh\nexit 1\n"
NEVER_ANSWERS = "#!/bin/sh\nexec sleep 600\n"
ANSWERS_NONSENSE = "#!/bin/sh\nprintf 'no message\\0' >&4\nexec sleep 600\n"

# Stands between the tool and the real engine, passes the messages on, and calls take_note for each of the
# tool's. It is formatted with the module cbor, the engine's path and the definition of take_note, which says
# whether the message goes to the engine; beside it hand_on may be defined anew, which hands the engine's messages
# on, as they come: decoded(message) is what one says.
_BETWEEN = r'''#!/usr/bin/python3
%(cbor)s

import os, select, signal, sys

to_engine, from_engine = os.pipe(), os.pipe()
child = os.fork()
if child == 0:
    # The numbers are moved out of the way first: a pipe may itself have got number 3 or 4.
    read_end, write_end = os.dup(to_engine[0]), os.dup(from_engine[1])
    high = [os.dup2(read_end, 101), os.dup2(write_end, 102)]
    os.dup2(high[0], 3)
    os.dup2(high[1], 4)
    os.closerange(5, 256)
    os.execv(%(engine)r, [%(engine)r] + sys.argv[1:])
os.close(to_engine[0])
os.close(from_engine[1])
unread = {3: b"", from_engine[0]: b""}


def end(status):
    os.kill(child, signal.SIGKILL)
    os.waitpid(child, 0)
    os._exit(status)


def write(number, data):
    while data:
        data = data[os.write(number, data):]


def send(number, message):
    write(number, encode(message))


def decoded(message):
    return take(message)[0]


def receive(number):
    """The whole messages that have come."""
    data = os.read(number, 1 << 20)
    if not data:
        end(0)
    unread[number] += data
    whole = []
    while unread[number] and (found := take(unread[number])):
        message, rest = found
        whole.append(unread[number][:len(unread[number]) - len(rest)])
        unread[number] = rest
    return whole


def ask(session, method, **parameters):
    """The result of a call of our own, under a number that the tool does not reach."""
    send(to_engine[1], {"id": 1 << 30, "sessionId": session, "method": method, "params": parameters})
    result = None
    while result is None:
        for message in receive(from_engine[0]):
            call = decoded(message)
            if call.get("id") == 1 << 30:
                result = call.get("result", {})
            else:
                write(4, message)
    return result


def hand_on(message):
    """To the tool, what the engine says."""
    write(4, message)


%(take_note)s

while True:
    ready, _, _ = select.select([3, from_engine[0]], [], [])
    if from_engine[0] in ready:
        for message in receive(from_engine[0]):
            hand_on(message)
    if 3 in ready:
        for message in receive(3):
            if take_note(decoded(message)):
                write(to_engine[1], message)
'''

_FAILING = r'''
def take_note(call):
    if call.get("method") != %(method)r:
        return True
    if %(action)r == "die":
        end(9)
    answer = {"id": call["id"], "error": {"code": -32000, "message": "Refused by the test"}}
    if "sessionId" in call:
        answer["sessionId"] = call["sessionId"]
    send(4, answer)
    return False
'''

HEADLESS_SHELL = "/usr/bin/chromium-headless-shell"
CHOSEN = os.environ.get("WEB2PDF_ENGINE", HEADLESS_SHELL)    # whoever runs the tests may name another one


def between(take_note, engine=HEADLESS_SHELL):
    """The real engine behind a script that sees the tool's messages: see _BETWEEN."""
    return _BETWEEN % {"cbor": inspect.getsource(cbor), "take_note": take_note, "engine": engine}


def proxy(method, action, engine=HEADLESS_SHELL):
    """The real engine, until the named DevTools call comes: then it dies ("die") or the call fails ("refuse")."""
    return between(_FAILING % {"method": method, "action": action}, engine)


def own_pdf(html, folder, engine=HEADLESS_SHELL):
    """The PDF that the engine makes of a page by its own command, with structure tree and outline."""
    source, output = folder / "own.html", folder / "own.pdf"
    source.write_text(html, encoding="utf-8")
    subprocess.run([engine, "--no-sandbox", "--disable-gpu", "--disable-breakpad", "--no-pdf-header-footer",
                    "--generate-pdf-document-outline", f"--print-to-pdf={output}", source.as_uri()],
                   stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=True)
    return output.read_bytes()
