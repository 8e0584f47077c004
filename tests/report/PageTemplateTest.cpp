// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/PageTemplate.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

std::string const escaped = "{{%AUTOESCAPE context=\"HTML\"}}";

class PageTemplateTest : public testing::Test
{
protected:
    std::string expanded(PageTemplate const& page) const
    {
        return page.expand(folder.path().string()).value_or("none");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(PageTemplateTest, AValueIsEscapedInAText)
{
    folder.write("page.html", escaped + "<h1>{{TITLE}}</h1>");
    PageTemplate const page("page.html");
    page.values().set("TITLE", "<script>alert(1)</script> & more");
    EXPECT_EQ(expanded(page), "<h1>&lt;script&gt;alert(1)&lt;/script&gt; &amp; more</h1>");
}

TEST_F(PageTemplateTest, AValueCannotLeaveItsAttribute)
{
    folder.write("page.html", escaped + "<p id=\"{{ID}}\">");
    PageTemplate const page("page.html");
    page.values().set("ID", "a\" onclick='b'");
    EXPECT_EQ(expanded(page), "<p id=\"a&quot; onclick=&#39;b&#39;\">");
}

TEST_F(PageTemplateTest, ALinkCannotBecomeAScript)
{
    folder.write("page.html", escaped + "<a href=\"{{LINK}}\">");
    PageTemplate const page("page.html");
    page.values().set("LINK", "javascript:alert(1)");
    EXPECT_EQ(expanded(page).find("javascript"), std::string::npos);
}

TEST_F(PageTemplateTest, BytesThatAreNotUtf8AndControlCharactersAreReplaced)
{
    folder.write("page.html", escaped + "{{TEXT}}");
    PageTemplate const page("page.html");
    page.values().set("TEXT", std::string("a\xff") + "b\n\x01\x7f\xc3\xa9");
    EXPECT_EQ(expanded(page), "a?b???\xc3\xa9");
}

TEST_F(PageTemplateTest, ASectionStandsAsOftenAsItIsAdded)
{
    folder.write("page.html", escaped + "{{#ROW}}<p>{{A}}{{B}}</p>{{/ROW}}");
    PageTemplate const page("page.html");
    EXPECT_EQ(expanded(page), "");
    page.values().set("B", "!");
    page.values().add("ROW").set("A", "1");
    page.values().add("ROW").set("A", "2");
    EXPECT_EQ(expanded(page), "<p>1!</p><p>2!</p>");
}

TEST_F(PageTemplateTest, AnIncludedTemplateHasItsOwnValues)
{
    folder.write("page.html", escaped + "{{A}}{{>PART}}");
    folder.write("part.html", escaped + "<b>{{A}}</b>");
    PageTemplate const page("page.html");
    page.values().set("A", "outer");
    page.values().include("PART", "part.html").set("A", "<inner>");
    EXPECT_EQ(expanded(page), "outer<b>&lt;inner&gt;</b>");
}

TEST_F(PageTemplateTest, AMissingTemplateGivesNoPage)
{
    PageTemplate const missing("page.html");
    EXPECT_FALSE(missing.expand(folder.path().string()));
    folder.write("page.html", escaped + "{{>PART}}");
    PageTemplate const page("page.html");
    page.values().include("PART", "part.html");
    EXPECT_FALSE(page.expand(folder.path().string()));
}
