#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the mutation check takes for a fault, and what it leaves alone."""
import unittest

from faults import faults_of


def results(text, kind=None):
    """The text with each of its faults, blanks made one."""
    return [" ".join(fault.applied_to(text).split()) for fault in faults_of("a.cpp", text)
            if kind in (None, fault.kind)]


class Faults(unittest.TestCase):
    def test_comparisons_are_flipped_and_shifted(self):
        self.assertEqual(results("a < b;"), ["a <= b;", "a > b;"])
        self.assertEqual(results("a != b;"), ["a == b;"])

    def test_conditions_are_joined_otherwise_and_negated(self):
        self.assertEqual(results("if (a && !b) c;"), ["if (!(a && !b)) c;", "if (a || !b) c;", "if (a && b) c;"])
        self.assertEqual(results("if (auto* a = find(b)) c;"), [])

    def test_numbers_are_off_by_one_and_keep_their_form(self):
        self.assertEqual(results("f(0, 86'400U, 0xF)"), ["f(1, 86'400U, 0xF)", "f(0, 86401U, 0xF)",
                                                        "f(0, 86399U, 0xF)", "f(0, 86'400U, 0x10)",
                                                        "f(0, 86'400U, 0xE)"])
        self.assertEqual(results("x = 0.5;", "number"), ["x = (0.5 + 1);"])

    def test_neighbouring_entries_of_a_table_change_places(self):
        self.assertEqual(results("t[] = {{a, b}, c};", "order"), ["t[] = {c, {a, b}};", "t[] = {{b, a}, c};"])
        self.assertEqual(results("void f() { g(a, a); }", "order"), [])

    def test_calls_and_assignments_are_dropped_and_declarations_are_not(self):
        self.assertEqual(results("{ int x = y; a.b(c); d += e; ++i; return f(); }", "statement"),
                         ["{ int x = y; ; d += e; ++i; return f(); }", "{ int x = y; a.b(c); ; ++i; return f(); }",
                          "{ int x = y; a.b(c); d += e; ; return f(); }"])
        self.assertEqual(results("{ if (a) b(); }", "statement"), ["{ if (a) ; }"])

    def test_texts_and_truth_change(self):
        self.assertEqual(results('f("x", true)'), ['f("x~", true)', 'f("x", false)'])

    def test_what_no_test_could_judge_is_left_alone(self):
        for text in ("// a < b", "/* 1 */", "#include <a1>", "#define A 1 \\\n 2", "static_assert(a == 1);",
                     "assert(a < 8 && b);", "template <class A> void f(A const& a, B&& b);", 'extern "C" f();',
                     "#ifdef _WIN32\n1;\n#endif\n", "'1'"):
            self.assertEqual(results(text), [], text)

    def test_code_of_this_platform_is_not_left_alone(self):
        self.assertEqual(len(results("#ifdef _WIN32\n5;\n#else\n7;\n#endif\n")), 2)

    def test_a_fault_keeps_its_name_when_lines_above_it_change(self):
        before, after = faults_of("a.cpp", "a < b;\n"), faults_of("a.cpp", "// more\n\na < b;\n")
        self.assertEqual([fault.id for fault in before], [fault.id for fault in after])
        self.assertEqual([fault.line for fault in after], [3, 3])

    def test_equal_lines_have_faults_of_different_names(self):
        found = faults_of("a.cpp", "a < b;\na < b;\n")
        self.assertEqual(len({fault.id for fault in found}), 4)


if __name__ == "__main__":
    unittest.main()
