// SPDX-License-Identifier: MIT
#include <modes/html_document.h>

#include <memory>
#include <ostream>
#include <sstream>
#include <utility>

namespace html {

namespace {

constexpr unsigned long long kNesting = 2;

std::string textOf(char const* text) { return text ? text : ""; }

struct Blanks {
    unsigned long long count;
};

std::ostream& operator<<(std::ostream& out, Blanks const& blanks) {
    for (unsigned long long i = 0; i < blanks.count; ++i) out << ' ';
    return out;
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

void Element::toStringOpen(std::ostream& out, unsigned long long indent) const {
    if (tag.empty()) return;
    out << Blanks{indent} << '<' << tag;
    for (auto const& attribute : attributes) {
        out << ' ' << attribute.name;
        if (!attribute.value.empty()) out << "=\"" << attribute.value << '"';
    }
    bool const isBlock = content.empty() && (!children.empty() || voidElement);
    out << (isBlock ? ">\n" : ">");
}

void Element::toStringContent(std::ostream& out, unsigned long long indent) const {
    if (tag.empty()) {
        out << Blanks{indent} << content << '\n';
        return;
    }
    out << content;
    for (auto const& child : children) {
        child.toStringOpen(out, indent + kNesting);
        child.toStringContent(out, indent + kNesting);
        child.toStringClose(out, indent + kNesting);
    }
}

void Element::toStringClose(std::ostream& out, unsigned long long indent) const {
    if (tag.empty()) return;
    if (!children.empty()) out << Blanks{indent};
    if (content.empty() && children.empty() && voidElement) return;
    out << "</" << tag << ">\n";
}

Document::Document(Element&& tree)
    : root(withHeadAndBody(std::move(tree))), head(root.children[0]), body(root.children[1]) {}

Document::Document(char const* title) : Document(Element()) { head.children.emplace_back("title", title); }

Document::Document(Document const& other) : Document(Element(other.root)) {}

// The references cannot be aimed anew, so the document is made anew around the copied tree.
Document& Document::operator=(Document const& other) {
    if (this != &other) {
        Element tree = withHeadAndBody(Element(other.root));
        std::destroy_at(this);
        ::new (static_cast<void*>(this)) Document(std::move(tree));
    }
    return *this;
}

std::string Document::toString() const {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "<!DOCTYPE html>\n";
    root.toStringOpen(out, 0);
    root.toStringContent(out, 0);
    root.toStringClose(out, 0);
    return out.str();
}

} // namespace html
