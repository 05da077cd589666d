// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <iosfwd>
#include <string>
#include <vector>

/// A small HTML tree and its text. Nothing is escaped: tags, attributes and content are written as they were
/// set.
namespace html {

/// An element with its attributes, its content and its children, all held by value.
///
/// Elements with content are written on one line, elements with children as indented blocks, void elements
/// without an end tag. An element without a tag is a line of bare text.
class TREVALLO_EXPORT Element {
public:
    /// A name and its value.
    struct Attribute {
        std::string name;  ///< as it is written
        std::string value; ///< when empty, the attribute is written as its bare name
    };

    /// An "html" element with an empty "head" and an empty "body".
    Element();

    /// An element with text content; a null pointer is empty content.
    Element(char const* tagName, char const* text);
    Element(char const* tagName, std::string const& text);

    /// Copies and moves take the children along.
    Element(Element const&) = default;
    Element(Element&&) = default;
    Element& operator=(Element const&) = default;
    Element& operator=(Element&&) = default;
    ~Element() = default;

    /// Appends an attribute and returns this element, so that calls chain.
    Element& addAttribute(char const* name, std::string const& value);
    Element& addAttribute(char const* name, unsigned int value);

    /// Write start tag, content and children, and end tag, `indent` blanks from the left margin.
    void toStringOpen(std::ostream& out, unsigned long long indent) const;
    void toStringContent(std::ostream& out, unsigned long long indent) const;
    void toStringClose(std::ostream& out, unsigned long long indent) const;

    std::string tag;                   ///< the element's name; empty for a line of bare text
    std::string content;               ///< text, as it is written
    std::vector<Attribute> attributes; ///< in the order in which they are written
    std::vector<Element> children;     ///< in the order in which they are written
    bool voidElement = false;          ///< has no end tag, such as a line break
};

/// A page: an "html" element with "head" and "body". Copies and moves have their own tree, with `head` and
/// `body` in it; the two must stay the root's first children.
class TREVALLO_EXPORT Document {
public:
    /// A page with this title in its head.
    explicit Document(char const* title);

    /// Copies have a tree of their own.
    Document(Document const& other);
    Document& operator=(Document const& other);
    ~Document() = default;

    /// The whole page, beginning with the document type.
    std::string toString() const;

    Element root;  ///< the "html" element
    Element& head; ///< the root's first child
    Element& body; ///< the root's second child

private:
    TREVALLO_HIDDEN explicit Document(Element&& tree);
};

} // namespace html
