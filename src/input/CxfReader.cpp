// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CxfReader.h"

#include "CxfDocument.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{

class CxfReader
{
public:
    explicit CxfReader(TableFile& target) : file(target), base(file.text.size()), lines(file.text) { lines.next(line); }

    void read(pugi::xml_node root);

private:
    void findObjects(pugi::xml_node root);
    void addColors(pugi::xml_node colors, CxfObject& object);
    void leaveOut(std::size_t count, char const* what);
    void chooseTargets();
    void addFields();
    void addForeignField();
    void addRow(CxfObject const& object);
    bool addValues(pugi::xml_node device, DeviceSpace const& space);
    void addCell(std::string_view text, std::uint32_t source);
    void compareRanges();
    void moveTo(std::uint32_t offset);

    bool fault(pugi::xml_node node, std::string text)
    {
        table.faults.addMade([&] { return TableMessage{placeOf(file.text, offsetOf(node)), std::move(text)}; });
        return false;
    }

    TableFile& file;
    std::size_t base; // where the rows will stand
    TextLines lines;
    TextLine line; // of the object that is read
    DataTable table;
    std::vector<CxfObject> objects;
    std::array<pugi::xml_node, cxfSpaceCount> firstDevices;
    pugi::xml_node firstForeignDevice;
    pugi::xml_node firstMeasurement;
    bool hasIds = false;
    std::string rows;
};

void CxfReader::addColors(pugi::xml_node colors, CxfObject& object)
{
    if (isCalled(colors, "DeviceColorValues")) {
        for (pugi::xml_node const device : colors)
            object.addDevice(device);
    } else if (!firstMeasurement && (isCalled(colors, "ColorValues") || isCalled(colors, "ColourValues"))) {
        firstMeasurement = colors;
    }
}

void CxfReader::findObjects(pugi::xml_node root)
{
    std::size_t others = 0;
    for (pugi::xml_node const resources : root)
        for (pugi::xml_node const collection : resources) {
            if (!isCalled(resources, "Resources") || !isCalled(collection, "ObjectCollection"))
                continue;
            for (pugi::xml_node const node : collection) {
                if (!isCalled(node, "Object"))
                    continue;
                CxfObject object{node, {}, {}, {}};
                for (pugi::xml_node const child : node)
                    addColors(child, object);
                if (!table.place.line)
                    table.place = placeOf(file.text, offsetOf(node));
                if (object.hasDeviceValues())
                    objects.push_back(object);
                else
                    ++others;
            }
        }
    if (!objects.empty())
        leaveOut(others, "objects without device values");
}

void CxfReader::leaveOut(std::size_t count, char const* what)
{
    if (count > 0)
        file.notes.push_back(std::string(what) + ", left out: " + std::to_string(count));
}

// Measurements of a target may repeat its device values.
void CxfReader::chooseTargets()
{
    if (std::any_of(objects.begin(), objects.end(), [](CxfObject const& object) { return object.isTarget(); })) {
        leaveOut(std::erase_if(objects, [](CxfObject const& object) { return !object.isTarget(); }),
                 "objects with device values that are no targets");
        return;
    }
    auto const hasOtherType = [&](CxfObject const& object) { return object.type() != objects[0].type(); };
    auto const other = std::find_if(objects.begin(), objects.end(), hasOtherType);
    if (other != objects.end())
        table.warnings.add(placeOf(file.text, offsetOf(other->node)),
                           "an object of another ObjectType: the objects of all types are taken; make sure that no "
                           "patch is there twice");
}

// Fewer than five inks, or more than columns are named by, keep the name of the element.
void CxfReader::addForeignField()
{
    auto const elements = firstForeignDevice.children();
    auto const inks = std::count_if(elements.begin(), elements.end(),
                                    [](pugi::xml_node node) { return node.type() == pugi::node_element; });
    table.fields.push_back(
        {inks >= 5 && inks < 100 ? std::to_string(inks) + "CLR_1" : std::string(localName(firstForeignDevice.name())),
         offsetOf(firstForeignDevice)});
}

void CxfReader::addFields()
{
    for (CxfObject const& object : objects) {
        hasIds = hasIds || object.node.attribute("Id");
        if (!firstForeignDevice)
            firstForeignDevice = object.foreignDevice;
        for (std::size_t i = 0; i < cxfSpaceCount; ++i)
            if (!firstDevices[i])
                firstDevices[i] = object.devices[i];
    }
    std::uint32_t const start = objects.empty() ? 0 : offsetOf(objects[0].node);
    if (hasIds)
        table.fields.push_back({"Id", start});
    table.fields.push_back({"Name", start});
    for (std::size_t i = 0; i < cxfSpaceCount; ++i)
        for (std::size_t channel = 0; firstDevices[i] && channel < cxfSpaces[i].channelCount; ++channel)
            table.fields.push_back({std::string(cxfSpaces[i].channels[channel]), offsetOf(firstDevices[i])});
    if (firstForeignDevice)
        addForeignField();
    if (firstMeasurement)
        table.fields.push_back({"ColorValues", offsetOf(firstMeasurement)});
}

// All values of a space are on one scale.
void CxfReader::compareRanges()
{
    for (std::size_t i = 0; i < cxfSpaceCount; ++i) {
        auto const rangeOf = [&](pugi::xml_node device) -> std::string_view {
            pugi::xml_attribute const range = device.attribute("MaxRange");
            return range ? std::string_view(range.value()) : cxfSpaces[i].usualRange;
        };
        std::string_view const range = rangeOf(firstDevices[i]);
        for (CxfObject const& object : objects)
            if (object.devices[i] && rangeOf(object.devices[i]) != range) {
                fault(object.devices[i], "MaxRange is " + excerpt(rangeOf(object.devices[i])) + " here and " +
                                             excerpt(range) + " before: give all patches the same");
                break;
            }
        if (firstDevices[i].attribute("MaxRange"))
            table.keywords.push_back({"MaxRange of " + std::string(cxfSpaces[i].element), std::string(range), 0});
    }
}

void CxfReader::moveTo(std::uint32_t offset)
{
    while (line.offset + line.length < offset && lines.next(line)) {
    }
}

void CxfReader::addCell(std::string_view text, std::uint32_t source)
{
    file.origins.push_back({static_cast<std::uint32_t>(base + rows.size()), source});
    rows += '"';
    for (char const c : text)
        rows.append(c == '"' ? 2 : 1, c);
    rows += "\"\t";
}

bool CxfReader::addValues(pugi::xml_node device, DeviceSpace const& space)
{
    std::array<pugi::xml_node, 4> values;
    for (pugi::xml_node const child : device)
        for (std::size_t channel = 0; channel < space.channelCount; ++channel)
            if (isCalled(child, space.channels[channel]) ||
                (!space.olderNames[channel].empty() && isCalled(child, space.olderNames[channel]))) {
                if (values[channel])
                    return fault(child, std::string(space.channels[channel]) +
                                            " is there more than once in this patch: remove one of them");
                values[channel] = child;
            }
    for (std::size_t channel = 0; channel < space.channelCount; ++channel) {
        pugi::xml_node const value = values[channel];
        std::string const text = textOf(value);
        std::string_view const content = trimmed(text);
        auto const blanks = static_cast<std::uint32_t>(content.data() - text.data());
        addCell(content, !content.empty() ? offsetOf(value.first_child()) + blanks : offsetOf(value ? value : device));
    }
    return true;
}

void CxfReader::addRow(CxfObject const& object)
{
    std::uint32_t const source = offsetOf(object.node);
    moveTo(source);
    std::size_t const start = rows.size();
    std::size_t const originCount = file.origins.size();
    bool isGood = !object.repeatedDevice ||
                  fault(object.repeatedDevice, std::string(localName(object.repeatedDevice.name())) +
                                                   " is there more than once in this patch: remove one of them");
    if (hasIds)
        addCell(object.node.attribute("Id").value(), source);
    addCell(object.node.attribute("Name").value(), source);
    for (std::size_t i = 0; i < cxfSpaceCount && isGood; ++i)
        if (object.devices[i])
            isGood = addValues(object.devices[i], cxfSpaces[i]);
        else
            for (std::size_t channel = 0; firstDevices[i] && channel < cxfSpaces[i].channelCount; ++channel)
                addCell({}, source);
    if (!isGood) {
        ++table.unreadRows;
        rows.resize(start);
        file.origins.resize(originCount);
        return;
    }
    if (firstForeignDevice)
        rows += '\t';
    if (firstMeasurement)
        rows += '\t';
    table.rows.push_back(
        {static_cast<std::uint32_t>(base + start), static_cast<std::uint32_t>(rows.size() - start), line.number});
}

void CxfReader::read(pugi::xml_node root)
{
    findObjects(root);
    if (table.place.line == 0) {
        file.faults.add(placeOf(file.text, offsetOf(root)),
                        "a CxF file without an Object in Resources and ObjectCollection; make sure that it is whole");
        return;
    }
    chooseTargets();
    table.separation = Separation::tab;
    addFields();
    compareRanges();
    for (CxfObject const& object : objects)
        addRow(object);
    table.lastLine = line.number;
    file.text += rows;
    file.tables.push_back(std::move(table));
}

} // namespace

bool isCxf(std::string_view text)
{
    for (std::string_view rest = trimmed(text); rest.starts_with('<'); rest = trimmed(rest)) {
        std::string_view end = ">";
        if (rest.starts_with("<?"))
            end = "?>";
        else if (rest.starts_with("<!--"))
            end = "-->";
        else if (!rest.starts_with("<!"))
            return isSameWord(localName(rest.substr(1, rest.find_first_of(" \t\r\n/>") - 1)), "CxF");
        else if (rest.find('[') < rest.find('>'))
            end = "]>";
        std::size_t const found = rest.find(end);
        if (found == std::string_view::npos)
            return false;
        rest.remove_prefix(found + end.size());
    }
    return false;
}

void readCxf(TableFile& file)
{
    file.kind = TableKind::cxf;
    pugi::xml_document document;
    if (pugi::xml_node const root = parseCxf(file, document))
        CxfReader(file).read(root);
}
