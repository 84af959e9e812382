"""Reads the keyed archive of an error: the `errorData` of a failed run."""

import plistlib
from dataclasses import dataclass


@dataclass
class ArchivedError:
    domain: str
    code: int
    user_info: dict
    keys: list


def read_error(data):
    """Decodes the archive and asserts its form on the way."""
    root = plistlib.loads(data, fmt=plistlib.FMT_BINARY)
    if root.get("$archiver") != "NSKeyedArchiver" or root.get("$version") != 100000:
        raise AssertionError(f"not a keyed archive: {root.get('$archiver')} {root.get('$version')}")
    reader = _Reader(root["$objects"])
    error = reader.raw(root["$top"]["root"])
    if reader.class_name(error) != "NSError":
        raise AssertionError(f"not an error but a {reader.class_name(error)}")
    info = reader.value(error["NSUserInfo"])
    if not isinstance(info, dict):
        raise AssertionError(f"the user info is no dictionary: {info!r}")
    return ArchivedError(reader.value(error["NSDomain"]), reader.value(error["NSCode"]), info, list(info))


class _Reader:
    def __init__(self, objects):
        self._objects = objects

    def raw(self, reference):
        return self._objects[reference.data] if isinstance(reference, plistlib.UID) else reference

    def class_name(self, item):
        return self.raw(item["$class"])["$classname"]

    def value(self, reference):
        item = self.raw(reference)
        if not isinstance(item, dict):
            return None if item == "$null" else item
        decode = {
            "NSDictionary": self._dictionary, "NSMutableDictionary": self._dictionary,
            "NSString": self._string, "NSMutableString": self._string,
            "NSURL": self._url,
        }.get(self.class_name(item))
        if decode is None:
            raise AssertionError(f"an unexpected {self.class_name(item)} in the archive")
        return decode(item)

    def _dictionary(self, item):
        keys = [self.value(key) for key in item["NS.keys"]]
        return dict(zip(keys, (self.value(value) for value in item["NS.objects"])))

    def _string(self, item):
        return item["NS.string"] if "NS.string" in item else item["NS.bytes"].decode()

    def _url(self, item):
        base = self.value(item["NS.base"])
        relative = self.value(item["NS.relative"])
        return relative if base is None else (base, relative)
