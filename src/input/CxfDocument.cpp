// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CxfDocument.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace
{

// The parser takes up to 128 bytes for each.
constexpr std::size_t largestMarkupCount = 5'000'000;

// Nodes and attributes are at most twice as many.
std::size_t countMarkup(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        count += text[i] == '=' || (text[i] == '<' && text.substr(i + 1, 1) != "/") ? 1U : 0U;
    return count;
}

// The parser makes anything of &#0; and &#xD800;, which stand for no character. npos where there is none of these.
std::size_t findFalseReference(std::string_view text)
{
    std::size_t found = text.find("&#");
    for (; found != std::string_view::npos; found = text.find("&#", found + 1)) {
        bool const isHexadecimal = text.substr(found + 2, 1) == "x";
        char const* const first = text.data() + found + (isHexadecimal ? 3 : 2);
        std::uint32_t code = 0;
        auto const [end, error] = std::from_chars(first, text.data() + text.size(), code, isHexadecimal ? 16 : 10);
        bool const isCharacter = code > 0 && code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
        if (error != std::errc() || !isCharacter)
            break;
    }
    return found;
}

// The address that the prefix of an element stands for; empty where it is not declared.
std::string_view namespaceOf(pugi::xml_node element)
{
    std::string_view const name = element.name();
    std::size_t const colon = name.find(':');
    std::string const declaration =
        colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    return element.attribute(declaration.c_str()).value();
}

} // namespace

void CxfObject::addDevice(pugi::xml_node device)
{
    if (device.type() != pugi::node_element)
        return;
    for (std::size_t i = 0; i < cxfSpaceCount; ++i)
        if (isCalled(device, cxfSpaces[i].element)) {
            (devices[i] ? repeatedDevice : devices[i]) = device;
            return;
        }
    foreignDevice = device;
}

std::string_view localName(std::string_view name)
{
    return name.substr(name.find(':') + 1);
}

bool isCalled(pugi::xml_node node, std::string_view name)
{
    return localName(node.name()) == name;
}

// The parser tells where the name of an element begins, behind the bracket.
std::uint32_t offsetOf(pugi::xml_node node)
{
    std::ptrdiff_t const bracket = node.type() == pugi::node_element ? 1 : 0;
    return static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(node.offset_debug() - bracket, 0));
}

// A comment within a text divides it into two nodes.
std::string textOf(pugi::xml_node node)
{
    std::string text;
    for (pugi::xml_node const child : node)
        text += child.type() == pugi::node_element ? "<" + std::string(child.name()) + ">" : child.value();
    return text;
}

pugi::xml_node parseCxf(TableFile& file, pugi::xml_document& document)
{
    if (countMarkup(file.text) > largestMarkupCount) {
        file.faults.add({}, "is a CxF file with more than 5 million tags and attributes: export the patches alone");
        return {};
    }
    if (std::size_t const found = findFalseReference(file.text); found != std::string::npos) {
        std::size_t const length = file.text.find(';', found) - found + 1;
        file.faults.add(placeOf(file.text, found), excerpt(std::string_view(file.text).substr(found, length)) +
                                                       " stands for no character: remove it");
        return {};
    }
    pugi::xml_parse_result const result = document.load_buffer(
        file.text.data(), file.text.size(), pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute,
        pugi::encoding_utf8);
    if (!result) {
        file.faults.add(placeOf(file.text, static_cast<std::size_t>(result.offset)),
                        "no well-formed XML (" + std::string(result.description()) +
                            "); make sure that the file is whole");
        return {};
    }
    pugi::xml_node const root = document.document_element();
    std::string_view const address = namespaceOf(root);
    if (!address.empty() && address.find("CxF3") == std::string_view::npos) {
        file.faults.add(placeOf(file.text, offsetOf(root)),
                        "is a CxF file of another version than 3 (" + excerpt(address) +
                            "), which is not read: export the patches as CxF3, CGATS or CSV");
        return {};
    }
    return root;
}
