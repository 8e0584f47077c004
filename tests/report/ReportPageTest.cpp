// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ReportPage.h"

#include "lib/Folders.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace
{

using testing::HasSubstr;
using testing::Not;

class ReportPageTest : public testing::Test
{
protected:
    ReportPageTest() { respath = PATCHLOOM_RESOURCES; }

    std::string const& textOf(PageText const& page)
    {
        EXPECT_TRUE(std::holds_alternative<std::string>(page));
        return std::get<std::string>(page);
    }
};

} // namespace

// Any template serves as content.
TEST_F(ReportPageTest, HasTitleKindSummaryAndChapters)
{
    ReportPage page("A & B", "Chart report", "plane.html");
    page.addSummary("One sheet.");
    page.addChapter("first", "The first");
    std::string const text = textOf(page.text());
    EXPECT_THAT(text, HasSubstr("<title>A &amp; B – Chart report</title>"));
    EXPECT_THAT(text, HasSubstr("<h1>A &amp; B</h1>"));
    EXPECT_THAT(text, HasSubstr("<p class=\"summary\">One sheet.</p>"));
    EXPECT_THAT(text, HasSubstr("<a href=\"#first\">The first</a>"));
}

TEST_F(ReportPageTest, ForbidsEverythingFromOutside)
{
    EXPECT_THAT(textOf(ReportPage("A", "B", "plane.html").text()), HasSubstr("content=\"default-src 'none'; "));
    EXPECT_THAT(textOf(ReportPage("A", "B", "plane.html").text()), Not(HasSubstr("<link")));
}

TEST_F(ReportPageTest, HasNoTraceOfTheTemplates)
{
    EXPECT_THAT(textOf(ReportPage("A", "B", "plane.html").text()), Not(HasSubstr("{{")));
    EXPECT_THAT(textOf(ReportPage("A", "B", "plane.html").text()), Not(HasSubstr("SPDX")));
}

TEST_F(ReportPageTest, NamesTheFolderWithoutTemplates)
{
    TemporaryFolder const empty;
    respath = empty.pathWithSlash();
    PageText const page = ReportPage("A", "B", "plane.html").text();
    ASSERT_TRUE(std::holds_alternative<PageFault>(page));
    EXPECT_EQ(std::get<PageFault>(page).text,
              empty.path().string() + "/report: the templates of the report cannot be read; install Patchloom again");
}
