# SPDX-License-Identifier: MIT
import gc

import pytest

import trevallo.html
from trevallo.html import Document, Element


def test_a_page_is_written_as_the_library_writes_it() -> None:
    page = Document("Flights")
    line = Element("p", "two aircraft").addAttribute("class", "count").addAttribute("id", 2)
    page.body.children.append(line)
    assert page.toString() == (
        "<!DOCTYPE html>\n<html>\n  <head>\n    <title>Flights</title>\n  </head>\n  <body>\n"
        '    <p class="count" id="2">two aircraft</p>\n  </body>\n</html>\n')


def test_elements_are_shared_and_outlive_the_page() -> None:
    page = Document("")
    body = page.body
    page.root.children.extend(Element("p", str(number)) for number in range(1000))
    assert page.body is body
    del page
    gc.collect()
    assert body.tag == "body" and body.children == []


def test_the_parts_of_an_element_are_written_alone() -> None:
    element = Element("div", "")
    element.children.append(Element("", "text"))
    assert element.toStringOpen(2) == "  <div>\n"
    assert element.toStringContent(0) == "  text\n"
    assert element.toStringClose(2) == "  </div>\n"
    empty = Element("br", "")
    empty.voidElement = True
    assert empty.toStringOpen(0) + empty.toStringClose(0) == "<br>\n"


def test_an_element_without_arguments_is_a_page() -> None:
    assert [child.tag for child in Element().children] == ["head", "body"]


def test_attributes_are_named_values() -> None:
    element = Element("a", "here")
    element.attributes.append(Element.Attribute("hidden"))
    element.attributes[0].name = "download"
    assert element.toStringOpen(0) == "<a download>"


def test_an_element_in_itself_is_refused() -> None:
    element = Element("div", "")
    element.children.append(element)
    with pytest.raises(RecursionError):
        element.toStringContent(0)
    element.children.clear()


def test_what_is_no_element_is_refused() -> None:
    element = Element("div", "")
    element.children.append("text")  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        element.toStringContent(0)
    element = Element("div", "")
    element.attributes.append(("id", "2"))  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        element.toStringOpen(0)
    with pytest.raises(TypeError):
        Element(None, "")  # type: ignore[call-overload]


def test_a_page_without_head_and_body_is_refused() -> None:
    page = Document("")
    page.root.children.clear()
    with pytest.raises(ValueError):
        page.toString()
    with pytest.raises(ValueError):
        page.body


def test_the_builder_is_a_module_of_its_own() -> None:
    assert trevallo.html.__name__ == "trevallo.html"
