// Names of the command line: lists of them, and suggestions for those that are mistyped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace phctl {

// Returns the candidate that `name` was likely meant to be; empty when none is near. Names compare without
// regard to case.
std::string nearest(std::string_view name, const std::vector<std::string>& candidates);

// Returns "; did you mean X?", or nothing.
std::string didYouMean(std::string_view name, const std::vector<std::string>& candidates);

// Returns all of them, with commas.
std::string joined(const std::vector<std::string>& names);

// Returns the parts between separators; a separator at the end has no part behind it.
std::vector<std::string> split(const std::string& text, char separator);

} // namespace phctl
