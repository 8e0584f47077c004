// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <pugixml.hpp>
#include <string>
#include <string_view>

/// A device colour space as a CxF document writes it.
struct DeviceSpace
{
    std::string_view element;
    std::array<std::string_view, 4> channels;
    std::array<std::string_view, 4> olderNames;
    std::size_t channelCount;
    std::string_view usualRange; // the MaxRange where none is stated
};

inline constexpr DeviceSpace cxfSpaces[] = {
    {"ColorCMYK", {"Cyan", "Magenta", "Yellow", "Black"}, {}, 4, "100"},
    {"ColorRGB", {"R", "G", "B", ""}, {"Red", "Green", "Blue", ""}, 3, "255"},
};
inline constexpr std::size_t cxfSpaceCount = std::size(cxfSpaces);

/// An object of a CxF document, with what it has of each of the device spaces.
struct CxfObject
{
    pugi::xml_node node;
    std::array<pugi::xml_node, cxfSpaceCount> devices;
    pugi::xml_node foreignDevice;  // of another space, with more inks or inks of its own
    pugi::xml_node repeatedDevice; // of a space that it has already

    /// Adds one of the elements of DeviceColorValues.
    void addDevice(pugi::xml_node device);

    bool hasDeviceValues() const { return devices[0] || devices[1] || foreignDevice; }
    std::string_view type() const { return node.attribute("ObjectType").value(); }
    bool isTarget() const { return isSameWord(type(), "Target"); }
};

/// Parses the text of a file. What is no CxF3 document becomes a fault of the file.
///
/// \return the outermost element; null with a fault
pugi::xml_node parseCxf(TableFile& file, pugi::xml_document& document);

/// A name without its prefix.
std::string_view localName(std::string_view name);

bool isCalled(pugi::xml_node node, std::string_view name);

/// Where an element or a text begins, in bytes from the start of the document.
std::uint32_t offsetOf(pugi::xml_node node);

/// The text of an element; elements in it show as <name>.
std::string textOf(pugi::xml_node node);
