// SPDX-License-Identifier: MIT
#include <modes/html_document.h>

#include <gtest/gtest.h>

#include <locale>
#include <sstream>

namespace {

std::string text(html::Element const& element, unsigned long long indent = 4) {
    std::ostringstream out;
    element.toStringOpen(out, indent);
    element.toStringContent(out, indent);
    element.toStringClose(out, indent);
    return out.str();
}

html::Element voidBreak() {
    html::Element element("br", "");
    element.voidElement = true;
    return element;
}

// A host's locale that groups digits.
struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(HtmlElement, IsIndentedByAnyNumberOfBlanks) {
    for (std::size_t const blanks : {0U, 1U, 31U, 32U, 33U, 64U, 65U, 200U}) {
        std::ostringstream out;
        html::Element("p", "text").toStringOpen(out, blanks);
        EXPECT_EQ(out.str(), std::string(blanks, ' ') + "<p>") << blanks;
    }
}

TEST(HtmlElement, IsAnEmptyPageByDefault) {
    html::Element const element;
    EXPECT_EQ(element.tag, "html");
    EXPECT_FALSE(element.voidElement);
    ASSERT_EQ(element.children.size(), 2U);
    EXPECT_EQ(element.children[0].tag, "head");
    EXPECT_EQ(element.children[1].tag, "body");
    EXPECT_TRUE(element.children[0].children.empty());
    EXPECT_EQ(element.children[0].content, "");
}

TEST(HtmlElement, TakesItsContentAsTextOrCharacters) {
    EXPECT_EQ(html::Element("td", "x").content, "x");
    EXPECT_EQ(html::Element("td", std::string("x")).content, "x");
    EXPECT_EQ(html::Element("td", static_cast<char const*>(nullptr)).content, "");
    EXPECT_TRUE(html::Element("td", "x").children.empty());
}

TEST(HtmlElement, WithContentIsOneLine) { EXPECT_EQ(text(html::Element("td", "x")), "    <td>x</td>\n"); }

TEST(HtmlElement, WithChildrenIsABlock) {
    html::Element row("tr", "");
    row.children.emplace_back("td", "x");
    row.children.emplace_back("td", "");
    EXPECT_EQ(text(row), "    <tr>\n      <td>x</td>\n      <td></td>\n    </tr>\n");
}

TEST(HtmlElement, WithNeitherIsOneLineOfTags) { EXPECT_EQ(text(html::Element("td", "")), "    <td></td>\n"); }

TEST(HtmlElement, ThatIsVoidHasNoEndTag) { EXPECT_EQ(text(voidBreak()), "    <br>\n"); }

TEST(HtmlElement, ThatIsVoidButHasContentOrChildrenEndsAfterAll) {
    auto element = voidBreak();
    element.content = "x";
    EXPECT_EQ(text(element), "    <br>x</br>\n");
    element.content = "";
    element.children.emplace_back("b", "y");
    EXPECT_EQ(text(element), "    <br>\n      <b>y</b>\n    </br>\n");
}

TEST(HtmlElement, WithoutATagIsALineOfText) {
    EXPECT_EQ(text(html::Element("", "some text")), "    some text\n");
    html::Element parent("p", "");
    parent.children.emplace_back("", "some text");
    EXPECT_EQ(text(parent), "    <p>\n      some text\n    </p>\n");
}

TEST(HtmlElement, WithContentAndChildrenWritesTheContentFirst) {
    html::Element element("p", "x");
    element.children.emplace_back("b", "y");
    EXPECT_EQ(text(element), "    <p>x      <b>y</b>\n    </p>\n");
}

TEST(HtmlElement, AtTheMarginIsNotIndented) {
    html::Element element("p", "");
    element.children.emplace_back("b", "y");
    EXPECT_EQ(text(element, 0), "<p>\n  <b>y</b>\n</p>\n");
}

TEST(HtmlElement, WritesAttributesInOrder) {
    html::Element element("td", "x");
    element.addAttribute("border", 0U)
        .addAttribute("class", "wide")
        .addAttribute("hidden", "")
        .addAttribute("n", 4294967295U);
    EXPECT_EQ(text(element), "    <td border=\"0\" class=\"wide\" hidden n=\"4294967295\">x</td>\n");
    EXPECT_EQ(element.attributes[1].name, "class");
    EXPECT_EQ(element.attributes[1].value, "wide");
}

TEST(HtmlElement, EscapesNothing) {
    html::Element element("td", "<b>&\"");
    element.addAttribute("title", "\"<&");
    EXPECT_EQ(text(element), "    <td title=\"\"<&\"><b>&\"</td>\n");
}

TEST(HtmlElement, IsCopiedWithItsChildren) {
    html::Element original("tr", "");
    original.children.emplace_back("td", "x");
    auto const copy = original;
    original.children[0].content = "y";
    EXPECT_EQ(copy.children[0].content, "x");
}

TEST(HtmlElement, TakesNullPointersForEmptyText) {
    html::Element element(nullptr, "x");
    EXPECT_EQ(element.tag, "");
    element.addAttribute(nullptr, "v");
    EXPECT_EQ(element.attributes[0].name, "");
}

namespace {

std::string const kEmptyPage = "<!DOCTYPE html>\n"
                               "<html>\n"
                               "  <head>\n"
                               "    <title>T</title>\n"
                               "  </head>\n"
                               "  <body></body>\n"
                               "</html>\n";

void expectOwnTree(html::Document const& document) {
    EXPECT_EQ(&document.head, &document.root.children.at(0));
    EXPECT_EQ(&document.body, &document.root.children.at(1));
}

} // namespace

TEST(HtmlDocument, IsAPageWithATitle) {
    html::Document const document("T");
    expectOwnTree(document);
    EXPECT_EQ(document.toString(), kEmptyPage);
}

TEST(HtmlDocument, KeepsHeadAndBodyInItsOwnTreeWhenItIsCopied) {
    html::Document original("T");
    html::Document copy = original;
    expectOwnTree(copy);
    copy.body.children.emplace_back("p", "x");
    EXPECT_EQ(original.toString(), kEmptyPage);
    EXPECT_NE(copy.toString(), kEmptyPage);

    html::Document assigned("other");
    assigned = copy;
    expectOwnTree(assigned);
    EXPECT_EQ(assigned.toString(), copy.toString());
    assigned.body.children.clear();
    EXPECT_NE(assigned.toString(), copy.toString());

    auto const& self = assigned;
    assigned = self;
    expectOwnTree(assigned);
    EXPECT_EQ(assigned.toString(), kEmptyPage);
}

TEST(HtmlDocument, StaysWholeWhenItIsMoved) {
    html::Document original("T");
    html::Document moved = std::move(original);
    expectOwnTree(moved);
    expectOwnTree(original); // NOLINT(bugprone-use-after-move): a move is a copy
    html::Document assigned("other");
    assigned = std::move(moved);
    expectOwnTree(assigned);
    EXPECT_EQ(assigned.toString(), kEmptyPage);
    EXPECT_EQ(original.toString(), kEmptyPage);
}

TEST(HtmlDocument, CopiesATreeThatLostItsHead) {
    html::Document original("T");
    original.root.children.clear();
    html::Document const copy = original;
    expectOwnTree(copy);
    EXPECT_EQ(copy.toString(), "<!DOCTYPE html>\n<html>\n  <head></head>\n  <body></body>\n</html>\n");
}

TEST(HtmlDocument, DoesNotDependOnTheHostsLocale) {
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    html::Document document("T");
    document.root.addAttribute("n", 1234567U);
    auto const page = document.toString();
    std::locale::global(before);
    EXPECT_NE(page.find("n=\"1234567\""), std::string::npos);
}
