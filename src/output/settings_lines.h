// The settings in force as lines that a specification can hold.
#pragma once

#include <string>
#include <vector>

#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// A line for each setting: words that begin with the letters of its keyword, its value, and an explanation as a
/// comment. Read back they restore the settings. Model statements, rating scales, facets and elements have no lines.
/// What another line already says (the facets that are not centered, the positive ones) is a comment.
std::vector<std::string> SettingsLines(const Analysis& analysis);

/// The lines of `Umean=`, `Glabel=` and `Dvalues=` among them; none for `Glabel=` and `Dvalues=` without entries.
std::string UmeanLine(const Settings& settings);
std::vector<std::string> GlabelLines(const Analysis& analysis);
std::vector<std::string> DvaluesLines(const Settings& settings);

/// Writes `SettingsLines`.
void WriteSettings(const Analysis& analysis, TextOutput& file);

}  // namespace tessaly
