// SPDX-License-Identifier: MIT
#include "binding.h"

#include <sstream>

namespace quorvel::modes::python {

namespace {

/// An element as Python holds it: attributes and children are lists like any other, their objects shared, so
/// that nothing dangles whatever is done to them. The library's own tree is made of it when it is written.
struct Element {
    std::string tag;
    std::string content;
    py::list attributes; // of html::Element::Attribute
    py::list children;   // of Element
    bool voidElement = false;
};
using ElementPointer = std::shared_ptr<Element>;

struct Document {
    ElementPointer root;
};

/// An element may have been put into itself: the depth is that of any recursion in Python.
class Nesting {
public:
    Nesting() {
        if (Py_EnterRecursiveCall(" while writing an element") != 0) throw py::error_already_set();
    }
    ~Nesting() { Py_LeaveRecursiveCall(); }
    Nesting(Nesting const&) = delete;
    Nesting& operator=(Nesting const&) = delete;
};

ElementPointer fromLibrary(html::Element const& element) {
    auto made = std::make_shared<Element>();
    made->tag = element.tag;
    made->content = element.content;
    made->voidElement = element.voidElement;
    for (auto const& attribute : element.attributes) made->attributes.append(attribute);
    for (auto const& child : element.children) made->children.append(fromLibrary(child));
    return made;
}

/// An entry of a list, which may hold anything.
template <class T> T const& entry(py::handle object, char const* wanted) {
    if (!py::isinstance<T>(object)) throw py::type_error(std::string("this list is one of ") + wanted);
    return object.cast<T const&>();
}

html::Element toLibrary(Element const& element) {
    Nesting const nesting;
    html::Element made(element.tag.c_str(), element.content);
    made.voidElement = element.voidElement;
    for (auto const& attribute : element.attributes) {
        made.attributes.push_back(entry<html::Element::Attribute>(attribute, "Element.Attribute"));
    }
    for (auto const& child : element.children) made.children.push_back(toLibrary(entry<Element>(child, "Element")));
    return made;
}

auto part(void (html::Element::*write)(std::ostream&, unsigned long long) const) {
    return [write](Element const& element, unsigned long long indent) {
        // every level is indented further, and nobody indents a page by more than that
        if (indent > 1'000'000) throw py::value_error("that is too far from the margin");
        std::ostringstream out;
        (toLibrary(element).*write)(out, indent);
        return out.str();
    };
}

std::string textOfDocument(Document const& document) {
    html::Document page("");
    auto tree = toLibrary(*document.root);
    if (tree.children.size() < 2) throw py::value_error("a page has a head and a body");
    static_cast<html::Element&>(page.root) = std::move(tree);
    return page.toString();
}

py::object childOf(Document const& document, std::size_t index) {
    if (document.root->children.size() <= index) throw py::value_error("a page has a head and a body");
    return document.root->children[index];
}

void defineElement(py::module_& module) {
    Class<Element, ElementPointer> element(module, TREVALLO_CLASS(Element));
    using Attribute = html::Element::Attribute;
    Class<Attribute>(element, {"Attribute", "An attribute of an element."})
        .constructor(py::init([](std::string name, std::string value) {
            return Attribute{std::move(name), std::move(value)};
        }),
            "name"_a, "value"_a = "")
        .dataMember({"name", textOf("Element::Attribute::name")}, &Attribute::name)
        .dataMember({"value", textOf("Element::Attribute::value")}, &Attribute::value);
    auto const addAttribute = [](ElementPointer const& self, std::string const& name, std::string const& value) {
        self->attributes.append(Attribute{name, value});
        return self;
    };
    element.constructor(py::init([] { return fromLibrary(html::Element()); }), textOf("Element::Element"))
        .constructor(py::init([](std::string tag, std::string content) {
            auto made = std::make_shared<Element>();
            made->tag = std::move(tag);
            made->content = std::move(content);
            return made;
        }),
            "tag"_a, "content"_a)
        .method(TREVALLO_NAME(Element, addAttribute), addAttribute, "name"_a, "value"_a)
        .overload(
            "addAttribute",
            [addAttribute](ElementPointer const& self, std::string const& name, unsigned int value) {
                return addAttribute(self, name, std::to_string(value));
            },
            "name"_a, "value"_a)
        .method(TREVALLO_NAME(Element, toStringOpen), part(&html::Element::toStringOpen), "indent"_a)
        .method(TREVALLO_NAME(Element, toStringContent), part(&html::Element::toStringContent), "indent"_a)
        .method(TREVALLO_NAME(Element, toStringClose), part(&html::Element::toStringClose), "indent"_a)
        .dataMember(TREVALLO_NAME(Element, tag), &Element::tag)
        .dataMember(TREVALLO_NAME(Element, content), &Element::content)
        .dataMember(TREVALLO_NAME(Element, attributes), &Element::attributes)
        .dataMember(TREVALLO_NAME(Element, children), &Element::children)
        .dataMember(TREVALLO_NAME(Element, voidElement), &Element::voidElement);
}

} // namespace

void defineHtml(py::module_& parent) {
    auto module = parent.def_submodule("html", "A small HTML tree and its text. Nothing is escaped: tags, attributes "
                                               "and content are written as they were set.");
    defineElement(module);
    Class<Document>(module, TREVALLO_CLASS(Document))
        .constructor(py::init([](std::string const& title) {
            return Document{fromLibrary(html::Document(title.c_str()).root)};
        }),
            textOf("Document::Document"), "title"_a)
        .method(TREVALLO_NAME(Document, toString), &textOfDocument)
        .property(TREVALLO_NAME(Document, root), [](Document const& self) { return self.root; })
        .property(TREVALLO_NAME(Document, head), [](Document const& self) { return childOf(self, 0); })
        .property(TREVALLO_NAME(Document, body), [](Document const& self) { return childOf(self, 1); });
}

} // namespace quorvel::modes::python
