"""Shows the values of common_core in gdb.

gdb loads this file by itself together with the library. A message is shown entry by entry; its
arguments are known where the entry's dictionary is loaded, and for the library's own messages.
"""

import struct

import gdb
import gdb.printing

# The placeholders of the library's own messages, for a message shown before any dictionary is
# loaded. All other numbers have none.
OWN_SLOT = 3
OWN_ARGUMENTS = {17: "d", 21: "dd", 25: "s", 28: "s"}
LITERAL, DICTIONARY, LAST_SHORT = -1, -2, 99999
MOST_BYTES = 64
MOST_MESSAGE_BYTES = 1 << 16


def read_memory(address, size):
    return bytes(gdb.selected_inferior().read_memory(int(address), size)) if size > 0 else b""


def read_words(address, count):
    size = gdb.lookup_type("void").pointer().sizeof
    return struct.unpack(f"<{count}{'Q' if size == 8 else 'I'}",
                         read_memory(address, count * size))


def quoted(raw):
    text = raw.decode("utf-8", "backslashreplace")
    for plain, escaped in (("\\", "\\\\"), ('"', '\\"'), ("\n", "\\n"), ("\t", "\\t"),
                           ("\r", "\\r")):
        text = text.replace(plain, escaped)
    return f'"{text}"'


def slice_of(value):
    """A ChPair as gdb's own string, or what else it is."""
    begin, end = int(value["begin"]), int(value["end"])
    if not begin and not end:
        return "null"
    if not begin or end < begin:
        return f"no slice: {begin:#x} to {end:#x}"
    return value["begin"].lazy_string("UTF-8", length=end - begin)


class TextPrinter:
    """ChArr and ChArr16: the text, or null."""

    def __init__(self, value, encoding):
        self.text = value["text"]
        self.encoding = encoding

    def to_string(self):
        return self.text.lazy_string(self.encoding) if int(self.text) else "null"

    def display_hint(self):
        return "string" if int(self.text) else None


class PairPrinter:
    """ChPair: the bytes of the slice."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return slice_of(self.value)

    def display_hint(self):
        return None if isinstance(slice_of(self.value), str) else "string"


class BagPrinter:
    """Bag: its sizes and its first bytes."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        size = int(self.value["size"])
        shown = read_memory(self.value["buffer"], min(size, MOST_BYTES)).hex(" ")
        more = " ..." if size > MOST_BYTES else ""
        return (f"{size} bytes, cursor at {int(self.value['position'])}, "
                f"capacity {int(self.value['capacity'])}{{{shown}{more}}}")


class Dictionaries:
    """The texts that the program has loaded, found through its slots."""

    def text(self, slot, number):
        try:
            slots = int(gdb.parse_and_eval("(char*)&'TTT::dictionaries'"))
            loader = read_words(slots, 5)[slot]
            if not loader:
                return None
            strings, count = read_words(loader, 3)[1:]
            if not strings or not 0 <= number < count & 0x7FFFFFFF:
                return None
            return gdb.Value(read_words(strings, number + 1)[number]).cast(
                gdb.lookup_type("char").pointer()).string("utf-8", "backslashreplace")
        except (gdb.error, IndexError, struct.error):
            return None


def placeholders(text):
    """The characters behind each % of a text that consume an argument."""
    kinds, at = "", text.find("%")
    while at >= 0 and at + 1 < len(text):
        if text[at + 1] in "dusi":
            kinds += text[at + 1]
        at = text.find("%", at + 2)
    return kinds


class MessageReader:
    """Reads the bytes of a message: words at multiples of 4, texts where the last read ended."""

    def __init__(self, data):
        self.data = data
        self.position = 0
        self.dictionaries = Dictionaries()

    def word(self, kind="i"):
        start = (self.position + 3) & ~3
        self.position = start + 4
        return struct.unpack_from(f"<{kind}", self.data, start)[0]

    def text(self):
        end = self.data.index(b"\0", self.position)
        raw = self.data[self.position:end]
        self.position = end + 1
        return raw

    def argument(self, kind):
        if kind == "s":
            return quoted(self.text())
        return str(self.word("I" if kind == "u" else "i"))

    def entry(self):
        """One entry as text, and whether the next one's place is known."""
        number = self.word()
        if number == LITERAL:
            return quoted(self.text()), True
        slot = 0
        if number == DICTIONARY:
            slot, number = self.word(), self.word()
        elif not 0 <= number <= LAST_SHORT:
            return f"no entry: {number}", False
        text = self.dictionaries.text(slot, number)
        shown = f"slot {slot}, number {number}"
        if text is not None:
            kinds = placeholders(text)
        elif slot == OWN_SLOT:
            kinds = OWN_ARGUMENTS.get(number, "")
        else:
            rest = self.data[self.position:].hex(" ")
            return shown + (f", arguments unknown: {rest}" if rest else ""), False
        if text is not None:
            shown += f" {quoted(text.encode('utf-8'))}"
        if kinds:
            shown += ": " + ", ".join(self.argument(kind) for kind in kinds)
        return shown, True

    def entries(self):
        try:
            going_on = True
            while going_on and self.position < len(self.data):
                shown, going_on = self.entry()
                yield shown
        except (struct.error, ValueError):
            yield "the bytes end inside an entry"


class MessagePrinter:
    """TTT: its entries."""

    def __init__(self, value):
        bag = value["bag"]
        size = min(int(bag["size"]), MOST_MESSAGE_BYTES)
        self.shown = list(MessageReader(read_memory(bag["buffer"], size)).entries())

    def to_string(self):
        count = f"{len(self.shown)} {'entry' if len(self.shown) == 1 else 'entries'}"
        return f"message of {count}{{{'; '.join(self.shown)}}}"


class VectorPrinter:
    """SimpleVector and the vectors made of it."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return (f"{self.value.type.strip_typedefs().unqualified()} of "
                f"{int(self.value['count'])}, capacity {int(self.value['capacity'])}")

    def children(self):
        for n in range(int(self.value["count"])):
            yield f"[{n}]", self.value["data"][n]

    def display_hint(self):
        return "array"


class TokenPrinter:
    """MLDoc::Token: what it is and where it stands, then the markup itself."""

    def __init__(self, value):
        self.value = value

    def kind(self):
        if not int(self.value["tag"]["begin"]):
            return "document level"
        if int(self.value["type"]) != 0:
            return {1: "instruction", 2: "comment"}.get(int(self.value["type"]), "no markup")
        opening, closing = bool(self.value["opening"]), bool(self.value["closing"])
        return {(True, False): "start tag", (False, True): "end tag",
                (True, True): "empty element"}.get((opening, closing), "no tag")

    def to_string(self):
        return f"{self.kind()}, depth {int(self.value['depth'])}"

    def children(self):
        if int(self.value["tag"]["begin"]):
            if int(self.value["type"]) == 0:
                yield "name", self.value["name"]
            yield "tag", self.value["tag"]


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("common_core")
    collection.add_printer("ChArr", "^ChArr$", lambda value: TextPrinter(value, "UTF-8"))
    collection.add_printer("ChArr16", "^ChArr16$", lambda value: TextPrinter(value, "UTF-16"))
    collection.add_printer("ChPair", "^ChPair$", PairPrinter)
    collection.add_printer("Bag", "^Bag$", BagPrinter)
    collection.add_printer("TTT", "^TTT$", MessagePrinter)
    collection.add_printer("SimpleVector", "^(Simple|Array|String)Vector<.*>$", VectorPrinter)
    collection.add_printer("MLDoc::Token", "^MLDoc::Token$", TokenPrinter)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
