# SPDX-License-Identifier: MIT
"""Names the place of a token in a C++ source by what it stands in, so that the name outlives edits elsewhere: the function,
class or table, and the statement."""
BLOCKS = {"if", "for", "while", "switch", "do", "else", "try", "catch", "return", "namespace", "inline", "extern"}
TYPES = {"class", "struct", "enum", "union"}


class Places:
    def __init__(self, tokens):
        self.texts = ["" if token.kind == "string" else token.text for token in tokens]
        self.ends = set()    # indices of the tokens that end a statement
        self.scopes = []     # of each token
        self._walk()

    def statement(self, first, last):
        """Indices of the first and behind the last token of the statement around two tokens."""
        while first > 0 and first - 1 not in self.ends:
            first -= 1
        while last < len(self.texts) and last not in self.ends:
            last += 1
        return first, last

    def _walk(self):
        brackets, names, begin = [], [], 0
        for i, text in enumerate(self.texts):
            if text in ("}", ")", "]") and brackets:
                brackets.pop()
                if text == "}":
                    names.pop()
            self.scopes.append("::".join(filter(None, names)))
            if text == "{":
                names.append(name_of(self.texts[begin:i]))
            if text in ("{", "(", "["):
                brackets.append(text)
            if text in ("{", "}") or text == ";" and brackets[-1:] != ["("]:  # for (;;) is one statement
                self.ends.add(i)
                begin = i + 1


def name_of(head):
    """What a brace opens, from the words in front of it; empty for blocks and whatever has no name."""
    if not head or head[0] in BLOCKS:
        return ""
    keywords = [i for i, text in enumerate(head) if text in TYPES]
    if keywords and "(" not in head:
        end = next((i for i, text in enumerate(head) if text in (":", "final")), len(head))
        return head[end - 1]
    if "(" in head:
        end = head.index("(")
        begin = head.index("operator") if "operator" in head[:end] else end - 1
        while begin > 1 and head[begin - 1] in ("::", "~"):
            begin -= 1 if head[begin - 1] == "~" else 2
        return "".join(head[max(begin, 0):end])
    before = head[:head.index("=")] if "=" in head else head
    return next((text for text in reversed(before) if text.isidentifier()), "")
