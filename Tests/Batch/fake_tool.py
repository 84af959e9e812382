"""A stand-in for web2pdf that needs no engine: each archive is a piece of a shell script, which says what the tool
does with it. A call takes a few milliseconds.

    self.archive("a", fake_tool.CONVERTS)
    self.archive("b", fake_tool.fails("NSCocoaErrorDomain", 259, "It is none."))
"""

import base64
import plistlib
from xml.sax.saxutils import escape

# Every call is noted in the file $CALLS, by the identifier, which is the archive's hash. Of the shell only what is
# built in is used, so that PATH may be anything.
SCRIPT = r'''#!/bin/sh
MODE=$1 ARCHIVE=$2 PDF=$3 ID=$4
printf '%s %s\n' "$ID" "$MODE" >>"$CALLS"
answer() {
    printf '%s\n' '<?xml version="1.0" encoding="UTF-8"?>' '<plist version="1.0"><dict>' "$1" '</dict></plist>'
}
succeed() { answer "<key>succeeded</key><true/><key>path</key><string>out.pdf</string>"; }
write() { printf '%%PDF-1.4\n%s %s\n' "$ID" "$MODE" >"$PDF"; }
convert() { write; succeed; }
# How often this archive has been tried.
count() { printf x >>"$CALLS.$ID"; read -r ALL <"$CALLS.$ID"; ATTEMPT=${#ALL}; }
case $ARCHIVE in /*) ;; *) ARCHIVE=./$ARCHIVE ;; esac
if [ ! -f "$ARCHIVE" ] || [ ! -r "$ARCHIVE" ]; then exit 3; fi
. "$ARCHIVE"
'''

CONVERTS = "convert"
DIES = "kill -9 $$"
EXITS = "exit 1"
WRITES_NO_ANSWER = "write"
ANSWERS_GARBAGE = "write; printf 'no property list'"
WRITES_NO_PDF = "succeed"
WRITES_AN_EMPTY_PDF = ': >"$PDF"; succeed'
MAKES_A_FOLDER = '/bin/mkdir "$PDF"; succeed'
MAKES_A_LINK = '/bin/ln -s /etc/passwd "$PDF"; succeed'
HANGS = "/bin/sleep 1000"
CLOSES_ITS_PIPES = "write; exec >&- 2>&-; exec /bin/sleep 1000"


def fails(domain, code, text="It failed."):
    """The tool answers with this error, and leaves no PDF."""
    data = base64.b64encode(_archived_error(domain, code)).decode()
    told = escape(text, {"'": "&#39;", "\x1b": ""})
    return (f"answer '<key>succeeded</key><false/><key>errorString</key><string>{told}</string>"
            f"<key>errorData</key><data>{data}</data>'")


def until(attempt, before):
    """Does this before that attempt, and converts from then on."""
    return f"count; if [ $ATTEMPT -lt {attempt} ]; then {before}; else convert; fi"


def lacks(count, named=("image http://site.example/a.png",)):
    """A conversion whose log tells of missing resources."""
    what = "a resource" if count == 1 else f"{count} resources"
    return (f"printf '%s\\n' '2026-11-23 10:05:00.123 web2pdf[1:1] the archive does not hold {count} "
            f"{what.split()[-1]} that the page asked for: {', '.join(named)}' >&2; convert")


def _archived_error(domain, code):
    uid = plistlib.UID
    objects = ["$null", {"$class": uid(4), "NSDomain": uid(2), "NSCode": code, "NSUserInfo": uid(3)}, domain,
               {"$class": uid(5), "NS.keys": [], "NS.objects": []},
               {"$classname": "NSError", "$classes": ["NSError", "NSObject"]},
               {"$classname": "NSDictionary", "$classes": ["NSDictionary", "NSObject"]}]
    return plistlib.dumps({"$archiver": "NSKeyedArchiver", "$version": 100000, "$top": {"root": uid(1)},
                           "$objects": objects}, fmt=plistlib.FMT_BINARY)
