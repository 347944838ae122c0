#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Usage: readme_to_h2m_test.py path/to/readme_to_h2m.py
import runpy
import sys
import types
import unittest

# The converter is a script, not an installed module: load its functions from its path.
converter = types.SimpleNamespace(**runpy.run_path(sys.argv.pop(1)))

README = """# Tool

## Before
Not this.

## Command line

```text
tool [--json] FILE...
```

Reads *one* file. See [the site](https://example.org/a-b).
- Prints the report;
  continued here.
- Uses `/usr/bin/unzip -l`, read-only.

### Exit status

.5 is not a status \\ nor 'quoted'.
[brackets] and /slashes/ start lines.

### Examples

```sh
tool --json a.pdf
### not a heading
.hidden
```

## After
Nor this.
"""

EXPECTED = r"""[>DESCRIPTION]
.PP
Reads \fIone\fR file. See the site <https://example.org/a\-b>.
.IP \(bu 2
Prints the report; continued here.
.IP \(bu 2
Uses \fB/usr/bin/unzip \-l\fR, read-only.
[EXIT STATUS]
.PP
\&.5 is not a status \e nor 'quoted'. [brackets] and /slashes/ start lines.
[EXAMPLES]
.PP
.RS 4
.nf
tool \-\-json a.pdf
### not a heading
\&.hidden
.fi
.RE
"""


class ReadmeToH2m(unittest.TestCase):
    def test_converts_one_section_into_include_blocks(self):
        self.assertEqual(converter.convert(README.splitlines(), "Command line"), EXPECTED)

    def test_inline_markup(self):
        cases = [
            ("plain read-only text", "plain read-only text"),
            ("`--json` and **bold**", r"\fB\-\-json\fR and \fBbold\fR"),
            ("a*b*c stays, *word* leans", r"a*b*c stays, \fIword\fR leans"),
            ("File → Open… ’s", r"File \[u2192] Open\[u2026] \[u2019]s"),
            ("back\\slash `a\\b`", r"back\eslash \fBa\eb\fR"),
            ("📁 folder", r"\[u1F4C1] folder"),
        ]
        for markdown, roff in cases:
            with self.subTest(markdown=markdown):
                self.assertEqual(converter.inline(markdown), roff)

    def test_refuses_what_it_cannot_place(self):
        for readme, title in [
            (README, "Missing section"),
            ("## Command line\n```sh\nopen fence\n\n## Next\n", "Command line"),
        ]:
            with self.subTest(title=title), self.assertRaises(SystemExit):
                converter.convert(readme.splitlines(), title)


if __name__ == "__main__":
    unittest.main()
