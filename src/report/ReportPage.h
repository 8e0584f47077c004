// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PageTemplate.h"

#include <string>
#include <string_view>
#include <variant>

/// A page as a text, or one line about why there is none.
struct PageFault
{
    std::string text;
};
using PageText = std::variant<std::string, PageFault>;

/// The frame that all pages share: title, links to the chapters, style sheet and script. What the page is about is a
/// template of its own.
class ReportPage
{
public:
    /// \param title    what the page is about: the chart's name
    /// \param kind     what the page is: "Chart report"
    /// \param content  name of the template of the page's content
    ReportPage(std::string_view title, std::string_view kind, std::string_view content);

    /// A sentence below the title.
    void addSummary(std::string_view text);

    /// A link to a chapter.
    ///
    /// \param id  of the chapter's heading
    void addChapter(std::string_view id, std::string_view name);

    /// The values of the content's template.
    TemplateValues& values() { return content; }

    /// The page, made from the templates in the resources.
    PageText text() const;

private:
    PageTemplate page;
    TemplateValues content;
};
