// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The headers of qpdf.

// Without it, they warn of a class that programs of older versions use.
#define POINTERHOLDER_TRANSITION 4

// Clang cannot compile qpdf's JSON.hh as C++20. The other headers only need the class's name: this takes the place of
// JSON.hh.
#define JSON_HH
class JSON;

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>
