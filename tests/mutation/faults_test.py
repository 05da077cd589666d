#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the mutation check takes for a fault, and what it leaves alone."""
import unittest

from faults import faults_of


def results(text, kind=None):
    """The text with each of its faults, blanks made one."""
    return [" ".join(fault.applied_to(text).split()) for fault in faults_of("a.cpp", text)
            if kind in (None, fault.kind)]


def keys(text):
    """The keys of the comparisons that are changed."""
    return [fault.key for fault in faults_of("a.cpp", text) if fault.kind == "comparison" and "==" in fault.was]


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

    def test_the_key_of_a_fault_outlives_all_edits_but_that_of_its_statement(self):
        [key] = keys("int A::f() { g(); if (a == b) return; }")
        self.assertEqual(key, ("A::f", "if ( a == b ) return", "if ( a != b ) return"))
        self.assertEqual([key], keys("namespace n {\nint A::f(int c) {\n  h();\n  if (a // why\n      == b)\n    return;\n}\n}"))
        self.assertNotEqual([key], keys("int A::f() { g(); if (a == c) return; }"))

    def test_equal_statements_of_a_function_have_keys_of_their_own(self):
        self.assertEqual([scope for scope, _, _ in keys("void f() { a == b; a == b; }")], ["f", "f (2)"])

    def test_keys_name_functions_classes_and_tables(self):
        for text, scope in (("class E A final : B { bool f() const { return a == b; } };", "A::f"),
                            ("constexpr T kTable[] = {{a == b}, {c, d}};", "kTable"),
                            ("A::A(int a) : _b(a) { for (;;) a == b; }", "A::A"),
                            ("A::~A() { a == b; }", "A::~A"),
                            ("bool A::operator<(A const& b) const { return a == b; }", "A::operator<"),
                            ("void f() { for (auto a : as) { if (a) { a == b; } } }", "f"),
                            ("a == b;", "(namespace)")):
            self.assertEqual([key[0] for key in keys(text)], [scope], text)

    def test_a_statement_with_semicolons_in_parentheses_is_one(self):
        self.assertEqual([key[1] for key in keys("void f() { for (;a == b;) g(); }")], ["for ( ; a == b ; ) g ( )"])


if __name__ == "__main__":
    unittest.main()
