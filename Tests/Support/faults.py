"""Engines that behave well up to a stage of a conversion, and then do not.

Each is the real engine behind a script (engine.between): the stage is the first message of the tool that holds
a certain text, the fault is what the script does from then on.
"""

import engine

# Name of the stage: the text by which its first message is known.
STAGES = {
    "start": "Target.setDiscoverTargets",
    "attach": "Target.attachToTarget",
    "enable": "Page.enable",
    "intercept": "Fetch.enable",
    "navigate": "/enter.js",
    "document": "Fetch.fulfillRequest",
    "missing": "Fetch.failRequest",
    "title": "/titleAndOwner.js",
    "wait": "/awaitContents.js",
    "measure": "/measure.js",
    "style": "/applyPrintStyle.js",
    "print": "Page.printToPDF",
}

_AT_STAGE = r'''
import time

STAGE = %(stage)r
reached = False


def take_note(call):
    global reached
    if reached or STAGE not in str(call):
        return at_every_call(call) if reached else True
    reached = True
    return at_stage(call)


def at_every_call(call):
    return True


def answer(call, **fields):
    message = {"id": call["id"], **fields}
    if "sessionId" in call:
        message["sessionId"] = call["sessionId"]
    send(4, message)


def hang():
    while True:
        time.sleep(1000)


%(fault)s
'''


def at(stage, fault):
    """The script for WEB2PDF_ENGINE; the fault is Python that defines at_stage(call), and what else it needs."""
    return engine.between(_AT_STAGE % {"stage": STAGES[stage], "fault": fault})


# Of the engine as a whole

DIES = "def at_stage(call): end(9)"
EXITS = "def at_stage(call): end(0)"
HANGS = "def at_stage(call): hang()"
CLOSES = "def at_stage(call):\n    os.close(3)\n    os.close(4)\n    hang()"

# Of its messages. What is missing in the end is the answer to the call.

GARBAGE = r'''
def at_stage(call):
    contents = [b"", b"\xff", b"\xbf", b"\xbf\xff\xff", b"\x9f\xff", b"\xbf\x61", b"\xbf\xf6\xf6\xff",
                b"\xbf\x62id" + encode({}) + b"\xff", b"\xbf\x66method" + encode([]) + b"\xff", b"\xbf\x61x\x7b" + b"\xff" * 9,
                b"\xbf\x61x\x41a\xff", b"\xbf\x61x\xd6\x60\xff", b"\xbf\x61x" + ENVELOPE + b"\xff" * 4, bytes(1000)]
    for content in contents:
        write(4, ENVELOPE + struct.pack(">I", len(content)) + content)
    deep = b"\xf6"
    for _ in range(2000):
        deep = ENVELOPE + struct.pack(">I", len(deep) + 2) + b"\x9f" + deep + b"\xff"
    write(4, deep)
    return True
'''
# What is no message at all.
NONSENSE = "def at_stage(call):\n    write(4, b'no message')\n    hang()"
TRUNCATED = r'''
def at_stage(call):
    write(4, encode({"id": call["id"], "result": {"data": b"x" * 1000}})[:-500])
    end(0)
'''
OVERSIZED = r'''
def at_stage(call):
    block = b"x" * (1 << 20)
    try:
        write(4, ENVELOPE + b"\xff" * 4 + b"\xbf\x64data\xd6\x5a\xff\xff\xff\0")
        while True:
            write(4, block)
    except OSError:
        end(0)
'''
REPEATED = r'''
def at_stage(call): return True

def hand_on(message):
    for _ in range(3 if reached else 1):
        write(4, message)
'''
REORDERED = r'''
def at_stage(call): return True

held = []

def hand_on(message):
    if not reached:
        return write(4, message)
    held.append(message)
    if len(held) == 2:
        write(4, held.pop() + held.pop())
'''
STRANGERS = r'''
def at_stage(call):
    for number in (-1, 0, 1 << 40, 1 << 62, call["id"] + 1000, "1", None, 1.5, [], {}):
        send(4, {"id": number, "result": {"data": b"AAAA", "value": True}})
        send(4, {"id": number, "error": {"code": "x", "message": 1}, "sessionId": "stranger"})
    return True
'''
# Everything that the engine says from now on, but for the numbers of its answers.
WRONG_TYPES = r'''
def at_stage(call): return True

def wrong(value):
    if isinstance(value, dict):
        return {name: wrong(part) for name, part in value.items()} if value else []
    if isinstance(value, list):
        return {str(place): wrong(part) for place, part in enumerate(value)}
    if isinstance(value, str):
        return len(value)
    return str(value)

def hand_on(message):
    if reached:
        whole = decoded(message)
        for part in ("params", "result", "error"):
            if part in whole:
                whole[part] = wrong(whole[part])
        message = encode(whole)
    write(4, message)
'''
FLOOD = r'''
def at_stage(call):
    event = encode({"method": "Page.frameAttached", "params": {"frameId": "F", "parentFrameId": "none"},
                    "sessionId": call.get("sessionId", "")})
    for _ in range(50):
        write(4, event * 1000)
    return True
'''
ENDLESS_FLOOD = r'''
def at_stage(call):
    event = encode({"method": "Page.frameNavigated", "params": {"frame": {"id": "F"}},
                    "sessionId": call.get("sessionId", "")})
    while True:
        write(4, event * 1000)
'''


def answers(result):
    """Gives this result in the place of the engine's own, each time."""
    return (f"def at_stage(call):\n    answer(call, result={result})\n    return False\n"
            "def at_every_call(call): return at_stage(call) if STAGE in str(call) else True")
