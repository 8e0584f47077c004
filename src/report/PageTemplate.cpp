// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PageTemplate.h"

#include "lib/PrintableText.h"

#include <utility>

#include <ctemplate/template.h>

namespace
{

ctemplate::TemplateString nameOf(std::string_view text)
{
    return {text.data(), text.size()};
}

} // namespace

void TemplateValues::set(std::string_view marker, std::string_view text)
{
    dictionary->SetValue(nameOf(marker), printable(text));
}

TemplateValues TemplateValues::add(std::string_view section)
{
    return TemplateValues(*dictionary->AddSectionDictionary(nameOf(section)));
}

TemplateValues TemplateValues::include(std::string_view marker, std::string_view file)
{
    ctemplate::TemplateDictionary* const part = dictionary->AddIncludeDictionary(nameOf(marker));
    part->SetFilename(nameOf(file));
    return TemplateValues(*part);
}

PageTemplate::PageTemplate(std::string file)
    : outermost(std::move(file)), dictionary(std::make_unique<ctemplate::TemplateDictionary>("page"))
{
}

PageTemplate::~PageTemplate() = default;

std::optional<std::string> PageTemplate::expand(std::string const& folder) const
{
    // A cache of its own: no page depends on what the process has read before.
    ctemplate::TemplateCache cache;
    cache.SetTemplateRootDirectory(folder);
    std::string page;
    if (!cache.ExpandWithData(outermost, ctemplate::DO_NOT_STRIP, dictionary.get(), nullptr, &page))
        return std::nullopt;
    return page;
}
