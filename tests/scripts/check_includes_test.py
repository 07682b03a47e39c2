#!/usr/bin/env python3
"""The include checker finds each kind of wrong include, and lets the right ones pass."""
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
import check_includes  # noqa: E402

# name of the case, files of the project, text that a fault must contain (None: no fault), why
CASES = [
    ("lower tier", {"src/platform/dom/a.cc": '#include "platform/text/b.h"\n',
                    "src/platform/text/b.h": ""}, None, "a higher folder sees a lower one"),
    ("higher tier", {"src/platform/text/b.cc": '#include "platform/dom/a.h"\n',
                     "src/platform/dom/a.h": ""},
     "platform/text may not include platform/dom", "never upwards"),
    ("same tier", {"src/platform/dom/a.cc": '#include "platform/datatypes/b.h"\n',
                   "src/platform/datatypes/b.h": ""},
     "platform/dom may not include platform/datatypes", "neighbours do not know each other"),
    ("stated neighbour", {"src/platform/transforms/a.cc": '#include "platform/patterns/b.h"\n',
                          "src/platform/patterns/b.h": ""}, None, "written in the table"),
    ("value header", {"src/platform/text/a.cc": '#include "kxmessage/error.h"\n',
                      "include/kxmessage/error.h": ""}, None, "values are for everybody"),
    ("error codes", {"src/core/a.cc": '#include "kxmessage/error_codes.h"\n',
                     "include/kxmessage/error_codes.h": ""}, None, "the object model raises them"),
    ("error codes below", {"src/platform/dom/a.cc": '#include "kxmessage/error_codes.h"\n',
                           "include/kxmessage/error_codes.h": ""},
     "platform/dom may not include public", "the platform has numbers of its own"),
    ("public header below", {"src/platform/dom/a.cc": '#include "kxmessage/message.h"\n',
                             "include/kxmessage/message.h": ""},
     "platform/dom may not include public", "the platform knows nothing of messages"),
    ("public header sees inside", {"include/kxmessage/message.h": '#include "core/a.h"\n',
                                   "src/core/a.h": ""},
     "public may not include core", "callers do not have our folders"),
    ("core ground", {"src/core/envelope.cc": '#include "core/message.h"\n',
                     "src/core/message.h": ""},
     "core may not include core/message", "the message stands above the ground"),
    ("core top", {"src/core/message.cc": '#include "element/element_impl.h"\n',
                  "src/element/element_impl.h": ""}, None, "the message sees the objects"),
    ("object headers", {"src/element/a.h": '#include "attributes/b_impl.h"\n',
                        "src/attributes/b_impl.h": ""},
     "element may not include attributes", "headers forward-declare"),
    ("object sources", {"src/element/a.cc": '#include "attributes/b_impl.h"\n',
                        "src/attributes/b_impl.h": ""}, None, "a source may hand out a neighbour"),
    ("tool", {"tools/kxmsg/a.cc": '#include "core/a.h"\n', "src/core/a.h": ""},
     "tools may not include core", "tools prove the public surface"),
    ("test", {"tests/core/a_test.cc": '#include "core/a.h"\n#include <gtest/gtest.h>\n',
              "src/core/a.h": ""}, None, "tests see everything"),
    ("unknown name", {"src/core/a.cc": '#include "core/gone.h"\n'},
     "no file of the project has this name", "a quoted name is ours"),
    ("unknown folder", {"src/helpers/a.cc": ""}, "lies in no folder", "every folder has a tier"),
    ("operating system", {"src/core/a.cc": "#include <unistd.h>\n"},
     "the operating system belongs to platform/host", "one folder calls it"),
    ("operating system at home", {"src/platform/host/a.cc": "#include <sys/stat.h>\n"}, None,
     "this is that folder"),
    ("peer library", {"src/platform/dom/a.cc": "#include <expat.h>\n"},
     "a test library belongs to the tests", "nothing of it is linked into the library"),
    ("circle", {"src/core/a.h": '#include "core/b.h"\n', "src/core/b.h": '#include "core/c.h"\n',
                "src/core/c.h": '#include "core/a.h"\n'},
     "a circle of includes: src/core/a.h > src/core/b.h > src/core/c.h > src/core/a.h",
     "three files in a ring"),
    ("diamond", {"src/core/a.h": '#include "core/b.h"\n#include "core/c.h"\n',
                 "src/core/b.h": '#include "core/d.h"\n', "src/core/c.h": '#include "core/d.h"\n',
                 "src/core/d.h": ""}, None, "two ways to one file are no ring"),
    ("comment", {"src/core/a.cc": '/*\n#include "core/gone.h"\n*/\n// #include "core/gone.h"\n'},
     None, "comments include nothing"),
    ("line number", {"src/core/a.cc": '/*\n\n*/\n#include "core/gone.h"\n'},
     "src/core/a.cc:4: includes", "counted with the comment's lines"),
]


class CheckIncludes(unittest.TestCase):
    def test_each_kind_of_include_gets_its_verdict(self):
        for name, files, expected, why in CASES:
            with self.subTest(name, why=why), tempfile.TemporaryDirectory() as project:
                for path, text in files.items():
                    full = os.path.join(project, path)
                    os.makedirs(os.path.dirname(full), exist_ok=True)
                    with open(full, "w", encoding="utf-8") as file:
                        file.write(text)
                faults, count = check_includes.check(project)
                self.assertEqual(count, len(files))
                if expected is None:
                    self.assertEqual(faults, [])
                else:
                    self.assertEqual(len(faults), 1, faults)
                    self.assertIn(expected, faults[0])

    def test_a_deep_chain_of_includes_needs_no_stack(self):
        graph = {str(i): [str(i + 1)] for i in range(50000)}
        graph["50000"] = []
        self.assertEqual(check_includes.find_circle(graph), [])
        graph["50000"] = ["49999"]
        self.assertEqual(check_includes.find_circle(graph), ["49999", "50000", "49999"])


if __name__ == "__main__":
    unittest.main()
