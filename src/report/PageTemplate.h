// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ctemplate
{
class TemplateDictionary;
}

// The pages are templates in the resources' folder "report". A template is HTML with markers:
//
//     {{%AUTOESCAPE context="HTML"}}
//     <h1>{{TITLE}}</h1>                   a value
//     {{#ROW}}<tr id="{{ID}}">{{/ROW}}     a section: not there, once, or once for each time it is added
//     {{>CONTENT}}                         another template
//
// The library escapes every value as its place asks for. These are the only files that know the library.

/// The values of one template, or of one section. Only refers to them: the page owns them.
class TemplateValues
{
public:
    explicit TemplateValues(ctemplate::TemplateDictionary& values) : dictionary(&values) {}

    /// Sets a value. Any text is allowed: bytes that are not UTF-8 and control characters become "?".
    void set(std::string_view marker, std::string_view text);

    /// Adds a section once more, with values of its own. Values that it lacks are those around it.
    TemplateValues add(std::string_view section);

    /// Puts another template into the place of a marker.
    ///
    /// \param file  its name in the folder of templates
    TemplateValues include(std::string_view marker, std::string_view file);

private:
    ctemplate::TemplateDictionary* dictionary;
};

/// A page that is made of templates.
class PageTemplate
{
public:
    /// \param file  name of the outermost template
    explicit PageTemplate(std::string file);
    ~PageTemplate();
    PageTemplate(PageTemplate const&) = delete;
    PageTemplate& operator=(PageTemplate const&) = delete;

    TemplateValues values() const { return TemplateValues(*dictionary); }

    /// The whole page.
    ///
    /// \param folder  of the templates
    /// \return nothing where a template is missing, cannot be read or is broken
    std::optional<std::string> expand(std::string const& folder) const;

private:
    std::string const outermost;
    std::unique_ptr<ctemplate::TemplateDictionary> dictionary;
};
