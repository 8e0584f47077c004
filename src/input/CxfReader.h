// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"

#include <string_view>

// The Color Exchange Format, version 3: XML. What counts are the objects with device values. CMYK is in percent; RGB
// runs from 0 to MaxRange, which is 255 where it is missing. Any prefix can stand before the names.
//
//     <cc:CxF xmlns:cc="http://colorexchangeformat.com/CxF3-core">
//       <cc:Resources>
//         <cc:ObjectCollection>
//           <cc:Object ObjectType="Target" Name="A1" Id="c1">
//             <cc:DeviceColorValues>
//               <cc:ColorRGB MaxRange="255"><cc:R>255</cc:R><cc:G>128</cc:G><cc:B>0</cc:B></cc:ColorRGB>
//             </cc:DeviceColorValues>
//             <cc:ColorValues>measured values, which are left out</cc:ColorValues>
//           </cc:Object>
//         </cc:ObjectCollection>
//       </cc:Resources>
//     </cc:CxF>

/// Whether a text is XML whose outermost element is called CxF, in any case and with any prefix.
bool isCxf(std::string_view text);

/// Reads the objects of a CxF document as one table: Id, Name, the device values, and an empty column ColorValues where
/// there are measured values. If any of the objects with device values are targets, the others are left out. The rows
/// are put behind the document in the file's text. More than 5 million tags and attributes are refused.
void readCxf(TableFile& file);
