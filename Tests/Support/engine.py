"""Stand-ins for the web engine: scripts that a test names in WEB2PDF_ENGINE.

A script is text of its own, because the tool may run it as another user and without the tests' modules.
"""

DIES_AT_ONCE = "#!/bin/sh\nexit 1\n"
NEVER_ANSWERS = "#!/bin/sh\nexec sleep 600\n"
ANSWERS_NONSENSE = "#!/bin/sh\nprintf 'no message\\0' >&4\nexec sleep 600\n"

_PROXY = r'''#!/usr/bin/python3
# Passes the messages between the tool and the engine on, and does what the test asks at one of them.
import json, os, select, signal, sys

METHOD, ACTION = %(method)r, %(action)r
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


def end(status):
    os.kill(child, signal.SIGKILL)
    os.waitpid(child, 0)
    os._exit(status)


def write(number, data):
    while data:
        data = data[os.write(number, data):]


def pass_on(message):
    """True when the message goes to the engine."""
    call = json.loads(message)
    if call.get("method") != METHOD:
        return True
    if ACTION == "die":
        end(9)
    answer = {"id": call["id"], "error": {"code": -32000, "message": "Refused by the test"}}
    if "sessionId" in call:
        answer["sessionId"] = call["sessionId"]
    write(4, json.dumps(answer).encode() + b"\0")
    return False


rest = b""
while True:
    ready, _, _ = select.select([3, from_engine[0]], [], [])
    if from_engine[0] in ready:
        data = os.read(from_engine[0], 1 << 16)
        if not data:
            end(0)
        write(4, data)
    if 3 in ready:
        data = os.read(3, 1 << 16)
        if not data:
            end(0)
        *whole, rest = (rest + data).split(b"\0")
        for message in whole:
            if pass_on(message):
                write(to_engine[1], message + b"\0")
'''


def proxy(method, action, engine="/usr/bin/chromium-headless-shell"):
    """The real engine, until the named DevTools call comes: then it dies ("die") or the call fails ("refuse")."""
    return _PROXY % {"method": method, "action": action, "engine": engine}
