/// @file
/// `qx3d fonts`.
#pragma once

namespace QXApp {

struct QXFontsOptions;

/// Lists the fonts that texts can be drawn in, or tells which of them a name means and why.
/// @return  the exit status; 1 after one line on the standard error output
int RunFonts(QXFontsOptions const& options);

}  // namespace QXApp
