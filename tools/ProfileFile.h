// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <lcms2.h>

#include <filesystem>

/// Sets the description, copyright, maker and model texts of a profile.
///
/// \return whether the profile took all of them
bool setTexts(cmsHPROFILE profile, char const* description, char const* copyright);

/// Writes a profile with a fixed creation date, so that the same profile always gives the same bytes.
///
/// \return whether the whole file was written
bool saveProfile(cmsHPROFILE profile, std::filesystem::path const& file);
