// SPDX-License-Identifier: MIT
#include <modes/html_document.h>

#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

namespace html {

namespace {

constexpr unsigned long long kNesting = 2;

std::string textOf(char const* text) { return text ? text : ""; }

// Pages go to a string, elements also to a stream.
void put(std::string& out, std::string_view text) { out += text; }
void put(std::ostream& out, std::string_view text) { out << text; }

template <class Out> void putBlanks(Out& out, unsigned long long count) {
    constexpr std::string_view kBlanks = "                                ";
    for (; count > kBlanks.size(); count -= kBlanks.size()) put(out, kBlanks);
    put(out, kBlanks.substr(0, static_cast<std::size_t>(count)));
}

template <class Out> void putOpen(Out& out, Element const& element, unsigned long long indent) {
    if (element.tag.empty()) return;
    putBlanks(out, indent);
    put(out, "<");
    put(out, element.tag);
    for (auto const& attribute : element.attributes) {
        put(out, " ");
        put(out, attribute.name);
        if (attribute.value.empty()) continue;
        put(out, "=\"");
        put(out, attribute.value);
        put(out, "\"");
    }
    bool const isBlock = element.content.empty() && (!element.children.empty() || element.voidElement);
    put(out, isBlock ? ">\n" : ">");
}

template <class Out> void putClose(Out& out, Element const& element, unsigned long long indent) {
    if (element.tag.empty()) return;
    if (!element.children.empty()) putBlanks(out, indent);
    if (element.content.empty() && element.children.empty() && element.voidElement) return;
    put(out, "</");
    put(out, element.tag);
    put(out, ">\n");
}

template <class Out> void putContent(Out& out, Element const& element, unsigned long long indent) {
    if (element.tag.empty()) {
        putBlanks(out, indent);
        put(out, element.content);
        put(out, "\n");
        return;
    }
    put(out, element.content);
    for (auto const& child : element.children) {
        putOpen(out, child, indent + kNesting);
        putContent(out, child, indent + kNesting);
        putClose(out, child, indent + kNesting);
    }
}

// A tree that has lost its head or body gets an empty one, so that the references have something to refer to.
Element withHeadAndBody(Element&& tree) {
    while (tree.children.size() < 2) tree.children.emplace_back(tree.children.empty() ? "head" : "body", "");
    return std::move(tree);
}

} // namespace

Element::Element() : Element("html", "") {
    children.reserve(2);
    children.emplace_back("head", "");
    children.emplace_back("body", "");
}

Element::Element(char const* tagName, char const* text) : Element(tagName, textOf(text)) {}

Element::Element(char const* tagName, std::string const& text) : tag(textOf(tagName)), content(text) {}

Element& Element::addAttribute(char const* name, std::string const& value) {
    attributes.push_back({textOf(name), value});
    return *this;
}

Element& Element::addAttribute(char const* name, unsigned int value) {
    return addAttribute(name, std::to_string(value));
}

void Element::toStringOpen(std::ostream& out, unsigned long long indent) const { putOpen(out, *this, indent); }

void Element::toStringContent(std::ostream& out, unsigned long long indent) const { putContent(out, *this, indent); }

void Element::toStringClose(std::ostream& out, unsigned long long indent) const { putClose(out, *this, indent); }

Document::Document(Element&& tree)
    : root(withHeadAndBody(std::move(tree))), head(root.children[0]), body(root.children[1]) {}

Document::Document(char const* title) : Document(Element()) { head.children.emplace_back("title", title); }

Document::Document(Document const& other) : Document(Element(other.root)) {}

// The references cannot be reseated, so the document is constructed again around the copied tree.
Document& Document::operator=(Document const& other) {
    if (this != &other) {
        Element tree = withHeadAndBody(Element(other.root));
        std::destroy_at(this);
        ::new (static_cast<void*>(this)) Document(std::move(tree));
    }
    return *this;
}

std::string Document::toString() const {
    std::string out = "<!DOCTYPE html>\n";
    putOpen(out, root, 0);
    putContent(out, root, 0);
    putClose(out, root, 0);
    return out;
}

} // namespace html
