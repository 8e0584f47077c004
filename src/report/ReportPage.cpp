// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReportPage.h"

#include "lib/Folders.h"

#include <utility>

ReportPage::ReportPage(std::string_view title, std::string_view kind, std::string_view contentTemplate)
    : page("page.html"), content(page.values().include("CONTENT", contentTemplate))
{
    TemplateValues frame = page.values();
    frame.set("TITLE", title);
    frame.set("KIND", kind);
    frame.include("STYLE", "page.css");
    frame.include("SCRIPT", "page.js");
}

void ReportPage::addSummary(std::string_view text)
{
    page.values().add("SUMMARY").set("TEXT", text);
}

void ReportPage::addChapter(std::string_view id, std::string_view name)
{
    TemplateValues chapter = page.values().add("CHAPTER");
    chapter.set("ID", id);
    chapter.set("NAME", name);
}

PageText ReportPage::text() const
{
    String const path = respath + "report";
    std::string const folder(path.begin(), path.end());
    if (auto text = page.expand(folder))
        return std::move(*text);
    return PageFault{folder + ": the templates of the report cannot be read; install Patchloom again"};
}
