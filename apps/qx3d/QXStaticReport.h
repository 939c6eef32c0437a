/// @file
/// A file of static geometry for a person.
#pragma once

#include <string>

namespace QXApp {

/// Prints what a file of static geometry holds, as far as it can be read.
/// @return  empty for a file without a fault; else the first fault with its offset, or why there is nothing to read,
///          and what to do
std::string PrintStatic(std::string const& strPath);

}  // namespace QXApp
