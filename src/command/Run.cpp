// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Run.h"

#include "Arguments.h"
#include "ChartCommand.h"
#include "CheckCommand.h"
#include "Console.h"
#include "ExitStatus.h"
#include "ListCommand.h"
#include "PatchSetCommand.h"
#include "Presets.h"
#include "ReportCommand.h"
#include "TableCommands.h"

#include <variant>

namespace
{

class Runner
{
public:
    int operator()(ChartArguments const& arguments) const { return runChart(arguments, console); }
    int operator()(CheckArguments const& arguments) const { return runCheck(arguments, console); }
    int operator()(ConvertArguments const& arguments) const { return runConvert(arguments, console); }
    int operator()(PatchSetArguments const& arguments) const { return runPatchSet(arguments, console); }
    int operator()(DescribeArguments const& arguments) const { return runDescribe(arguments, console); }

    int operator()(ReportArguments const& arguments) const { return runReport(arguments, console); }

    int operator()(ListArguments const& arguments) const
    {
        Choices choices = builtInChoices();
        if (auto const fault = addPresetsFile(choices, arguments.presets.path)) {
            console.error(fault->text);
            return notMade;
        }
        std::string const text = arguments.json ? listJson(choices, arguments) : listText(choices, arguments);
        return console.print(text) ? done : notMade;
    }

    int operator()(Information const& information) const { return console.print(information.text) ? done : notMade; }

    int operator()(WrongUse const& use) const
    {
        console.error(use.text);
        return wrongUse;
    }

private:
    Console console;
};

} // namespace

int run(std::vector<std::string> const& arguments)
{
    return std::visit(Runner(), parseArguments(arguments));
}
