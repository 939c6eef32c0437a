/// @file
/// Figures of a run for a person.
#pragma once

namespace QXApp {

class QXRendererSession;

/// Prints the frame statistics of the target and what the last frame drew, one figure a line.
void PrintStats(QXRendererSession const& session);

}  // namespace QXApp
