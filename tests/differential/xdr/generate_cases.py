#!/usr/bin/env python3
"""Small random schemas, each with documents that suit it or nearly do.

usage: generate_cases.py SEED COUNT > CASES

The same seed gives the same cases. A case is a line "=== number", a schema, a line "---" and a
document; the document's namespace is "urn:case", under which both validators hold the schema.
"""
import random
import sys

TYPES = {
    "int": ["0", "12", "-5", "+7", "007", "x", "1.5", "2147483648", " 3 ", ""],
    "i1": ["127", "128", "-128", "-129", "x"],
    "i2": ["32767", "32768", "x"],
    "ui1": ["255", "256", "-1", "0"],
    "ui2": ["65535", "65536"],
    "ui4": ["4294967295", "4294967296"],
    "number": ["1", "-1.5", "1e3", "x", "1e309", "5.", ".5", "1.2.3", "INF", "NaN"],
    "float": ["1.5", "x", "1e400", ""],
    "r4": ["1.5", "1e39", "x"],
    "r8": ["1.5", "1e309", "x"],
    "fixed.14.4": ["1.5", "1.23456", "1e2", "x", "-3.25"],
    "boolean": ["0", "1", "2", "yes", "true", "TRUE"],
    "char": ["a", "ab", ""],
    "date": ["2001-02-03", "2001-13-01", "x", "2001-02-30", "20010203"],
    "dateTime": ["2001-02-03T04:05:06", "2001-02-03", "x", "2001-02-03T25:00:00"],
    "dateTime.tz": ["2001-02-03T04:05:06Z", "2001-02-03T04:05:06+01:00", "x"],
    "time": ["04:05:06", "25:00:00", "x", "04:05"],
    "time.tz": ["04:05:06+01:00", "x", "04:05:06"],
    "uuid": ["333C7BC4-460F-11D0-BC04-0080C7055A83", "x", "333C7BC4-460F-11D0-BC04"],
    "bin.hex": ["0aFF", "0g", ""],
    "bin.base64": ["ABCD", "AB==", "A*BC"],
    "string": ["x", "", " y "],
    "uri": ["http://x", "x y"],
    "nmtoken": ["a", "1a", "a b", "a$"],
    "nmtokens": ["a b", "a$ b"],
    "id": ["a", "b", "1a"],
    "idref": ["a", "b", "zz"],
    "enumeration": ["red", "green", "blue", "Red", ""],
}
# How many of each list, from its start, suit the type.
GOOD = {'int': 4, 'i1': 2, 'i2': 1, 'ui1': 1, 'ui2': 1, 'ui4': 1, 'number': 3, 'float': 1, 'r4': 1, 'r8': 1, 'fixed.14.4': 1, 'boolean': 2, 'char': 1, 'date': 1, 'dateTime': 2, 'dateTime.tz': 2, 'time': 1, 'time.tz': 1, 'uuid': 1, 'bin.hex': 1, 'bin.base64': 1, 'string': 3, 'uri': 1, 'nmtoken': 2, 'nmtokens': 1, 'id': 2, 'idref': 1, 'enumeration': 2}
NAMES = "abcdef"


class Case:
    def __init__(self, rng):
        self.rng = rng
        self.types = {}  # name -> data type or None
        self.models = {}  # name -> (content, open, particles)
        self.attributes = {}  # name -> [(attribute, type, required, default)]
        self.lines = []

    def occurs(self):
        low, high = self.rng.choice([("", ""), ("", ""), ("0", ""), ("", "*"), ("0", "*")])
        text = (' minOccurs="%s"' % low if low else "") + (' maxOccurs="%s"' % high if high else "")
        return text, low == "0", high == "*"

    def particles(self, names, order, depth):
        """XML of a list of particles, and the same as a tree for making documents."""
        xml, tree = "", []
        for _ in range(self.rng.randint(1, 3)):
            text, optional, repeats = self.occurs()
            if depth < 2 and self.rng.random() < 0.3:
                inner = self.rng.choice(["seq", "one"])
                body, below = self.particles(names, inner, depth + 1)
                xml += '<group order="%s"%s>%s</group>' % (inner, text, body)
                tree.append((inner, below, optional, repeats))
            else:
                name = self.rng.choice(names)
                xml += '<element type="%s"%s/>' % (name, text)
                tree.append((name, None, optional, repeats))
        return xml, tree

    def schema(self):
        rng = self.rng
        names = NAMES[: rng.randint(3, 6)]
        body = ""
        for name in names[1:]:
            body += self.leaf(name)
        content, order = rng.choice(
            [("eltOnly", "seq"), ("eltOnly", "one"), ("eltOnly", "many"), ("mixed", "many"),
             ("eltOnly", "seq"), ("eltOnly", "one")])
        is_open = rng.random() < 0.4
        xml, tree = self.particles(names[1:], order, 0) if order != "many" else self.flat(names[1:])
        attributes, uses = self.declare_attributes("r")
        body += '<ElementType name="r" content="%s" order="%s" model="%s">%s%s</ElementType>' % (
            content, order, "open" if is_open else "closed", uses, xml)
        self.models["r"] = (content, order, tree)
        return ('<Schema xmlns="urn:schemas-microsoft-com:xml-data" '
                'xmlns:dt="urn:schemas-microsoft-com:datatypes">%s%s</Schema>' % (attributes, body))

    def flat(self, names):
        chosen = self.rng.sample(names, self.rng.randint(1, len(names)))
        return ("".join('<element type="%s"/>' % n for n in chosen),
                [(n, None, False, False) for n in chosen])

    def leaf(self, name):
        rng = self.rng
        kind = rng.random()
        if kind < 0.45:
            data_type = rng.choice(sorted(set(TYPES) - {"id", "idref", "enumeration"}))
            self.types[name] = data_type
            return '<ElementType name="%s" content="textOnly" dt:type="%s"/>' % (name, data_type)
        if kind < 0.6:
            self.types[name] = "#empty"
            return '<ElementType name="%s" content="empty"/>' % name
        self.types[name] = None
        return '<ElementType name="%s" content="textOnly"/>' % name

    def declare_attributes(self, owner):
        rng = self.rng
        types, uses, rows = "", "", []
        for name in "klm"[: rng.randint(0, 3)]:
            data_type = rng.choice(sorted(TYPES))
            if data_type == "id" and any(row[1] == "id" for row in rows):
                continue
            values = ' dt:values="red green"' if data_type == "enumeration" else ""
            required = rng.random() < 0.4
            default = ""
            if data_type != "id" and data_type != "idref" and rng.random() < 0.3:
                default = ' default="%s"' % rng.choice(TYPES[data_type] if rng.random() < 0.05
                                                       else TYPES[data_type][: GOOD[data_type]])
            types += '<AttributeType name="%s" dt:type="%s"%s%s%s/>' % (
                name, data_type, values, ' required="yes"' if required else "", default)
            uses += '<attribute type="%s"/>' % name
            rows.append((name, data_type, required))
        self.attributes[owner] = rows
        return types, uses

    def value(self, data_type):
        values = TYPES[data_type]
        return self.rng.choice(values if self.rng.random() < 0.1 else values[: GOOD[data_type]])

    def document(self):
        rng = self.rng
        _, order, tree = self.models["r"]
        children = self.sequence(order, tree)
        for _ in range(rng.choice([0, 0, 0, 1, 1, 2])):
            self.damage(children)
        attributes = ""
        for name, data_type, required in self.attributes["r"]:
            if rng.random() < (0.85 if required else 0.5):
                attributes += ' %s="%s"' % (name, self.value(data_type))
        if rng.random() < 0.08:
            attributes += ' z="1"'
        if rng.random() < 0.05:
            attributes += ' xmlns:o="urn:other" o:z="1"'
        text = "".join(self.element(name) for name in children)
        if rng.random() < 0.1:
            text += "some text"
        return '<r xmlns="urn:case"%s>%s</r>' % (attributes, text)

    def sequence(self, order, tree):
        rng = self.rng
        if order == "many":
            return [rng.choice(tree)[0] for _ in range(rng.randint(0, 4))]
        chosen = [rng.choice(tree)] if order == "one" else tree
        names = []
        for name, below, optional, repeats in chosen:
            count = rng.randint(0 if optional else 1, 3 if repeats else 1)
            for _ in range(count):
                names += [name] if below is None else self.sequence(name, below)
        return names

    def damage(self, children):
        rng = self.rng
        at = rng.randint(0, len(children))
        kind = rng.random()
        if kind < 0.4 and children:
            del children[min(at, len(children) - 1)]
        elif kind < 0.8:
            children.insert(at, rng.choice(sorted(self.types) + ["o:x", "undeclared"]))
        elif children:
            rng.shuffle(children)

    def element(self, name):
        if name not in self.types:
            return "<o:x xmlns:o='urn:other'/>" if name == "o:x" else "<%s/>" % name
        data_type = self.types[name]
        if data_type == "#empty":
            return "<%s/>" % name if self.rng.random() < 0.9 else "<%s>x</%s>" % (name, name)
        text = self.value(data_type) if data_type else self.rng.choice(["", "text"])
        return "<%s>%s</%s>" % (name, text, name)


def main():
    seed, count = int(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(seed)
    for number in range(count):
        case = Case(rng)
        print("=== %d\n%s\n---\n%s" % (number, case.schema(), case.document()))


if __name__ == "__main__":
    main()
