// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints some sets of patches. Every build prints the same.

#include "Folders.h"
#include "color/ColorEntry.h"
#include "patchset/PatchSet.h"

#include <iostream>

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    for (ColorSpace const space : {CMYK, RGB})
        for (std::size_t const patches : {40U, 160U})
            for (double const neutralWeight : {1.0, 2.0}) {
                PatchSetWish wish;
                wish.patches = patches;
                wish.neutralWeight = neutralWeight;
                wish.seed = patches;
                for (SetPatch const& patch : makePatchSet(ownPrinter(space), wish).patches)
                    std::cout << patch.text << '\n';
            }
    ColorEntry::endColorConversions();
}
